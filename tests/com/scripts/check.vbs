' Stands in front of every script test. Check prints what it got when it is wrong, Done ends the script with
' the number of faults. A script that stops half-way never says so, and fails as well.
Option Explicit

Dim Faults, Checks
Faults = 0
Checks = 0

Sub Check(what, got, wanted)
    Checks = Checks + 1
    If VarType(got) = VarType(wanted) Then
        If got = wanted Then Exit Sub
    End If
    Faults = Faults + 1
    WScript.Echo "FAULT " & what & ": got " & TypeName(got) & " [" & got & "], wanted " & TypeName(wanted) & " [" & wanted & "]"
End Sub

Sub Done
    WScript.Echo Checks & " checks, " & Faults & " faults"
    WScript.Quit Faults
End Sub
