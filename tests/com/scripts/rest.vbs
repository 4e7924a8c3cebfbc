' Cleaning, property files, search conditions, the catalogue, the object cache and the companion library.

Dim Tag, List, Info, Base, Journal, Text, Folder, Lib, Item
Set Tag = CreateObject("kvVelmor3.kvTag")
Set Lib = Tag.Library
Folder = Lib.TemporaryFolder

' Cleaning: an embedded document's font joins the host's table.
Text = "{\rtf1{\fonttbl{\f0 Arial;}}a {\rtf1{\fonttbl{\f0 Courier;}}\f0 b}}"
Check "merge mode", Tag.CleanRTFMergeMode, False
Check "clean", InStr(Tag.CleanRTFByVal(Text), "{\f1 Courier;}") > 0, True
Check "by value", InStr(Text, "{\rtf1{\fonttbl{\f0 Courier") > 0, True
Tag.CleanRTF Text
Check "by reference", InStr(Text, "{\f1 Courier;}") > 0, True
Check "missing file", Tag.CleanRTFFile(Folder & "\none.rtf"), False
Tag.CleanRTFMergeMode = True
Check "merge mode", Tag.CleanRTFMergeMode, True

' Files, with and without a password.
Set List = Tag.Properties
List.Add "Title", "Mr"
List.AddLng "n", 5
Check "save", List.SaveFile(Folder & "\velmor.props"), True
Check "save with a password", List.SaveToFile(Folder & "\velmor.secret", "pass"), True
List.RemoveAll
Check "load", List.LoadFromFile(Folder & "\velmor.props"), True
Check "loaded", List.Stored, "Title=""Mr"":n=5&:"
Check "load with a password", List.LoadFromFile(Folder & "\velmor.secret", "pass"), True
Check "loaded", List.Stored, "Title=""Mr"":n=5&:"
Check "no file", List.LoadFromFile(Folder & "\velmor.none", ""), False
List.LoadFromFile Folder & "\velmor.secret", "wrong"
Check "wrong password", List.Count, CLng(0)

List.RemoveAll
List.BuildByContainsQuery "cat and not ""big dog"" bird"
Check "query", List.ContainsQuery, "cat AND NOT ""big dog"" OR bird"
List.RemoveAll

' The catalogue.
Set Info = CreateObject("kvVelmor3.kvTagInfo")
Check "registered", Info.TagRegistered("level5>x"), True
Check "available", Info.TagAvailable("LEVEL5"), True
Check "not registered", Info.TagRegistered("NOSUCH"), False
Check "built in", Info.CommandList("tag"), "SETPROPERTY:INCLUDE:SETPATH:PROPERTY:"
Check "parameters", Info.ParameterList("TAG", "setproperty:name=value"), "PREPROCESS:"
Check "no command", Info.ParameterList("TAG"), ""
Check "syntax", Info.CommandSyntax("TAG", "INCLUDE=file"), "TAG>INCLUDE=[path\]includefile:"
Check "description", Info.CommandDescription("NOSUCH", "X"), ""
Check "values", Info.ParameterValueList("NOSUCH", "X", "Y"), ""
Check "listed", InStr(Info.HandlerListString, "LEVEL5:") > 0, True
Check "group", Info.HandlerListString2("NOSUCH", False), ""
Check "filtered", Info.HandlerListFilteredString = Info.HandlerListString2, True
Check "list", Info.HandlerList("TAG").Name, "TAG"
Check "list of a group", Info.HandlerList2("NOSUCH").Count, CLng(0)
Check "filtered list", Info.HandlerListFiltered.Count > 0, True
On Error Resume Next
Set Info.Database = Tag
Check "wrong database", Err.Number, CLng(13)
Err.Clear
On Error GoTo 0

' The object cache.
Set Base = CreateObject("VelmorTest.Database")
Set Journal = CreateObject("VelmorTest.Journal")
Journal.Clear
Set Tag.Database = Base
Set Item = Tag.Direct.GetObjectItem(7, 42)
Check "item", Item.Value, CLng(42)
Check "kept", Tag.Direct.GetObjectItem(7) Is Item, True
Check "asked once", Journal.Text, "item 7 42;"
Tag.Direct.RemoveObjectItem 7
Check "let go", Tag.Properties("_kvObjectItem_7") Is Nothing, True
Set Item = Tag.Direct.GetObjectItemName("n", 7, 43)
Check "by name", Tag.Properties("_n_kvObjectItem_7").Value Is Item, True
Check "no class", Tag.Direct.GetObject("No.Such", 1) Is Nothing, True
Check "no class by name", Tag.Direct.GetObjectName("n", "No.Such") Is Nothing, True
Tag.Direct.SetObject Nothing
Tag.Direct.SetObjectName "own", Tag.Direct
Tag.Direct.RemoveObject "kvDirectTag", "own"
Tag.LogError "H", "text", 9
Tag.Direct.RecordErrorLog
Check "events", Journal.Text, "item 7 42;item 7 43;event H text 9 64;"
Done
