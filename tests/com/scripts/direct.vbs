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
Set Account = Direct.GetObject("VelmorTest.Account")
Set Other = Direct.GetObjectName("Buyer", "Account", 0, "Other")
Check Other Is Account, "Boolean False"
Check Journal.Text, "'open 1;open 5;open 6;'"
Direct.RemoveObject "VelmorTest.Account"
Direct.RemoveObject "Account", "Buyer"
Check Kept.Count, "Long 0"

' Items come from the database.
Journal.Clear
Set Item = Direct.GetObjectItem(7, 42)
Check Item.Value, "Long 42"
Check Direct.GetObjectItemName("N", 7).Value, "Long 5"
Check Journal.Text, "'item 7 42;item 7 5;'"
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

Done
