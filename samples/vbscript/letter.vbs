' Makes the short letter:  cscript //nologo letter.vbs TEMPLATE RESULT
Option Explicit

Dim tag, library, entry
Set tag = CreateObject("kvVelmor3.kvTag")
Set library = tag.Library
tag.Properties.Add "Name", "Ada Lovelace", True
tag.Properties.Add "Item", "an aneroid barometer", True
tag.Value = library.ReadTextFile(WScript.Arguments(0))     ' last, when all else is set

If Not library.SaveTextFile(WScript.Arguments(1), tag.Result) Then WScript.Quit 2
For Each entry In tag.ErrorLog
    WScript.Echo entry.Name & ": " & entry.Value
Next
If tag.ErrorLog.Count > 0 Then WScript.Quit 3
tag.Dispose
