#!/usr/bin/env python3
"""Writes what says where the component's classes are, from the IDL.

    tools/generate_registration.py manifest MACHINE IDL FILE     MACHINE: x86 or amd64
    tools/generate_registration.py classes IDL FILE
    tools/generate_registration.py installer VERSION FOLDER IDL FILE

A manifest lets hosts use the component without registration. Its version is that of the type library, so that the
manifests of hosts need no change for a new revision. `classes` are the rows of the server's table for self-registration
(Component.cpp). `installer` is the source of the Windows Installer package, for wixl in the folder above FOLDER: the files
of FOLDER (x86, x64 and those beside them) and the rows of the registry, the same as self-registration writes. Its
identifiers follow from the version.
"""

import os
import re
import sys
import uuid
from xml.sax.saxutils import quoteattr

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
    proxyStubClsid32="{proxy}"/>
"""
AUTOMATION_PROXY = "{00020424-0000-0000-C000-000000000046}"  # the system's own, which reads the type library

# Of all versions, so that a newer package replaces an older one.
UPGRADE_CODE = uuid.UUID("0a0d2a0e-6d5b-4f5c-9b0e-6a1c6d3f5e11")

PRODUCT = """<?xml version="1.0" encoding="UTF-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
<Product Id="{product}" UpgradeCode="{upgrade}" Version="{version}" Name="Velmor" Manufacturer="Velmor" Language="1033">
<Package InstallerVersion="200" Compressed="yes" InstallScope="perMachine"/>
<MajorUpgrade DowngradeErrorMessage="A newer version of Velmor is installed."/>
<Media Id="1" Cabinet="velmor.cab" EmbedCab="yes"/>
<Directory Id="TARGETDIR" Name="SourceDir">
<Directory Id="ProgramFilesFolder"><Directory Id="FOLDER32" Name="Velmor">
{x86}</Directory></Directory>
<Directory Id="ProgramFiles64Folder"><Directory Id="FOLDER64" Name="Velmor">
{x64}</Directory></Directory>
</Directory>
<Feature Id="Velmor" Level="1">
<ComponentRef Id="x86"/><ComponentRef Id="x64"/>
</Feature>
</Product>
</Wix>
"""
COMPONENT = """<Component Id="{id}" Guid="{guid}" Win64="{win64}">
{items}</Component>
"""


class Idl:
    def __init__(self, path):
        with open(path, encoding="ascii") as file:
            self.text = re.sub(r"//[^\n]*", "", file.read())
        (self.name, said, self.id), = self.definitions("library")
        self.version = re.search(r"version\(([\d.]+)\)", said).group(1)
        self.major = self.version.split(".")[0]
        self.help = self.help_of(said)
        self.classes = [(name, identifier, self.help_of(said)) for name, said, identifier in self.definitions("coclass")
                        if "noncreatable" not in said]
        self.interfaces = [(name, identifier) for name, _, identifier in self.definitions("interface")]

    def definitions(self, kind):
        """Name, attributes and identifier of each library, coclass or interface."""
        for match in re.finditer(r"\[([^\[\]]*)\]\s*" + kind + r"\s+(\w+)\s*[:{\n]", self.text):
            identifier = re.search(r"uuid\(([-0-9A-F]{36})\)", match.group(1))
            if not identifier:
                sys.exit(f"{kind} {match.group(2)} has no uuid")
            yield match.group(2), match.group(1), identifier.group(1)

    @staticmethod
    def help_of(said):
        return re.search(r'helpstring\("([^"]*)"\)', said).group(1)


def manifest(idl, machine):
    common = {"library": idl.name, "library_id": idl.id, "major": idl.major, "proxy": AUTOMATION_PROXY}
    parts = [HEAD.format(library=idl.name, machine=machine, id=idl.id, tlb=idl.version)]
    parts += [CLASS.format(name=name, id=identifier, **common) for name, identifier, _ in idl.classes]
    parts.append("  </file>\n")
    parts += [INTERFACE.format(name=name, id=identifier, **common) for name, identifier in idl.interfaces]
    return "".join(parts) + "</assembly>\n"


def classes(idl):
    return "".join(f'{{CLSID_{name}, L"{idl.name}.{name}", L"{idl.version}", L"{said}", &make<{name}Face::CoreClass>}},\n'
                   for name, _, said in idl.classes)


def value(key, text, name=None):
    named = f" Name={quoteattr(name)}" if name else ""
    return (f'<RegistryValue Root="HKLM" Key={quoteattr("Software" + chr(92) + "Classes" + chr(92) + key)}{named}'
            f' Type="string" Value={quoteattr(text)}/>\n')


def class_rows(idl, dll):
    """What programs of each bitness have for themselves."""
    rows = ""
    for name, identifier, said in idl.classes:
        key, plain = f"CLSID\\{{{identifier}}}", f"{idl.name}.{name}"
        rows += value(key, said) + value(key + "\\InprocServer32", f"[#{dll}]")
        rows += value(key + "\\InprocServer32", "Apartment", "ThreadingModel")
        rows += value(key + "\\ProgID", f"{plain}.{idl.major}") + value(key + "\\VersionIndependentProgID", plain)
        rows += value(key + "\\Version", idl.version) + value(key + "\\Programmable", "")
        rows += value(key + "\\TypeLib", f"{{{idl.id}}}")
    for name, identifier in idl.interfaces:
        key = f"Interface\\{{{identifier}}}"
        rows += value(key, name) + value(key + "\\ProxyStubClsid", AUTOMATION_PROXY)
        rows += value(key + "\\ProxyStubClsid32", AUTOMATION_PROXY)
        rows += value(key + "\\TypeLib", f"{{{idl.id}}}") + value(key + "\\TypeLib", idl.version, "Version")
    return rows


def shared_rows(idl, dll32, dll64):
    rows = ""
    for name, identifier, said in idl.classes:
        plain = f"{idl.name}.{name}"
        for key in (plain, f"{plain}.{idl.major}"):
            rows += value(key, said) + value(key + "\\CLSID", f"{{{identifier}}}")
        rows += value(plain + "\\CurVer", f"{plain}.{idl.major}")
    key = f"TypeLib\\{{{idl.id}}}\\{idl.version}"
    rows += value(key, idl.help) + value(key + "\\FLAGS", "8") + value(key + "\\HELPDIR", "[FOLDER64]")
    return rows + value(key + "\\0\\win32", f"[#{dll32}]") + value(key + "\\0\\win64", f"[#{dll64}]")


def identifier_of(*said):
    return "{" + str(uuid.uuid5(UPGRADE_CODE, " ".join(said))).upper() + "}"


def component(bits, above, folders, rows, version):
    files = ""
    for folder in folders:
        for name in sorted(os.listdir(folder)):
            path = os.path.join(folder, name)
            if os.path.isfile(path):
                source = os.path.relpath(path, above)  # wixl takes no absolute path
                files += f'<File Id="{bits}.{name}" Name={quoteattr(name)} Source={quoteattr(source)}/>\n'
    is_64 = "yes" if bits == "x64" else "no"
    return COMPONENT.format(id=bits, guid=identifier_of("component", bits, version), win64=is_64, items=files + rows)


def installer(idl, version, folder):
    x86, x64 = (os.path.join(folder, bits) for bits in ("x86", "x64"))
    above = os.path.dirname(os.path.abspath(folder))
    dll32, dll64 = "x86.Velmor3.dll", "x64.Velmor3.dll"
    return PRODUCT.format(
        version=version, upgrade="{" + str(UPGRADE_CODE).upper() + "}", product=identifier_of("product", version),
        x86=component("x86", above, [x86], class_rows(idl, dll32), version),
        x64=component("x64", above, [x64, folder], class_rows(idl, dll64) + shared_rows(idl, dll32, dll64), version))


FORMS = {"manifest": (manifest, 1), "classes": (classes, 0), "installer": (installer, 2)}


def main(arguments):
    form, count = FORMS.get(arguments[0] if arguments else "", (None, 0))
    if not form or len(arguments) != count + 3:
        print(__doc__)
        return 0 if arguments in (["-h"], ["--help"]) else 2
    *given, idl, target = arguments[1:]
    with open(target, "w", encoding="ascii") as file:
        file.write(form(Idl(idl), *given))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
