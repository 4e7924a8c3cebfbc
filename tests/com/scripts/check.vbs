' Precedes every script test. Check compares type and value as text, Done ends the script with the
' number of faults. A script that stops half-way never says so, and fails as well.
Option Explicit

Dim Faults, Checks
Faults = 0
Checks = 0

Function Describe(ByRef got)
    If IsObject(got) Then
        Describe = "Object"
        If got Is Nothing Then Describe = "Nothing"
    ElseIf VarType(got) = vbString Then
        Describe = "'" & Replace(got, vbCrLf, "|") & "'"
    ElseIf VarType(got) = vbDate Then
        Describe = "Date " & CDbl(got)
    ElseIf VarType(got) = 13 Then
        Describe = "Unknown"
    ElseIf IsEmpty(got) Then
        Describe = "Empty"
    Else
        Describe = TypeName(got) & " " & got
    End If
End Function

Sub Check(ByRef got, wanted)
    Checks = Checks + 1
    If Describe(got) = wanted Then Exit Sub
    Faults = Faults + 1
    WScript.Echo "FAULT in check " & Checks & ": got " & Describe(got) & ", wanted " & wanted
End Sub

Sub Done
    WScript.Echo Checks & " checks, " & Faults & " faults"
    WScript.Quit Faults
End Sub
