#!/usr/bin/env python3
"""Writes the code that serves the public classes' members, from the IDL.

    tools/generate_members.py face CLASS IDL FOLDER     FOLDER/CLASSFace.h and FOLDER/CLASSFace.cpp
    tools/generate_members.py table CLASS IDL FILE      FILE: CLASS::invoke and CLASSMembers(), the members by name
    tools/generate_members.py check CLASS IDL PAGE      whether the page's section CLASS shows each member as it is

A face hands each member of the vtable on to the core class's function of the same name: a get and a let are overloads, a
set of a VARIANT is "Set" and the name. A table does the same for late-bound calls, of hosts and inside the program. The
types, the optional arguments and their defaults are those of the IDL. What the generator does not understand it refuses,
and a member without a help string, too.
"""

import glob
import os
import re
import sys

SOURCES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src")

# The core can return these texts without a copy.
SHARED_TEXTS = {("kvTag", "Result"): "resultBuilder"}

ATTRIBUTES = r'\[((?:[^\]"]|"[^"]*")*)\]'
MEMBER = re.compile(r"\s*" + ATTRIBUTES + r"\s*HRESULT\s+(\w+)\(((?:[^;\"]|\"[^\"]*\")*?)\);")
PARAMETER = re.compile(r"\s*" + ATTRIBUTES + r"\s*(\w+)\s*(\**)\s*(\w+)\s*(?:,|$)")
ATTRIBUTE = re.compile(r'\s*(\w+)(?:\(("[^"]*"|[^)]*)\))?\s*(?:,|$)')

# The core class of a public class that has another name.
CORE_CLASSES = {"ITag4": "EmptyHandler"}

# The types of a core class: from a face, from a late-bound call. Objects by reference are read, never replaced.
FROM_HOST = {
    "BSTR": "textOf({})", "VARIANT": "valueOf({})", "VARIANT_BOOL": "isTrue({})", "DATE": "automation::Date{{{}}}",
    "IDispatch*": "objectOf({})", "IDispatch**": "objectOf({0} ? *{0} : nullptr)",
    "long": "{}", "short": "{}", "double": "{}", "float": "{}",
}
FROM_CALL = {
    "BSTR": "textArgument", "IDispatch**": "object", "VARIANT": "variant", "VARIANT_BOOL": "boolean", "DATE": "date", "IDispatch*": "object",
    "long": "longInteger", "short": "integer", "double": "doubleFloat", "float": "single",
}
# By-reference values: made from a host's place, from an argument.
REFERENCES = {
    "BSTR": ("automation::TextReference {0}In(textAt({0}));", "automation::TextReference {0}(args.textArgument({1})); "),
    "long": ("std::int32_t {0}In = numberAt({0});", "std::int32_t {0} = args.longOr({1}, 0); "),
}
RESULTS = set(FROM_HOST) - {"IDispatch**"} | {"IUnknown*"}


class Refused(Exception):
    pass


def consume(pattern, text, what):
    """All matches of the pattern in sequence; any other text is refused."""
    at, found = 0, []
    while text[at:].strip():
        match = pattern.match(text, at)
        if not match or match.end() == at:
            raise Refused(f"{what}: {text[at:].strip().splitlines()[0]}")
        found.append(match)
        at = match.end()
    return found


def attributes(text, known, what):
    found = {match.group(1): match.group(2) for match in consume(ATTRIBUTE, text, what)}
    for name in found:
        if name not in known:
            raise Refused(f"{what}: attribute {name}")
    return found


class Parameter:
    def __init__(self, match, what):
        said = attributes(match.group(1), {"in", "out", "retval", "optional", "defaultvalue"}, what)
        self.name = match.group(4)
        self.declared = match.group(2) + match.group(3)
        self.is_result = "retval" in said
        self.optional = "optional" in said
        self.default = said.get("defaultvalue")
        self.by_reference = "in" in said and "out" in said and self.declared != "IDispatch**"
        self.type = self.declared[:-1] if self.by_reference or self.is_result else self.declared
        if not self.is_result and re.fullmatch(r"_\w+\*", self.type):
            self.type = "IDispatch*"
        known = REFERENCES if self.by_reference else RESULTS if self.is_result else FROM_HOST
        if self.type not in known and not (self.is_result and re.fullmatch(r"_\w+\*", self.type)):
            raise Refused(f"{what}: type {self.declared}")

    def initial(self):
        """The C++ value of an omitted late-bound argument."""
        value = self.default
        if self.type == "BSTR":
            return "automation::TextArgument(std::u16string_view(u" + (value or '""') + "))"
        if self.type == "VARIANT":
            return f"Variant(u{value})" if value else "Variant::missing()"
        if self.type == "VARIANT_BOOL":
            return {"0": "false", "-1": "true"}[value]
        if self.type in ("IDispatch*", "DATE"):
            return "nullptr" if self.type == "IDispatch*" else "Date{}"
        return {"long": "std::int32_t", "short": "std::int16_t"}.get(self.type, self.type) + f"{{{value or 0}}}"

    def shown(self):
        if not self.optional:
            return self.name
        if self.type == "VARIANT" and not self.default:
            return f"[{self.name}]"
        if self.type == "IDispatch**":
            return f"[{self.name}]"
        value = {"VARIANT_BOOL": {"0": "False", "-1": "True"}, "IDispatch*": {"0": "Nothing"}}.get(self.type, {})
        return f"[{self.name} = {value.get(self.default, self.default or 0)}]"

    def from_call(self, index):
        given = f"args.{FROM_CALL[self.type]}({index})"
        if not self.optional or self.type.startswith("IDispatch") or self.initial() == "Variant::missing()":
            return given  # Arguments gives Nothing, and a missing value, by itself
        return f"(args.has({index}) ? {given} : {self.initial()})"


class Member:
    def __init__(self, match, interface):
        self.name = match.group(2)
        what = f"{interface}.{self.name}"
        said = attributes(match.group(1), {"id", "propget", "propput", "propputref", "helpstring", "hidden", "restricted"},
                          what)
        if not said.get("helpstring") or len(said["helpstring"]) < 3:
            raise Refused(f"{what} has no help string")
        self.kind = next((kind for kind in ("propget", "propput", "propputref") if kind in said), "method")
        self.id = {"DISPID_VALUE": "0", "DISPID_NEWENUM": "-4"}.get(said["id"], said["id"])
        self.is_default = said["id"] == "DISPID_VALUE"
        self.is_enumerator = said["id"] == "DISPID_NEWENUM"
        parameters = [Parameter(each, what) for each in consume(PARAMETER, match.group(3), what)]
        self.result = parameters[-1] if parameters and parameters[-1].is_result else None
        self.parameters = parameters[:-1] if self.result else parameters
        self.references = [each for each in self.parameters if each.by_reference]
        if any(each.is_result for each in self.parameters) or (self.result and self.references):
            raise Refused(f"{what}: its parameters")

    def gives_object(self):
        return self.result is not None and self.result.type.endswith("*")

    def vtable_name(self):
        return {"propget": "get_", "propput": "put_", "propputref": "putref_"}.get(self.kind, "") + self.name

    def core_name(self):
        sets_value = self.kind == "propputref" and self.parameters[-1].type == "VARIANT"
        return "Set" + self.name if sets_value else self.name

    def shown(self):
        """As the documentation writes it."""
        counted = self.parameters[:-1] if self.kind in ("propput", "propputref") else self.parameters
        if not counted and self.kind != "method":
            return self.name
        return f"{self.name}({', '.join(each.shown() for each in counted)})"

    def signature(self):
        every = self.parameters + ([self.result] if self.result else [])
        return ", ".join(f"{each.declared} {each.name}" for each in every)


class Interface:
    def __init__(self, class_name, text):
        text = re.sub(r"//[^\n]*", "", text)
        body = re.search(r"interface _" + class_name + r" : IDispatch\s*\{(.*?)\n    \}", text, re.S)
        if not body:
            raise Refused(f"no interface _{class_name}")
        self.name = class_name
        self.core = CORE_CLASSES.get(class_name, class_name)
        self.members = [Member(each, "_" + class_name) for each in consume(MEMBER, body.group(1), class_name)]

    def returned(self):
        """The classes of the objects that members return."""
        return {each.result.type[1:-1] for each in self.members if each.result and each.result.type.startswith("_")}

    def headers(self):
        """Of the core class and of the classes that its members return."""
        given = self.returned()
        with open(header_of(self.core), encoding="ascii") as header:
            given |= set(re.findall(r"std::shared_ptr<(\w+)> NewEnum\(", header.read()))
        found = [header_of(each) for each in sorted(given | {self.core})]
        return [os.path.relpath(each, SOURCES) for each in found if each]


def header_of(class_name):
    """None for a class that the header of its owner defines."""
    found = glob.glob(os.path.join(SOURCES, "*", class_name + ".h"))
    if len(found) > 1:
        raise Refused(f"{class_name} has more than one header")
    return found[0] if found else None


def face_header(interface):
    name = interface.name
    lines = [f"    HRESULT STDMETHODCALLTYPE {each.vtable_name()}({each.signature()}) noexcept override;"
             for each in interface.members]
    return "\n".join([
        "#pragma once", "", '#include "com/Face.h"', f'#include "{os.path.relpath(header_of(interface.core), SOURCES)}"',
        '#include "kvVelmor3.h"', "", "namespace velmor {", "", f"const automation::DispatchTable& {name}Members();",
        "", "namespace com {", "",
        f"class {name}Face final : public Face<_{name}, {interface.core}, {name}Members, CLSID_{name}> {{",
        "public:", "    using Face::Face;", "", *lines, "};", "", "}  // namespace com", "}  // namespace velmor", ""])


def face_member(interface, member):
    core = SHARED_TEXTS.get((interface.name, member.name), member.core_name())
    arguments = ", ".join(f"{each.name}In" if each.by_reference else FROM_HOST[each.type].format(each.name)
                          for each in member.parameters)
    call = f"core_->{core}({arguments})"
    head = f"HRESULT {interface.name}Face::{member.vtable_name()}({member.signature()}) noexcept {{"
    if member.result:
        if member.result.type.startswith("_"):
            call = f"faceFor<{member.result.type[1:-1]}Face>({call})"
        return [head, f"    return guard({member.result.name}, [&] {{ return {call}; }});", "}", ""]
    needed = [f"needed({each.name});" for each in member.references if not each.optional]
    before = needed + [REFERENCES[each.type][0].format(each.name) for each in member.references]
    after = [f"putBack({each.name}, {each.name}In);" for each in member.references]
    return [head, f"    return guard([&] {{ {' '.join([*before, call + ';', *after])} }});", "}", ""]


def face_source(interface):
    lines = [f'#include "com/{each}Face.h"' for each in sorted({interface.name} | interface.returned())]
    lines += [f'#include "{each}"' for each in interface.headers()]
    lines += ["", "namespace velmor::com {", ""]
    for member in interface.members:
        lines += face_member(interface, member)
    return "\n".join(lines + ["}  // namespace velmor::com", ""])


def table_row(member, name):
    kind = {"propget": "get", "propput": "let", "propputref": "set"}.get(member.kind, "method")
    counted = member.parameters[:-1] if kind in ("let", "set") else member.parameters
    required = sum(not each.optional for each in counted)
    arguments, before, after = [], [], []
    for index, each in enumerate(member.parameters):
        if each.by_reference:
            before.append(REFERENCES[each.type][1].format(each.name, index))
            after.append(f" args.putBack({index}, {each.name});")
            arguments.append(each.name)
        else:
            arguments.append(each.from_call(index))
    call = f"self.{member.core_name()}({', '.join(arguments)})"
    body = f"return automation::answer({call});" if member.result else (
        f"{''.join(before)}{call};{''.join(after)} return Variant();")
    names = "".join(each.name + " " for each in member.parameters)
    return (f'        {{u"{name}", MemberKind::{kind}, {required}, {len(counted)},\n'
            f"         []([[maybe_unused]] Self& self, [[maybe_unused]] Arguments& args) -> Variant {{ {body} }},\n"
            f'         {str(member.gives_object()).lower()}, {member.id}, u"{names}"}},')


def table_source(interface):
    default = next((each.name for each in interface.members if each.is_default), "")
    rows = []
    for member in interface.members:
        rows += [table_row(member, name) for name in ([member.name, "_NewEnum"] if member.is_enumerator else [member.name])]
    lines = ['#include "automation/DispatchTable.h"'] + [f'#include "{each}"' for each in interface.headers()]
    lines += ["", "namespace velmor {", "", "using automation::Arguments;", "using automation::Date;",
              "using automation::MemberKind;", "using automation::Variant;", "", "namespace {", "",
              f"using Self = {interface.core};", "", "}  // namespace", "",
              f"const automation::DispatchTable& {interface.name}Members();",
              f"const automation::DispatchTable& {interface.name}Members() {{",
              f'    static const automation::DispatchTable members(u"{default}", {{', *rows, "    });",
              "    return members;", "}", "",
              f"Variant {interface.core}::invoke(std::u16string_view name, automation::InvokeKind kind,"
              " std::span<Variant> arguments) {",
              f"    return {interface.name}Members().invoke(*this, name, kind, arguments);", "}", "", "}  // namespace velmor", ""]
    return "\n".join(lines)


def check_page(interface, page):
    section = re.search(r"^## " + interface.name + r"$(.*?)(?=^## |\Z)", page, re.S | re.M)
    rows = re.findall(r"^\|([^|]*)\|", section.group(1) if section else "", re.M)
    documented = {each for row in rows for each in re.findall(r"`([^`]+)`", row)}
    missing = sorted({each.shown() for each in interface.members} - documented)
    if missing:
        raise Refused(f"the section {interface.name} has no {', '.join(missing)}")


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="ascii") as file:
        file.write(text)


def main(arguments):
    if len(arguments) != 4 or arguments[0] not in ("face", "table", "check"):
        print(__doc__)
        return 0 if arguments in (["-h"], ["--help"]) else 2
    what, class_name, idl, target = arguments
    try:
        with open(idl, encoding="ascii") as file:
            interface = Interface(class_name, file.read())
        if what == "check":
            with open(target, encoding="utf-8") as page:
                check_page(interface, page.read())
        elif what == "table":
            write(target, table_source(interface))
        else:
            write(os.path.join(target, class_name + "Face.h"), face_header(interface))
            write(os.path.join(target, class_name + "Face.cpp"), face_source(interface))
    except Refused as fault:
        print(f"{target if what == 'check' else idl}: {fault}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
