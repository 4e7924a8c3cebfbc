using System;
using System.IO;

/// <summary>The short letter, late-bound.</summary>
static class Dynamic
{
    public static int MakeLetter(string template, string result)
    {
        Type type = Type.GetTypeFromProgID("kvVelmor3.kvTag", throwOnError: true)!;
        dynamic tag = Activator.CreateInstance(type)!;
        dynamic library = tag.Library;
        tag.Properties.Add("Name", "Ada Lovelace", true);
        tag.Properties.Add("Item", "an aneroid barometer", true);
        tag.Value = library.ReadTextFile(template); // last, when all else is set
        if (!library.SaveTextFile(result, tag.Result)) throw new IOException($"cannot write {result}");

        int entries = 0;
        foreach (dynamic entry in tag.ErrorLog)
        {
            Console.Error.WriteLine($"{entry.Name}: {entry.Value}");
            ++entries;
        }
        tag.Dispose();
        return entries == 0 ? 0 : 3;
    }
}
