' Cleaning. When the native program's tests left their results, the component gives the same bytes.

Dim Tag, Fso, Folder, Joined, Mode, Text
Set Tag = CreateObject("kvVelmor3.kvTag")
Set Fso = CreateObject("Scripting.FileSystemObject")
Folder = Tag.Library.TemporaryFolder
Text = Tag.Library.TemporaryName("velmor", ".rtf")
Check Tag.Library.SaveTextFile(Text, "{\rtf1 a}"), "Boolean True"
Check Tag.CleanRTFFile(Text, Text & "2"), "Boolean True"
Check Tag.Library.ReadTextFile(Text & "2") = Tag.CleanRTFByVal("{\rtf1 a}"), "Boolean True"
Text = "{\rtf1{\fonttbl{\f0 Arial;}}{\colortbl;}a {\rtf1{\fonttbl{\f0 Courier;}}\f0 b}}"
Check InStr(Tag.CleanRTFByVal(Text), "a \f1 b}") > 0, "Boolean True"
Check InStr(Text, "{\rtf1{\fonttbl{\f0 Courier") > 0, "Boolean True"
Tag.CleanRTF Text
Check InStr(Text, "a \f1 b}") > 0, "Boolean True"

Joined = CreateObject("WScript.Shell").Environment("Process")("VELMOR_EXCHANGE") & "\joined.rtf"
For Each Mode In Array(".t", ".e", ".tm", ".em")
    If Fso.FileExists(Joined & Mode) Then
        Tag.Properties.AddBoolean "kvTag.RTF Tolerant", Left(Mode, 2) = ".t", True
        Tag.CleanRTFMergeMode = Len(Mode) = 3
        Check Tag.CleanRTFMergeMode, "Boolean " & (Len(Mode) = 3)
        Check Tag.CleanRTFFile(Joined, Folder & "\joined.rtf"), "Boolean True"
        Text = Fso.OpenTextFile(Folder & "\joined.rtf").ReadAll
        Check Text = Fso.OpenTextFile(Joined & Mode).ReadAll, "Boolean True"
    End If
Next
Done
