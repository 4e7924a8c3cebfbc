// The same component from JScript: lets of objects, null, enumerators.
var checks = 0, faults = 0;

function check(what, got, wanted) {
    ++checks;
    if (got === wanted) return;
    ++faults;
    WScript.Echo("FAULT " + what + ": got [" + got + "], wanted [" + wanted + "]");
}

var tag = new ActiveXObject("kvVelmor3.kvTag");
var database = new ActiveXObject("VelmorTest.Database");
tag.Database = database;
check("database", tag.Database.Name, "host database");
tag.Database = null;
check("no database", tag.Database, null);

tag.Properties.Add("b", 2);
tag.Properties.Add("a", "x");
var names = "";
for (var items = new Enumerator(tag.Properties); !items.atEnd(); items.moveNext()) names += items.item().Name;
check("enumerator", names, "ba");

tag.Value = "<KV:TAG>PROPERTY:a=:</KV><KV:LEVEL5>x:</KV>";
check("result", tag.Result, "xL5[X]");
check("index", tag.Tags.Item(1).CommandName, "PROPERTY");
tag.Properties.Item("a").Value = "y";
check("let", tag.Properties.GetValue("a"), "y");
WScript.Echo(checks + " checks, " + faults + " faults");
WScript.Quit(faults);
