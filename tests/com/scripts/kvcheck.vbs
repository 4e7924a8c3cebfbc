' kvCheck: the mistakes of templates and documents.

Dim Checker, Given, Found, Template
Set Checker = CreateObject("kvVelmor3.kvCheck")
Set Given = CreateObject("kvVelmor3.kvTag").Properties
Given.Add "Name", "x"

' One mistake and all that is said of it. A handler is asked for its catalogue.
Set Found = Checker.Check("{\rtf1 a\par Dear" & vbCrLf & "<KV:LEVEL3>NONE:</KV>}")
Check Found.Count, "Long 1"
Check Checker.More, "Long 0"
Check Found(1).Name, "'KV202'"
Check Found(1).Value, "'2:1: error KV202: handler LEVEL3 has no command NONE" & _
    " [page text, paragraph 2] ""<KV:LEVEL3>NONE:</KV>""'"
Set Found = Found(1).Properties
Check Found.GetValue("Code"), "'KV202'"
Check Found.GetValue("Severity"), "'error'"
Check Found.GetValue("File"), "''"
Check Found.GetValue("Line"), "Long 2"
Check Found.GetValue("Column"), "Long 1"
Check Found.GetValue("Offset"), "Long 20"
Check Found.GetValue("Length"), "Long 21"
Check Found.GetValue("Place"), "'page text, paragraph 2'"
Check Found.GetValue("Text"), "'handler LEVEL3 has no command NONE'"
Check Found.GetValue("Hint"), "''"
Check Found.GetValue("Context"), "'<KV:LEVEL3>NONE:</KV>'"
Check Found.GetValue("IncludedFrom"), "''"

' Properties as a collection, as text, and none.
Template = "<KV:TAG>PROPERTY:Nmae:</KV>"
Check Checker.Check(Template, Given)(1).Properties.GetValue("Hint"), "'did you mean Name?'"
Check Checker.Check(Template, "Nmae=1:").Count, "Long 0"
Check Checker.Check(Template, Nothing).Count, "Long 0"

Template = "{\rtf1 <KV:TAG>PROP}{\b ERTY:a=5:</KV>}"
Check Checker.Fix("{\rtf1 <KV:TAG>PROP\b ERTY:a=5:</KV>}"), "'{\rtf1 \b <KV:TAG>PROPERTY:a=5:</KV>}'"
Check Checker.Repaired, "Long 1"
Check Checker.NotRepaired, "Long 0"
Check InStr(Checker.Annotate("{\rtf1 <KV:NONE>X:</KV>}", Given), "{\*\annotation\pard\plain KV201: ") > 0, "Boolean True"
Check Replace(Checker.Schema(Template, , True), vbLf, "|"), "'{|  ""a"": 5|}|'"
Check InStr(Checker.Schema(Template), """default"": 5") > 0, "Boolean True"
Check Checker.Verify("{\rtf1\ls3 a}")(1).Name, "'KV704'"
Done
