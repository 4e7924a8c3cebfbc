Attribute VB_Name = "VelmorMistakes"
' Shows the mistakes of the open template. Import this module into the word processor and run ShowMistakes.
'
' The document must be saved as RTF. Beside "letter.rtf", a file "letter.properties" in the text form of a property
' collection names the properties that the letter's host sets; without it properties are not checked.
'
' A new document lists the mistakes. If there are any, the macro also opens a copy, "letter-checked.rtf", that has them
' as comments.
Option Explicit

Public Sub ShowMistakes()
    Dim path, base, library, checker, template, mistakes
    path = ActiveDocument.FullName
    If LCase(Right(path, 4)) <> ".rtf" Then
        MsgBox "Save the template as RTF first."
        Exit Sub
    End If
    ActiveDocument.Save
    base = Left(path, Len(path) - 4)
    Set library = CreateObject("kvVelmor3.kvTag").Library
    Set checker = CreateObject("kvVelmor3.kvCheck")
    template = library.ReadTextFile(path)
    Set mistakes = checker.Check(template, PropertiesOf(base & ".properties", ActiveDocument.Path))
    Documents.Add.Content.Text = ListOf(mistakes, checker.More)
    If mistakes.Count = 0 Then Exit Sub
    template = checker.Annotate(template, PropertiesOf(base & ".properties", ActiveDocument.Path))
    If library.SaveTextFile(base & "-checked.rtf", template) Then Documents.Open base & "-checked.rtf"
End Sub

' Nothing if there is no such file: the properties are then not known.
Private Function PropertiesOf(file, folder)
    Dim tag
    Set tag = CreateObject("kvVelmor3.kvTag")
    Set PropertiesOf = Nothing
    If Not tag.Library.FileExists(file) Then Exit Function
    tag.Properties.LoadFromFile file
    tag.Properties.Add "Path", folder, True     ' where the included files are
    Set PropertiesOf = tag.Properties
End Function

Private Function ListOf(mistakes, more)
    Dim mistake, text
    text = mistakes.Count + more & " mistakes" & vbCr
    For Each mistake In mistakes
        text = text & mistake.Properties("Severity") & " " & mistake.Name & ", " & PlaceOf(mistake) & ": " & _
            mistake.Properties("Text") & HintOf(mistake) & vbCr
    Next
    If more > 0 Then text = text & "and " & more & " more" & vbCr
    ListOf = text
End Function

' In the author's terms; of an included file the name and the line.
Private Function PlaceOf(mistake)
    PlaceOf = mistake.Properties("Place")
    If mistake.Properties("File") <> "" Then
        PlaceOf = mistake.Properties("File") & ", line " & mistake.Properties("Line")
    End If
End Function

Private Function HintOf(mistake)
    HintOf = mistake.Properties("Hint")
    If HintOf <> "" Then HintOf = " (" & HintOf & ")"
End Function
