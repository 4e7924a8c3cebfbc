' A host in VBScript: properties, a template, its result, its tags.

Dim Tag, Child, Names
Set Tag = CreateObject("kvVelmor3.kvTag")
Tag.Properties.Add "Name", "Ann {A}"
Tag.Properties.AddDate "Due", #2004-03-05#, False
Tag.Variables.Add "Rate", 1.5

Tag.Value = "Dear <KV:TAG>PROPERTY:Name=?:</KV>, <KV:TAG>PROPERTY:None=nobody:</KV>"
Check "result", Tag.Result, "Dear Ann {A}, nobody"
Check "value", Tag.Value, "Dear <KV:TAG>PROPERTY:Name=?:</KV>, <KV:TAG>PROPERTY:None=nobody:</KV>"
Check "tags", Tag.Tags.Count, CLng(2)

Names = ""
For Each Child In Tag.Tags
    Names = Names & Child.HandlerName & "." & Child.CommandName & ";"
Next
Check "for each tag", Names, "TAG.PROPERTY;TAG.PROPERTY;"
Check "a tag by index", Tag.Tags(2).Elements(3).Name, "NONE"
Check "no such tag", Tag.Tags(3) Is Nothing, True

Tag.Value = "{\rtf1 <KV:TAG>PROPERTY:Name=:</KV>}"
Check "protection", Tag.ProtectRTF, True
Check "escaped", Tag.Result, "{\rtf1 Ann \{A\}}"

Check "property", Tag.GetProcessedPropertiesValue("Name"), "Ann {A}"
Check "property default", Tag.GetProcessedPropertiesValue("None", "default"), "default"
Check "variable", Tag.GetProcessedVariablesValue("rate"), "1.5"
Check "process value", Tag.ProcessValue("<KV:TAG>@VERSION:</KV>"), "1"
Check "process name", Tag.ProcessName("TAG>PROPERTY:Name=:"), "Ann \{A\}"
Check "new tag", Tag.NewTag.Properties("Name").Value, "Ann {A}"

Tag.Name = "TAG>PROPERTY:Name=:"
Check "single tag", Tag.Result, "Ann \{A\}"
Tag.Dispose
Done
