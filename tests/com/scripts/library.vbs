' The companion library.

Dim Lib, Folder, File
Set Lib = CreateObject("kvVelmor3.kvTag").Library
Check Lib.RegistryValue("SOFTWARE\Korvane\Quillmark\Handlers", "LEVEL3"), "'VelmorTest.Level3'"
Check Lib.RegistryValue("SOFTWARE\Korvane\None", "x", "default"), "'default'"
Check Lib.ToNumber("1.5"), "Double 1.5"
Check Lib.IsTrue("Yes"), "Boolean True"
Check Lib.MakeFolder(Lib.CommonDataFolder & "\Velmor tests\a"), "Boolean True"
Check Lib.MachineName = "", "Boolean False"
Check Len(Lib.NewGuid), "Long 38"
File = Lib.TemporaryName("~kvt", ".tmp")
Check Left(File, Len(Lib.TemporaryFolder)) = Lib.TemporaryFolder, "Boolean True"
Check Lib.FileExists(File), "Boolean True"
Check Lib.SaveTextFile(File, "{\rtf1 " & Lib.FromHexadecimal("C581") & "}"), "Boolean True"
Check Lib.ReadTextFile(File), "'{\rtf1 \u321?}'"
Check Lib.SaveTextFile(File, "", True), "Boolean True"
Check Lib.AppendText(File, "one" & vbCrLf), "Boolean True"
Check Lib.AppendText(File, "two", True), "Boolean True"
Check Lib.ReadTextFile(File), "'one|two'"
Check Lib.Base64("a:"), "'YTo='"
Check Lib.FromBase64("YTo="), "'a:'"
Check Lib.Hexadecimal("a:"), "'613A'"
Check Lib.Decompress(Lib.Compress("text")), "'text'"
Check Lib.Decipher(Lib.Encipher("text", "pass"), "pass"), "'text'"
On Error Resume Next
Lib.FromBase64 "?"
Check Err.Number, "Long 5"
Err.Clear
Lib.NoSuchMember
Check Err.Number, "Long 438"
Done
