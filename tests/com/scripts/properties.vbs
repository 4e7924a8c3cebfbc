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
Check List.GetValue("l"), "Long 70000"
Check List.GetValueStr("L"), "'70000'"
Check List.GetValueLng("l"), "Long 70000"
Check List.GetValueInt("i"), "Integer 12"
Check List.GetValueDbl("d"), "Double 2.25"
Check List.GetValueSng("f"), "Single 1.5"
Check List.GetValueDate("t"), "Date 38051.5"
Check List.GetValueBoolean("b"), "Boolean True"
Check List.GetValueStrCatDump("none"), "''"
Check List.GetProperty("new").Value, "Empty"
List.AddObject "o", Base
Check List.GetValueObject("o") Is Base, "Boolean True"

' Duplicates, order, removal.
List.RemoveAll
List.Add "b", CLng(1)
List.Add "B", CLng(2)
List.Add "a", CLng(3)
Check List.Item("B").Multiple, "Boolean True"
List.Sort
Check List.Stored, "'B=2&:a=3&:b=1&:'"
Check List.Insert(1, "c", CLng(4)).Name, "'c'"
List.Insert 9, "b", CLng(5), True
List.Move "c", 3
Check List.Stored, "'B=2&:a=3&:c=4&:b=5&:'"
Check List.GetPropertyIndex("C"), "Long 3"
List.Remove 1
Check List.NewEnum, "Unknown"

' Text forms. The text stays as it is.
Text = "n=5&:q=""say ""x"""":"
List.Build Text
Check Text, "'n=5&:q=""say ""x"""":'"
List.BuildByVal "m=6&:"
Check List.Stored, "'m=6&:'"
List.BuildByDelimited "a=1;q=~64""Ijo="";", False, False, ";"
Check List.Delimited, "'a=1&:q=~64""Ijo="":'"
List.BuildInternal "tag>cmd:x=1:", False, True, ":"
Check List.TagCommand, "'TAG>CMD:X=1&:'"
Check List.Command, "'TAG>CMD:X=1&:'"

' Children, sizes, changes.
List.RemoveAll
Set Prop = List.Add("AB", "x")
Prop.Properties.AddLng "c", 1
Prop.Attributes.AddLng "a", 1
Check List.CountTotal, "Long 3"
Check List.Size, "Long 2"
Check List.SizeStored, "Long 14"
Check List.Stored, "'AB=""x"":AB=~AT""-a=1&:"":AB=~PR""-c=1&:"":'"
Check List.Changed, "Boolean False"
Prop.Changed = True
List.Dispose
Prop.Dispose

' A property.
Check Prop.ValueType, "Long 8"
Check Prop.ValueTypeName, "'String'"
Check Prop.Created = Prop.Modified, "Boolean True"
Prop.Value = 7
Check Prop.Value, "Integer 7"
Set Prop.Value = Base
Check Prop.Value Is Base, "Boolean True"
Prop.Encoding = 3
Check Prop.Encode, "Boolean False"
Prop.ValueStr = "12.5"
Check Prop.ValueStr, "'12.5'"
Check Prop.ValueLng, "Long 12"
Check Prop.ValueInt, "Integer 12"
Check Prop.ValueDbl, "Double 12.5"
Check Prop.ValueSng, "Single 12.5"
Check Prop.ValueBoolean, "Boolean True"
Check Prop.ValueTrue, "Boolean True"
Text = "5 Mar 2004"
Prop.SetValueStrRef Text
Check Prop.ValueDate, "Date 38051"
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
Check List.LoadFromFile(File, "pass"), "Boolean True"
Check List.Stored, "'Title=""Mr"":n=5&:'"

' Search conditions.
List.RemoveAll
List.BuildByContainsQuery "cat and not ""big dog"" bird"
Check List.ContainsQuery, "'cat AND NOT ""big dog"" OR bird'"
Done
