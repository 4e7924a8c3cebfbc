' What scripts alone do: default members, For Each, variables by reference, errors.

Dim Tag, List, Prop, Names, Child, Text, Last
Set Tag = CreateObject("kvVelmor3.kvTag")
Set List = Tag.Properties
Set Prop = List.Add("Title", "Mr")
Check Prop & "", "'Mr'"
Check List("title").Value, "'Mr'"
Check Tag.Properties("TITLE") & "", "'Mr'"
List("Title") = "Ms"
Check Prop.Value, "'Ms'"
Tag.Properties("Title") = "Dr"
Check Prop.Value, "'Dr'"
Check Prop.Changed, "Boolean True"

List.Add "Due", #2004-03-05 14:07:09#
List.Add "n", 5
Names = ""
For Each Prop In List
    Names = Names & Prop.Name & ","
    If Prop.Name <> "n" Then List.Remove Prop.Name
Next
Check Names, "'Title,Due,n,'"
Check List.Count, "Long 1"
Tag.Value = "<KV:TAG>PROPERTY:n=:</KV><KV:TAG>@VERSION:</KV>"
For Each Child In Tag.Tags
    Names = Names & Child.CommandName & ","
Next
Check Names, "'Title,Due,n,PROPERTY,@VERSION,'"
Check Tag.Tags(1).Elements(3).Name, "'N'"
Check Tag.Tags(3), "Nothing"

Sub Escape(ByRef Value)
    Tag.ProtectRTFCode Value
End Sub
Text = "{"
Escape Text
Check Text, "'\{'"
Text = 12
Escape Text
Check Text, "Integer 12"
Tag.ProtectRTFCode "by value {"
Tag.ProtectRTFCode (Text)

Tag.Value = "x\cell 12345\row rest"
Last = 21.0
Tag.RemoveExtraTrowd 1, Last
Check Last, "Long 15"

On Error Resume Next
List.AddLng "x", "no number"
Check Err.Number, "Long 13"
Err.Clear
Tag.NoSuchMember
Check Err.Number, "Long 438"
Err.Clear
CreateObject "kvVelmor3.privProperty"
Check Err.Number, "Long 429"
Err.Clear
CreateObject("kvVelmor3.kvTagInfo").Database = Tag
Check Err.Description, "'Type Mismatch'"
Check Err.Source, "'kvVelmor3'"
Done
