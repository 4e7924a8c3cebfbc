' Makes the sample letter through the component:
'     cscript //nologo render.vbs RESULT
' Velmor3.dll and SampleFormatter.dll must be registered.
Option Explicit

Const ForReading = 1

Dim files, folder, tag, entry, output
Set files = CreateObject("Scripting.FileSystemObject")
folder = files.GetParentFolderName(WScript.ScriptFullName)

Function ReadText(name)
    ReadText = files.OpenTextFile(folder & "\" & name, ForReading).ReadAll
End Function

If WScript.Arguments.Count <> 1 Then
    WScript.Echo "usage: cscript //nologo render.vbs RESULT"
    WScript.Quit 1
End If

Set tag = CreateObject("kvVelmor3.kvTag")
tag.Properties.Build ReadText("invoice.properties")
tag.Properties.Add "Path", folder, True     ' where the included files are
tag.Value = ReadText("invoice.rtf")         ' last, when all else is set

Set output = files.CreateTextFile(WScript.Arguments(0), True)
output.Write tag.CleanRTFByVal(tag.Result)  ' the included terms are a document of their own
output.Close

For Each entry In tag.ErrorLog
    WScript.Echo entry.Name & ": " & entry.Value
Next
If tag.ErrorLog.Count > 0 Then WScript.Quit 3
tag.Dispose
