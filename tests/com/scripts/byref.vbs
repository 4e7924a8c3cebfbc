' By-reference arguments: a script's variable comes back changed.

Dim Tag, Text, First, Last, Number, Prop
Set Tag = CreateObject("kvVelmor3.kvTag")

Text = "a{b}c\d" & vbCrLf
Tag.ProtectRTFCode Text
Check "text", Text, "a\{b\}c\\d\par "
Text = 12
Tag.ProtectRTFCode Text
Check "a number stays one", Text, 12
Tag.ProtectRTFCode "by value {"

Sub Escape(ByRef Value)
    Tag.ProtectRTFCode Value
End Sub
Text = "{"
Escape Text
Check "through a procedure", Text, "\{"

Tag.Value = "x\cell 12345\row rest"
First = 1
Last = 21
Tag.RemoveExtraTrowd First, Last
Check "table end", Last, CLng(15)
Check "table start", First, 1

Number = 7
Tag.LogError "H", "text", Number
Check "error number", Number, 7
Tag.LogError "H", "text"
Check "log", Tag.ErrorLog.Count, CLng(2)

Set Prop = Tag.Properties.Add("p", 0)
Text = "long text"
Prop.SetValueStrRef Text
Check "set by reference", Prop.Value, "long text"
Text = "a=1:b=""x"":"
Tag.Properties.Build Text
Check "build", Tag.Properties.Stored, "a=1&:b=""x"":"
Check "build leaves its text", Text, "a=1:b=""x"":"
Done
