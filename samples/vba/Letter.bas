Attribute VB_Name = "VelmorLetter"
' Makes the short letter. Import this module, and call MakeLetter in the immediate window:
'     Print MakeLetter("C:\letters\short.rtf", "C:\letters\result.rtf")
' The function returns the entries of the error log, a line each, or "" if there are none.
Option Explicit

Public Function MakeLetter(template, result)
    Dim tag, library, entry, text
    Set tag = CreateObject("kvVelmor3.kvTag")
    Set library = tag.Library
    tag.Properties.Add "Name", "Ada Lovelace", True
    tag.Properties.Add "Item", "an aneroid barometer", True
    tag.Value = library.ReadTextFile(template)      ' last, when all else is set
    text = tag.Result
    MakeLetter = ""
    If Not library.SaveTextFile(result, text) Then MakeLetter = "The file cannot be written" & vbCrLf
    For Each entry In tag.ErrorLog
        MakeLetter = MakeLetter & entry.Name & ": " & entry.Value & vbCrLf
    Next
    tag.Dispose
End Function
