' privProperties and privProperty.

Dim Tag, List, Prop, Text, Base, Lib, File, Child
Set Tag = CreateObject("kvVelmor3.kvTag")
Set List = Tag.Properties
Set Base = CreateObject("VelmorTest.Database")

' Typed adds, gets and defaults.
Check List.Add("v", "variant").Name, "'v'"
Check List.AddStr("s", "text").Changed, "Boolean False"
List.AddStr "s", "again", True
List.AddLng "l", "70000"
List.AddDbl "d", 2.25, False
List.AddSng "f", 1.5
List.AddDate "t", CDate(38051.5)
List.AddBoolean "b", True
List.AddInt "i", 12
Check List.Stored, "'v=""variant"":s=""again"":l=70000&:d=2.25#:f=1.5!:t=#5 Mar 2004 12:00:00 PM#:b=True:i=12%:'"
Check List.Delimited = List.Stored, "Boolean True"
Check List.Count, "Long 8"
Check List.GetValue("l"), "Long 70000"
Check List.GetValue("none", 1.5), "Double 1.5"
Check List.GetValue("none"), "Empty"
Check List.GetValueStr("L"), "'70000'"
Check List.GetValueStr("none"), "''"
Check List.GetValueStr("none", "x"), "'x'"
Check List.GetValueLng("l"), "Long 70000"
Check List.GetValueLng("none"), "Long 0"
Check List.GetValueLng("none", 7), "Long 7"
Check List.GetValueInt("i"), "Integer 12"
Check List.GetValueInt("none", 7), "Integer 7"
Check List.GetValueDbl("d"), "Double 2.25"
Check List.GetValueDbl("none"), "Double 0"
Check List.GetValueDbl("none", 7.5), "Double 7.5"
Check List.GetValueSng("f"), "Single 1.5"
Check List.GetValueSng("none", 7.5), "Single 7.5"
Check List.GetValueDate("t"), "Date 38051.5"
Check List.GetValueDate("none"), "Date 0"
Check List.GetValueDate("none", CDate(2)), "Date 2"
Check List.GetValueBoolean("b"), "Boolean True"
Check List.GetValueBoolean("none"), "Boolean False"
Check List.GetValueBoolean("none", True), "Boolean True"
Check List.GetValueStrCatDump("none", "x"), "'x'"
Check List.GetValueStrCatDump("none"), "''"
Check List.GetProperty("new").Value, "Empty"
Check List.GetProperty("newer", 7).Value, "Integer 7"
List.AddObject "o", Base
Check List.GetValueObject("o") Is Base, "Boolean True"
Check List.GetValueObject("none"), "Nothing"
Check List.GetValueObject("none", Base) Is Base, "Boolean True"
Check List.Item("o").Value Is Base, "Boolean True"

' Duplicates, order, removal.
List.RemoveAll
Check List.Count, "Long 0"
Check List.Item("v"), "Nothing"
List.Add "b", CLng(1)
List.Add "B", CLng(2)
List.Add "a", CLng(3)
Check List.Item("B").Multiple, "Boolean True"
Check List.Item(2).Multiple, "Boolean False"
List.Sort
Check List.Stored, "'B=2&:a=3&:b=1&:'"
Check List.Insert(1, "c", CLng(4)).Name, "'c'"
List.Insert 9, "b", CLng(5), True
List.Move "c", 3
Check List.Stored, "'B=2&:a=3&:c=4&:b=5&:'"
Check List.GetPropertyIndex("C"), "Long 3"
Check List.GetPropertyIndex("none"), "Long 0"
List.Remove "none"
List.Remove 0
List.Remove 99
List.Remove -1
List.Remove 1
List.Remove "C"
Check List.Stored, "'a=3&:b=5&:'"
Check List.NewEnum, "Unknown"

' Text forms. The text stays as it is.
Text = "n=5&:q=""say ""x"""":"
List.Build Text
Check Text, "'n=5&:q=""say ""x"""":'"
List.Build Text, True, False, ":"
Check List.Count, "Long 4"
List.BuildByVal "m=6&:"
List.BuildByVal "tag>cmd:x=1:", True, True
Check List.Stored, "'m=6&:TAG=0&:CMD=0&:X=1&:'"
List.BuildByDelimited "a=1;b=2;", False, False, ";"
Check List.Stored, "'a=1&:b=2&:'"
List.BuildByDelimited "q=~64""Ijo="":"
Check List.Item(1).ValueStr, "'"":'"
Check List.Delimited, "'q=~64""Ijo="":'"
List.BuildInternal "tag>cmd:x=1:", False, True, ":"
Check List.TagCommand, "'TAG>CMD:X=1&:'"
Check List.Command, "'TAG>CMD:X=1&:'"

' Children, sizes, changes.
List.RemoveAll
Set Prop = List.Add("AB", "x")
Prop.Properties.AddLng "c", 1
Prop.Attributes.AddLng "a", 1
Check Prop.Properties Is Prop.Properties, "Boolean True"
Check List.CountTotal, "Long 3"
Check List.Size, "Long 2"
Check List.SizeStored, "Long 14"
Check List.Stored, "'AB=""x"":AB=~AT""-a=1&:"":AB=~PR""-c=1&:"":'"
Check List.Changed, "Boolean False"
Prop.Changed = True
Check Prop.Changed, "Boolean True"
Check List.Changed, "Boolean True"
List.Dispose
Prop.Dispose

' A property.
Check Prop.ValueType, "Long 8"
Check Prop.ValueTypeName, "'String'"
Check Prop.Created = Prop.Modified, "Boolean True"
Check Prop.Size, "Long 1"
Prop.Value = 7
Check Prop.Value, "Integer 7"
Check Prop.SizeStored, "Long 11"
Prop.Changed = False
Set Prop.Value = Base
Check Prop.Changed, "Boolean False"
Check Prop.Value Is Base, "Boolean True"
Check Prop.ValueTypeName, "'kvDatabase'"
Prop.Encoding = 3
Check Prop.Encode, "Boolean False"
Prop.Encode = True
Check Prop.Encoding, "Long 1"
Prop.ValueStr = "12.5"
Check Prop.Changed, "Boolean True"
Check Prop.ValueStr, "'12.5'"
Check Prop.ValueLng, "Long 12"
Check Prop.ValueInt, "Integer 12"
Check Prop.ValueDbl, "Double 12.5"
Check Prop.ValueSng, "Single 12.5"
Check Prop.ValueBoolean, "Boolean True"
Check Prop.ValueTrue, "Boolean True"
Check Prop.ValueTrue("other"), "Boolean False"
Text = "5 Mar 2004"
Prop.SetValueStrRef Text
Check Prop.ValueDate, "Date 38051"
Check Prop.ValueDate(1033, 0), "Date 38051"
Prop.ValueDateSet CDate(38052)
Check Prop.Value, "Date 38052"
Prop.ValueLng = 70000
Check Prop.Value, "Long 70000"
Prop.ValueInt = 2
Check Prop.Value, "Integer 2"
Prop.ValueSng = 3.5
Check Prop.Value, "Single 3.5"
Prop.ValueDbl = 4.5
Check Prop.Value, "Double 4.5"
Prop.ValueBoolean = True
Check Prop.Value, "Boolean True"

' Files, with and without a password.
Set Lib = Tag.Library
File = Lib.TemporaryName("velmor", ".kvp")
List.BuildByVal "Title=""Mr"":n=5&:"
Check List.SaveFile(File), "Boolean True"
Check Lib.ReadTextFile(File), "'Title=""Mr"":n=5&:'"
Check List.SaveToFile(File, "pass"), "Boolean True"
List.RemoveAll
Check List.LoadFromFile(File, "wrong"), "Boolean True"
Check List.Count, "Long 0"
Check List.LoadFromFile(File, "pass"), "Boolean True"
Check List.Stored, "'Title=""Mr"":n=5&:'"
List.RemoveAll
List.AddStr "q", """:"
Check List.SaveToFile(File), "Boolean True"
Check Lib.ReadTextFile(File) = List.Delimited, "Boolean True"
Check List.Delimited = List.Stored, "Boolean False"
Check List.SaveFile(File, ""), "Boolean True"
Check List.LoadFromFile(File), "Boolean True"
Check List.LoadFromFile(File & ".none"), "Boolean False"

' Search conditions.
List.RemoveAll
List.BuildByContainsQuery "cat and not ""big dog"" bird"
Check List.ContainsQuery, "'cat AND NOT ""big dog"" OR bird'"
Check List.Item(2).Value, "'AND NOT'"
Done
