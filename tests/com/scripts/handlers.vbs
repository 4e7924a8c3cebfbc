' Handlers that are registered classes, by their levels and failures, and the catalogue of them.

Dim Tag, Journal, Base, Info
Set Tag = CreateObject("kvVelmor3.kvTag")
Set Journal = CreateObject("VelmorTest.Journal")
Set Base = CreateObject("VelmorTest.Database")
Set Tag.Database = Base
Tag.Properties.Add "kvTag.No Handler Show Message", True
Tag.Properties.Add "p", "{P}"

' The level decides what is called.
Journal.Clear
Tag.Value = "<KV:LEVEL3>cmd:</KV>,<KV:GRP-level4>cmd:</KV>"
Check Tag.Result, "'L3[CMD],L4[CMD]'"
Check Journal.Text, "'Interface;GetTagValue;Interface;Interface;GetTagValue;Interface;'"
Journal.Clear
Tag.Value = "<KV:LEVEL5>cmd:</KV>"
Check Tag.Result, "'L5[CMD]'"
Check Journal.Text, "'Interface;GetTagValue;Interface;Dispose;'"

' What handlers see and give.
Tag.Value = "<KV:PROBE>CMD=<KV:TAG>PROPERTY:p=:</KV>:x=<KV:TAG>@VERSION:</KV>:</KV>"
Check Tag.Result, "'kvTag PROBE CMD {P} {P} 3 1 a\{b host database {P}'"

' Failures lose nothing, and are logged.
Set Tag = CreateObject("kvVelmor3.kvTag")
Tag.Value = "a<KV:FAILING>X:</KV>b<KV:UNCREATABLE>X:</KV>c<KV:NOWHERE>X:</KV>d"
Check Tag.Result, "'abcd'"
Check Tag.ErrorLog.Item(1).Name & ": " & Tag.ErrorLog.Item(1).Value, "'FAILING: GetTagValue fails on purpose'"
Check Tag.ErrorLog.Item(1).Properties.GetValue("Err"), "Long 1234"
Check Tag.ErrorLog.Item(2).Properties.GetValue("Err"), "Long 429"
Check Tag.ErrorLog.Item(3).Value, "'Tag Handler not found. The handler's class name is not registered'"

' Only registered class names are created: no moniker, no identifier, nothing without a name.
Journal.Clear
Set Tag = CreateObject("kvVelmor3.kvTag")
Tag.Value = "[<KV:BRACED>X:</KV><KV:MONIKER>X:</KV><KV:NOCLASS>X:</KV>]"
Check Tag.Result, "'[]'"
Check Tag.ErrorLog.Count, "Long 3"
Check Tag.Direct.GetObject("{5CD8AD49-6971-4F69-B4D1-9E79D70FA211}", 1), "Nothing"
Check Tag.Direct.GetObject("new:VelmorTest.Account", 1), "Nothing"
Check Tag.Direct.GetObject(String(64000, "N") & ".x", 1), "Nothing"
Check Journal.Text, "''"

' As many levels as are allowed, with a handler at each, fit the stack. The template is the first level.
Set Tag = CreateObject("kvVelmor3.kvTag")
Tag.Value = "{\rtf1 <KV:DIGGING>X:</KV>}"
Check Tag.Result, "'{\rtf1 " & String(99, "+") & "}'"

' The catalogue.
Set Info = CreateObject("kvVelmor3.kvTagInfo")
Check Info.TagRegistered("level5>x"), "Boolean True"
Check Info.TagAvailable("LEVEL5"), "Boolean True"
Set Info.Database = Base
Check Info.CommandList("LEVEL4"), "'CommandList LEVEL4 host database'"
Check Info.ParameterList("LEVEL4", "c:"), "'ParameterList C LEVEL4 host database'"
Check Info.CommandSyntax("LEVEL5", "c=1"), "'SyntaxString C LEVEL5 host database'"
Check Info.CommandDescription("LEVEL5", "c"), "'CommandDescription C LEVEL5 host database'"
Check Info.ParameterValueList("LEVEL4", "C", "P"), "'ParameterValueList C P LEVEL4 host database'"
Check Info.HandlerListString2("GRP"), "'LEVEL3:LEVEL4:'"
Check Info.HandlerListString2 = Info.HandlerListFilteredString, "Boolean True"
Check Info.HandlerListString = Info.HandlerListFilteredString, "Boolean False"
Check Info.HandlerList.GetValue("LEVEL0"), "'VelmorTest.Level0'"
Check Info.HandlerListFiltered.GetValue("LEVEL0"), "Empty"
Check Info.HandlerList2.Count = Info.HandlerListFiltered.Count, "Boolean True"
Check Info.HandlerList2("", , True).Item("GRP").Name, "'GRP'"
On Error Resume Next
Set Info.Database = Tag
Check Err.Number, "Long 13"
On Error GoTo 0
Check Info.Database Is Base, "Boolean True"
Done
