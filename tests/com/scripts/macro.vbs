' The macro of samples/macro, which precedes this script, with a stand-in for the word processor.

Dim ActiveDocument, Documents, Shown, Opened, Boxes, Tool

Class OpenDocument
    Public FullName
    Public Path
    Public Saved
    Public Sub Save
        Saved = True
    End Sub
End Class

Class NewDocument
    Public Property Get Content
        Set Content = Me
    End Property
    Public Property Let Text(said)
        Shown = said
    End Property
End Class

Class OpenDocuments
    Public Function Add
        Set Add = New NewDocument
    End Function
    Public Sub Open(file)
        Opened = file
    End Sub
End Class

Sub MsgBox(said)
    Boxes = Boxes & said
End Sub

Set ActiveDocument = New OpenDocument
Set Documents = New OpenDocuments
Set Tool = CreateObject("kvVelmor3.kvTag").Library
ActiveDocument.Path = Tool.TemporaryFolder & "\Velmor tests"
Tool.MakeFolder ActiveDocument.Path
ActiveDocument.FullName = ActiveDocument.Path & "\letter.doc"
ShowMistakes
Check Boxes, "'Save the template as RTF first.'"

ActiveDocument.FullName = ActiveDocument.Path & "\letter.rtf"
Tool.SaveTextFile ActiveDocument.FullName, "{\rtf1 <KV:TAG>PROPERTY:Nmae:</KV>\par <KV:TAG>INCLUDE=a.txt:</KV>}"
Tool.SaveTextFile ActiveDocument.Path & "\a.txt", "<KV:NONE>X:</KV>"
Tool.SaveTextFile ActiveDocument.Path & "\letter.properties", "Name=x:"
ShowMistakes
Check ActiveDocument.Saved, "Boolean True"
Check Replace(Replace(Shown, vbCr, "|"), ActiveDocument.Path, "."), "'2 mistakes|" & _
    "error KV301, page text, paragraph 1: nothing sets the property Nmae (did you mean Name?)|" & _
    "error KV201, .\a.txt, line 1: no handler NONE is registered|'"
Check Opened, "'" & ActiveDocument.Path & "\letter-checked.rtf'"
Check UBound(Split(Tool.ReadTextFile(Opened), "\annotation")), "Long 2"
Done
