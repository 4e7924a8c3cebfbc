' What damaged or hostile input gets.

Dim Tag, List, Lib, Folder, Info, Long, Name, Journal
Set Tag = CreateObject("kvVelmor3.kvTag")
Set List = Tag.Properties
Set Lib = Tag.Library
Set Info = CreateObject("kvVelmor3.kvTagInfo")
Set Journal = CreateObject("VelmorTest.Journal")
Folder = Lib.TemporaryFolder
Long = String(64000, "N")

' Missing files, and folders in a file's place.
List.Add "kept", CLng(1)
Check List.LoadFromFile(Folder & "\none.kvp"), "Boolean False"
Check List.LoadFromFile(Folder & "\none.kvp", "pass"), "Boolean False"
Check List.LoadFromFile(Folder), "Boolean False"
Check List.LoadFromFile(""), "Boolean False"
Check List.LoadFromFile(Long), "Boolean False"
Check List.SaveFile(Folder), "Boolean False"
Check List.SaveFile(""), "Boolean False"
Check List.SaveToFile(Folder & "\none\none.kvp"), "Boolean False"
Check Tag.CleanRTFFile(Folder), "Boolean False"
Check Tag.CleanRTFFile(""), "Boolean False"
Check List.Stored, "'kept=1&:'"
Tag.Value = "[<KV:TAG>INCLUDE=" & Folder & ":</KV><KV:TAG>INCLUDE=none.kvl:</KV>]"
Check Tag.Result, "'[]'"

' Only registered class names are created: no moniker, no identifier, nothing without a name.
Journal.Clear
Tag.Value = "[<KV:BRACED>X:</KV><KV:MONIKER>X:</KV><KV:NOCLASS>X:</KV>]"
Check Tag.Result, "'[]'"
Check Journal.Text, "''"
Check Tag.ErrorLog.Count, "Long 3"
Check Info.TagRegistered("BRACED"), "Boolean True"
Check Info.TagAvailable("BRACED"), "Boolean False"
Check Info.TagAvailable("MONIKER"), "Boolean False"
Check Info.TagRegistered("NOCLASS"), "Boolean False"
Check Tag.Direct.GetObject("{5CD8AD49-6971-4F69-B4D1-9E79D70FA211}", 1), "Nothing"
Check Tag.Direct.GetObject("new:VelmorTest.Account", 1), "Nothing"
Check Tag.Direct.GetObject(Long & ".x", 1), "Nothing"
Check Journal.Text, "''"

' Names of any length, and of more than a line.
Name = "A" & vbCrLf & "B"
Tag.Value = "[<KV:" & Long & ">X:</KV><KV:" & Name & ">" & Long & ":</KV>]"
Check Tag.Result, "'[]'"
Check Tag.ErrorLog.Count, "Long 5"
Check Tag.ErrorLog.Item(4).Name = Long, "Boolean True"
Check Tag.ErrorLog.Item(5).Name, "'A|B'"
Check Info.TagRegistered(Long), "Boolean False"
Check Info.TagRegistered(Name), "Boolean False"
Check Info.CommandSyntax(Name, Long), "''"
Check Info.HandlerListString2(Long), "''"
Check Info.HandlerList2(Name, False, True).Item("GRP").Name, "'GRP'"
List.Add Long, Name
Check List.GetValueStr(Long), "'A|B'"
Check List.GetPropertyIndex(Long), "Long 2"

' Text forms and search conditions without an end.
List.BuildByVal "a=""x"
Check List.Count, "Long 1"
List.BuildByVal "a=~GZ""" & Long
Check List.Count, "Long 1"
List.BuildByVal String(64000, "=")
List.RemoveAll
List.BuildByContainsQuery "a ""b and " & Long
Check List.Count, "Long 2"
Check List.Item(2).Name = """b and " & Long & """", "Boolean True"
List.RemoveAll
List.BuildByContainsQuery String(64001, """")
Check List.Count, "Long 0"
Done
