' Registered handlers, a host's own collection and database, and an error that a script can see.

Dim Tag, Database, Collection, Entry
Set Tag = CreateObject("kvVelmor3.kvTag")
Set Database = CreateObject("VelmorTest.Database")
Set Collection = CreateObject("VelmorTest.Collection")
Collection.Add "p", "from the host"
Set Tag.Database = Database
Set Tag.Properties = Collection
Check "database is itself", Tag.Database Is Database, True
Check "collection is itself", Tag.Properties Is Collection, True

Tag.Value = "<KV:LEVEL3>one:</KV>,<KV:LEVEL5>two:</KV>,<KV:GRP-LEVEL3>three:</KV>,<KV:TAG>PROPERTY:p=:</KV>"
Check "levels", Tag.Result, "L3[ONE],L5[TWO],L3[THREE],from the host"

Tag.Value = "[<KV:FAILING>x:</KV>][<KV:NOWHERE>x:</KV>]"
Check "failures", Tag.Result, "[][]"
Check "log", Tag.ErrorLog.Count, CLng(2)
Set Entry = Tag.ErrorLog(1)
Check "who", Entry.Name, "FAILING"
Check "what", Entry.Value, "GetTagValue fails on purpose"
Check "number", Entry.Properties("Err").Value, CLng(1234)

Set Tag.Properties = Nothing
Check "a new collection", Tag.Properties.Count, CLng(0)

On Error Resume Next
Tag.Properties.AddLng "x", "no number"
Check "type mismatch", Err.Number, CLng(13)
Err.Clear
Tag.NoSuchMember
Check "no such member", Err.Number, CLng(438)
Err.Clear
CreateObject "kvVelmor3.privProperty"
Check "not creatable", Err.Number, CLng(429)
Done
