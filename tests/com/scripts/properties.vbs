' The property collection and its properties, as scripts write them.

Dim Tag, List, Prop, Names, Other
Set Tag = CreateObject("kvVelmor3.kvTag")
Set List = Tag.Properties

Set Prop = List.Add("Title", "Mr")
Check "value by default member", Prop & "", "Mr"
Check "item by default member", List("title").Value, "Mr"
Check "through the tag", Tag.Properties("TITLE") & "", "Mr"
List("Title") = "Ms"
Check "let through item", Prop.Value, "Ms"
Check "changed", Prop.Changed, True
Prop.Changed = False
Set Prop.Value = List
Check "set does not mark", Prop.Changed, False
Check "an object is itself", Prop.Value Is List, True
List.RemoveAll
Check "none", List("Title") Is Nothing, True

List.AddStr "s", 12
List.AddLng "l", "12"
List.AddInt "i", 3, False
List.AddDbl "d", 2.25
List.AddSng "f", 1.5
List.AddBoolean "b", True
List.AddDate "t", #2004-03-05 14:07:09#
Check "stored", List.Stored, "s=""12"":l=12&:i=3%:d=2.25#:f=1.5!:b=True:t=#5 Mar 2004 2:07:09 PM#:"
Check "long", List.GetValueLng("l"), CLng(12)
Check "default", List.GetValueLng("none", 7), CLng(7)
Check "date", List.GetValueDate("t"), #2004-03-05 14:07:09#
Check "boolean", List.GetValueBoolean("b"), True
Check "type name", List("d").ValueTypeName, "Double"
Check "empty default", IsEmpty(List.GetValue("none")), True

Names = ""
For Each Prop In List
    Names = Names & Prop.Name
    If Prop.Name <> "d" Then List.Remove Prop.Name
Next
Check "for each survives removal", Names, "slidfbt"
Check "what is left", List.Count, CLng(1)

List("d").Properties.Add "child", "c"
List("d").Attributes.Add "attr", "a"
Set Other = CreateObject("kvVelmor3.kvTag").Properties
Other.BuildByVal List.Stored
Check "children are read", Other("d").Properties("child").Value, "c"
Check "attributes are read", Other("D").Attributes("ATTR").Value, "a"
Check "total", Other.CountTotal, CLng(3)
Other.Insert 1, "first", 1
Other.Move "d", 1
Other.Sort
Check "sorted", Other.GetPropertyIndex("first"), CLng(2)
Done
