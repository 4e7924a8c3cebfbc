' kvDirectTag with a host's database and business objects, good ones and bad ones.

Dim Tag, Direct, Base, Journal, Account, Other, Item, Kept
Set Tag = CreateObject("kvVelmor3.kvTag")
Set Base = CreateObject("VelmorTest.Database")
Set Journal = CreateObject("VelmorTest.Journal")
Set Tag.Database = Base
Tag.Name = "H>X:ID=5:Other=6:"
Set Direct = Tag.Direct
Set Kept = Tag.Properties
Journal.Clear

' Business objects are opened once for an identifier; the cache lives among the tag's properties.
Set Account = Direct.GetObject("VelmorTest.Account", 1)
Check Account.Database Is Base, "Boolean True"
Check Kept.Item("_Account").Value Is Account, "Boolean True"
Check Kept.GetValue("Account.ID"), "Long 1"
Check Direct.GetObject("VelmorTest.Account", 1) Is Account, "Boolean True"
Check Direct.GetObject("VelmorTest.Account", 13), "Nothing"
Set Account = Direct.GetObject("VelmorTest.Account")
Set Other = Direct.GetObjectName("Buyer", "Account", 0, "Other")
Check Other Is Account, "Boolean False"
Check Direct.GetObjectName("Buyer", "Account", 6) Is Other, "Boolean True"
Check Kept.GetValue("Buyer_Account.ID"), "Long 6"
Check Journal.Text, "'open 1;open 13;open 5;open 6;'"
Direct.RemoveObject "VelmorTest.Account"
Direct.RemoveObject "Account", "Buyer"
Check Kept.Count, "Long 0"

' Items come from the database.
Journal.Clear
Set Item = Direct.GetObjectItem(7, 42)
Check Item.Value, "Long 42"
Check Direct.GetObjectItem(7, 0, "none") Is Item, "Boolean True"
Check Direct.GetObjectItemName("N", 7).Value, "Long 5"
Check Direct.GetObjectItemName("M", 7, 0, "Other").Value, "Long 6"
Check Kept.GetValue("M_kvObjectItem_7.ID"), "Long 6"
Check Journal.Text, "'item 7 42;item 7 5;item 7 6;'"
Direct.RemoveObjectItem 7
Kept.RemoveAll
Direct.RemoveObjectItem

' Objects that the caller holds.
Set Item = CreateObject("VelmorTest.Item")
Direct.SetObject Item
Check Kept.Item("_kvObjectItem").Value Is Item, "Boolean True"
Direct.SetObjectName "N", Account
Check Direct.GetObjectName("N", "Account", 0, "none") Is Account, "Boolean True"

' The error log goes to the database, and stays.
Journal.Clear
Direct.RecordErrorLog
Check Journal.Text, "''"
Tag.LogError "H", "text", CLng(9), "data"
Tag.ErrorLog.Item(1).Properties.Item("DateTime").Value = "then"
Direct.RecordErrorLog
Check Journal.Text, "'H;text|Tag Data: data|Err Data: -|Tag Error Date: then;9;64;'"

' Databases and classes without the members asked for.
Set Tag = CreateObject("kvVelmor3.kvTag")
Set Tag.Database = CreateObject("VelmorTest.Bare")
Set Direct = Tag.NewTag.Direct
Tag.LogError "H", "text"
Direct.RecordErrorLog
Check Direct.GetObject("Account", 1), "Nothing"
Check Direct.GetObject("VelmorTest.Bare", 1), "Nothing"
Check Direct.GetObjectItem(1, 1), "Nothing"
Check Tag.Properties.Count, "Long 0"
Done
