using System;
using System.IO;

/// <summary>The short letter with the types of an interop assembly.</summary>
static class Typed
{
    public static int MakeLetter(string template, string result)
    {
        var tag = (IkvTag)new kvTag();
        var library = (IkvLibrary)tag.Library;
        var properties = (IprivProperties)tag.Properties;
        properties.Add("Name", "Ada Lovelace", true);
        properties.Add("Item", "an aneroid barometer", true);
        tag.Value = library.ReadTextFile(template); // last, when all else is set
        if (!library.SaveTextFile(result, tag.Result, false))
        {
            throw new IOException($"cannot write {result}");
        }

        var log = (IprivProperties)tag.ErrorLog;
        for (int index = 1; index <= log.Count; ++index)
        {
            Console.Error.WriteLine($"{log[index].Name}: {log[index].Value}");
        }
        int entries = log.Count;
        tag.Dispose(true);
        return entries == 0 ? 0 : 3;
    }
}
