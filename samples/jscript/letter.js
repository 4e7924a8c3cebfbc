// Makes the short letter:  cscript //nologo letter.js TEMPLATE RESULT
var tag = new ActiveXObject("kvVelmor3.kvTag");
var library = tag.Library;
tag.Properties.Add("Name", "Ada Lovelace", true);
tag.Properties.Add("Item", "an aneroid barometer", true);
tag.Value = library.ReadTextFile(WScript.Arguments(0)); // last, when all else is set

var saved = library.SaveTextFile(WScript.Arguments(1), tag.Result);
for (var log = new Enumerator(tag.ErrorLog); !log.atEnd(); log.moveNext()) {
    WScript.Echo(log.item().Name + ": " + log.item().Value);
}
if (!saved) WScript.Quit(2);
if (tag.ErrorLog.Count > 0) WScript.Quit(3);
tag.Dispose();
