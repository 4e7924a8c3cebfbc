using System.Runtime.InteropServices;

// The text of an interop assembly: the interfaces of kvVelmor3 by their members' identifiers, as far as the letter needs
// them. The identifiers are those of kvVelmor3.idl and never change.

[ComImport, Guid("54DBB3C4-0309-4CA5-BC1F-63E6E0FF4FDB")]
class kvTag
{
}

[ComImport, Guid("BFCD527C-F18B-421B-80D6-DB19AD4710A4"), InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]
interface IkvTag
{
    [DispId(2)] string Value { get; set; }
    [DispId(3)] string Result { get; }
    [DispId(4)] object Properties { [return: MarshalAs(UnmanagedType.IDispatch)] get; }
    [DispId(28)] object ErrorLog { [return: MarshalAs(UnmanagedType.IDispatch)] get; }
    [DispId(29)] object Library { [return: MarshalAs(UnmanagedType.IDispatch)] get; }
    [DispId(32)] void Dispose(bool disposeProperties);
}

[ComImport, Guid("501FCBE6-20A3-4782-BC5E-8F5C5EFD6FB4"), InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]
interface IprivProperties
{
    [DispId(0)] IprivProperty this[object indexOrKey] { get; }
    [DispId(1)] IprivProperty Add(string name, object value, bool replaceOriginal);
    [DispId(10)] int Count { get; }
}

[ComImport, Guid("1ACA253F-BD30-41D1-8E5D-AC6A7523D6FD"), InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]
interface IprivProperty
{
    [DispId(0)] object Value { get; set; }
    [DispId(1)] string Name { get; }
}

[ComImport, Guid("404C20F1-93C1-4F02-B551-414E17E91013"), InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]
interface IkvLibrary
{
    [DispId(10)] string ReadTextFile(string path);
    [DispId(21)] bool SaveTextFile(string path, string text, bool utf8);
}
