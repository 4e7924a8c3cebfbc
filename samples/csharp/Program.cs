using System;

static class Program
{
    [STAThread]
    static int Main(string[] arguments)
    {
        if (arguments.Length != 3) return 2;
        bool isTyped = arguments[0] == "typed";
        return isTyped ? Typed.MakeLetter(arguments[1], arguments[2]) : Dynamic.MakeLetter(arguments[1], arguments[2]);
    }
}
