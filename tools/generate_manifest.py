#!/usr/bin/env python3
"""Writes the manifest by which hosts use the component without registration, from the IDL.

    tools/generate_manifest.py IDL MACHINE FILE      MACHINE: x86 or amd64

Its version is that of the type library, so that the manifests of hosts need no change for a new revision. It names the
type library, the creatable classes and the interfaces, which automation's own proxies marshal.
"""

import re
import sys

HEAD = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <assemblyIdentity type="win32" name="{library}" version="{tlb}.0.0" processorArchitecture="{machine}"/>
  <file name="Velmor3.dll">
    <typelib tlbid="{{{id}}}" version="{tlb}" helpdir=""/>
"""
CLASS = """    <comClass clsid="{{{id}}}" progid="{library}.{name}" tlbid="{{{library_id}}}" threadingModel="Apartment">
      <progid>{library}.{name}.{major}</progid>
    </comClass>
"""
INTERFACE = """  <comInterfaceExternalProxyStub name="{name}" iid="{{{id}}}" tlbid="{{{library_id}}}"
    proxyStubClsid32="{{00020424-0000-0000-C000-000000000046}}"/>
"""


def definitions(text, kind):
    """Name, attributes and identifier of each library, coclass or interface."""
    for match in re.finditer(r"\[([^\[\]]*)\]\s*" + kind + r"\s+(\w+)\s*[:{\n]", text):
        identifier = re.search(r"uuid\(([-0-9A-F]{36})\)", match.group(1))
        if not identifier:
            sys.exit(f"{kind} {match.group(2)} has no uuid")
        yield match.group(2), match.group(1), identifier.group(1)


def manifest(text, machine):
    text = re.sub(r"//[^\n]*", "", text)
    (library, attributes, library_id), = definitions(text, "library")
    tlb = re.search(r"version\(([\d.]+)\)", attributes).group(1)
    common = {"library": library, "library_id": library_id, "major": tlb.split(".")[0]}
    parts = [HEAD.format(library=library, machine=machine, id=library_id, tlb=tlb)]
    classes = [(name, identifier) for name, said, identifier in definitions(text, "coclass") if "noncreatable" not in said]
    parts += [CLASS.format(name=name, id=identifier, **common) for name, identifier in classes]
    parts.append("  </file>\n")
    parts += [INTERFACE.format(name=name, id=identifier, **common)
              for name, _, identifier in definitions(text, "interface")]
    return "".join(parts) + "</assembly>\n"


def main(arguments):
    if len(arguments) != 3:
        print(__doc__)
        return 0 if arguments in (["-h"], ["--help"]) else 2
    idl, machine, target = arguments
    with open(idl, encoding="ascii") as file:
        text = file.read()
    with open(target, "w", encoding="ascii") as file:
        file.write(manifest(text, machine))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
