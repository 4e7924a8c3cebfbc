' kvTag, kvTags and the empty handler.

Dim Tag, Child, Other, Text, Last, Number, Missing, Base, Handler
Set Tag = CreateObject("kvVelmor3.kvTag")

' A single tag and its elements.
Tag.Name = "tag>setproperty=V:a=1:b=<KV:TAG>PROPERTY:q=7:</KV>"
Check Tag.Name, "'tag>setproperty=V:a=1:b=<KV:TAG>PROPERTY:q=7:</KV>:'"
Check Tag.HandlerName, "'TAG'"
Check Tag.CommandName, "'SETPROPERTY'"
Check Tag.CommandValue, "'V'"
Check Tag.CommandValueProcessed, "'V'"
Check Tag.Elements.Count, "Long 4"
Check Tag.GetProcessedElementsValue("b", "none"), "'7'"

' A template and its tags.
Check Tag.Tags Is Nothing, "Boolean True"
Tag.Value = "a<KV:TAG>@VERSION:</KV>b<KV:TAG>PROPERTY:x=zz:</KV>"
Check Tag.Result, "'a1bzz'"
Tag.BuildTagCollection
Check Tag.Tags.Count, "Long 2"
Check Tag.Tags.Item(2).Name, "'TAG>PROPERTY:x=zz:'"
Check Tag.Tags.NewEnum, "Unknown"

' Collections, their own and shared.
Tag.Properties.Add "p", "<KV:TAG>@VERSION:</KV>."
Check Tag.GetProcessedPropertiesValue("P"), "'1.'"
Tag.Variables.Add "v", 12
Check Tag.GetProcessedVariablesValue("V", "no"), "'12'"
Set Other = CreateObject("kvVelmor3.kvTag")
Set Other.Properties = Tag.Properties
Set Other.Variables = Tag.Variables
Check Other.GetProcessedVariablesValue("v"), "'12'"
Check Tag.ProcessName("TAG>SETPROPERTY:s=set:"), "''"
Check Tag.ProcessValue("[<KV:TAG>PROPERTY:s=:</KV>]"), "'[set]'"
Set Child = Tag.NewTag
Check Child.Properties Is Tag.Properties, "Boolean True"
Set Base = CreateObject("VelmorTest.Database")
Set Tag.Database = Base
Check Tag.Database Is Base, "Boolean True"

' RTF, in place.
Text = "a{b}c\d" & vbCrLf
Tag.ProtectRTFCode Text
Check Text, "'a\{b\}c\\d\par '"
Tag.ProtectRTF = True
Check Tag.ProtectRTF, "Boolean True"
Tag.Value = "x\cell 12345\row rest"
Number = CLng(1)
Last = CLng(21)
Tag.RemoveExtraTrowd Number, Last
Check Last, "Long 15"
Check Tag.Value, "'x\cell\row rest      '"
Tag.Value = "{\rtf1 \trowd\irow0\lastrow\cellx1\intbl A\cell\row }"
Text = Tag.Value
Tag.AddTableStartEndControlWords
Check Tag.Value = Text, "Boolean True"
Check Left(Text, 30), "'{\rtf1 {\*\korvane\starttable{'"

' The error log.
Number = CLng(7)
Tag.LogError "H", "wrong", Number, "tag", "err"
Check Tag.ErrorLog.Count, "Long 1"
Check Tag.ErrorLog.Item(1).Properties.GetValue("Err"), "Long 7"
Check Tag.Direct Is Tag.Direct, "Boolean True"
Check Tag.Library Is Tag.Library, "Boolean False"

' The empty handler.
Set Handler = CreateObject("kvVelmor3.ITag4")
Check Handler.Interface, "Long 0"
Check Handler.GetTagValue(Tag), "''"
Check Handler.CommandList, "''"
Check Handler.ParameterList("C"), "''"
Check Handler.SyntaxString("C", "H"), "''"
Check Handler.CommandDescription("C", "H", Base), "''"
Check Handler.ParameterValueList("C", "P"), "''"

' Disposing lets the collections go, or leaves them to others.
Set Child = Tag.Properties
Tag.Dispose False
Check Tag.Database, "Nothing"
Tag.Dispose
Done
