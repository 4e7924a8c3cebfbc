#!/usr/bin/env python3
"""Runs the built velmor as a user does.

    tests/cli/test_velmor.py PROGRAM HANDLERS [-- RUNNER ...]

HANDLERS is the folder of the sample handler. RUNNER starts the program (Wine, for example).
"""

import base64
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

import jsonschema

SAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "samples")
PROGRAM, HANDLERS, RUNNER = "", "", []

DONE, USAGE, FILE, REPORTED = 0, 1, 2, 3


def limitStack(size):
    import resource  # not on Windows
    resource.setrlimit(resource.RLIMIT_STACK, (size, size))


class VelmorTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def write(self, name, content):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as file:
            file.write(content)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def velmor(self, *arguments, stdin=b"", expect=DONE, stack=None):
        environment = dict(os.environ, LC_ALL="C.UTF-8")
        environment.pop("VELMOR_REGISTRY", None)
        if not RUNNER:  # no registry of the user's
            environment.update(HOME=self.folder.name, XDG_CONFIG_HOME=self.folder.name)
        # Files, not pipes: services that Wine starts beside the program would hold a pipe open.
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            done = subprocess.run([*RUNNER, PROGRAM, *arguments], input=stdin, stdout=out, stderr=err,
                                  cwd=self.folder.name, env=environment, timeout=120,
                                  preexec_fn=lambda: limitStack(stack) if stack and not RUNNER else None)
            out.seek(0)
            err.seek(0)
            self.messages = err.read().decode("utf-8", "replace").replace("\r\n", "\n")
            self.assertEqual(done.returncode, expect, self.messages)
            return out.read()

    def check_failures(self, cases):
        """Each case: arguments, exit code, what the message says."""
        for arguments, code, said in cases:
            with self.subTest(arguments=arguments):
                self.assertEqual(self.velmor(*arguments, expect=code), b"")
                self.assertTrue(self.messages.startswith("velmor: "), self.messages)
                self.assertIn(said, self.messages)


class Eval(VelmorTest):
    def test_plain_text(self):
        cases = [
            # template, arguments, result
            (b"no tag\r\n\x00\xff\n", [], b"no tag\r\n\x00\xff\n"),
            (b"<KV:TAG>PROPERTY:a=zz:</KV>!", [], b"zz!"),
            (b"<kv:tag>property:A=zz:</kv>", ["--property", "a=1"], b"1"),
            (b"<KV:TAG>PROPERTY:a=:</KV>", ["--property", "a=007"], b"007"),
            (b"<KV:TAG>PROPERTY:a=:</KV>", ["--property", 'a="q": x=y *'], b'"q": x=y *'),
            (b"<KV:TAG>PROPERTY:a=:</KV>", ["--property=a=1", "--property", "a=-2"], b"-2"),
            (b"<KV:TAG>PROPERTY:a=:</KV>", ["--property", "a="], b""),
            (b"<KV:TAG>PROPERTY:a=:</KV>", ["--property", "a=1", "-"], b"1"),
            (b"<KV:TAG>SETPROPERTY:a=1:</KV><KV:TAG>PROPERTY:a=0:</KV>", [], b"1"),
        ]
        if not RUNNER:  # a pipe by its name
            cases.append((b"<KV:TAG>PROPERTY:a=zz:</KV>", ["/dev/stdin"], b"zz"))
        for template, arguments, result in cases:
            with self.subTest(template=template, arguments=arguments):
                self.assertEqual(self.velmor("eval", *arguments, stdin=template), result)
                self.assertEqual(self.messages, "")

    def test_one_text_has_one_encoding(self):
        self.write("ansi.txt", b"\xe4\x80")
        self.write("utf8.txt", "\u00e4\u20ac".encode())
        self.write("ansi.kvl", b'a="x":b="\xe4\x80":')
        self.write("utf8.kvl", '\ufeffa="x":b="\u00e4\u20ac":'.encode())
        self.write("part.rtf", b"{\\rtf1 \xc3\xbc}")
        included = ("<KV:TAG>INCLUDE=ansi.txt:</KV><KV:TAG>INCLUDE=utf8.txt:</KV>"
                    "<KV:TAG>INCLUDE=ansi.kvl:KEY=b:</KV><KV:TAG>INCLUDE=utf8.kvl:KEY=b:</KV>")
        value = "<KV:TAG>PROPERTY:n=:</KV>"
        locale = "cp1252" if RUNNER else "utf-8"
        for encoding, template, arguments, result, written in [
            # the template's, template, arguments, result, the result's
            ("utf-8", "\u0141" + value, ["n=\u0141\U0001f600"], "\u0141\u0141\U0001f600", "utf-8"),
            ("utf-8", "\ufeff" + value, ["n=\u0141"], "\ufeff\u0141", "utf-8"),
            ("utf-16-le", "\ufeff" + value, ["n=\u0141\U0001f600"], "\ufeff\u0141\U0001f600", "utf-16-le"),
            ("utf-16-be", "\ufeffx" + value, ["n=\u0141"], "\ufeffx\u0141", "utf-16-be"),
            ("utf-8", "\u0141" + included, [], "\u0141" + "\u00e4\u20ac" * 4, "utf-8"),
            ("cp1252", "\u00fc" + included + value, ["n=caf\u00e9"], "\u00fc" + "\u00e4\u20ac" * 4 + "caf\u00e9", "cp1252"),
            ("ascii", included + value, ["n=\u00e9"], "\u00e4\u20ac" * 4 + "\u00e9", locale),
            ("ascii", included + value, ["n=\u00e9", "--encoding", "utf-8"], "\u00e4\u20ac" * 4 + "\u00e9", "utf-8"),
            ("ascii", included[:30] + value, ["n=\u00e9", "--encoding", "ansi"], "\u00e4\u20ac\u00e9", "cp1252"),
            ("utf-8", "\u00fc" + value, ["n=\u00e9", "--encoding", "ansi"], "\u00c3\u00bc\u00e9", "cp1252"),
            ("utf-8", "{\\rtf1 \u00fc" + value + "<KV:TAG>INCLUDE=part.rtf:</KV>}", ["n=\u00e9"],
             "{\\rtf1 \u00c3\u00bc\u00e9{\\rtf1 \u00c3\u00bc}}", "cp1252"),
        ]:
            with self.subTest(template=template, encoding=encoding, arguments=arguments):
                options = ["--property", *arguments] if arguments else []
                self.assertEqual(self.velmor("eval", *options, stdin=template.encode(encoding)), result.encode(written))
                self.assertEqual(self.messages, "")

    def test_rtf_loses_no_character(self):
        tag = b"<KV:TAG>PROPERTY:n=:</KV>"
        value = "n={\u20ac\u0141\U0001f600}"
        self.assertEqual(self.velmor("eval", "--property", value, stdin=b"{\\rtf1 \xe9" + tag + b"}"),
                         b"{\\rtf1 \xe9\\{\x80\\u321?\\u-10179?\\u-8704?\\}}")
        self.assertEqual(self.velmor("eval", "--property", value, stdin=b"{\\rtf1\\uc0 " + tag + b"}"),
                         b"{\\rtf1\\uc0 \\{\x80{\\uc1\\u321?\\u-10179?\\u-8704?}\\}}")

    def test_plain_text_that_does_not_fit_is_refused(self):
        self.write("out.txt", b"old")
        template = b"\xe9<KV:TAG>PROPERTY:n=:</KV>"
        self.velmor("eval", "-o", "out.txt", "--property", "n=\u0141", stdin=template, expect=FILE)
        self.assertIn("'\u0141' (position 2)", self.messages)
        self.assertEqual(self.read("out.txt"), b"old")
        self.assertEqual(os.listdir(self.folder.name), ["out.txt"])

    def test_property_file(self):
        self.write("p", b'a="x":\r\nd=#5 Mar 2004 2:07:09 PM#:\r\nn=5&:\r\nt="two\r\nlines":\r\ne="\xe9":\r\n')
        template = b"<KV:TAG>PROPERTY:a=:</KV> <KV:TAG>PROPERTY:n=:</KV> <KV:TAG>PROPERTY:t=:</KV> \xe9 <KV:TAG>PROPERTY:e=:</KV>"
        self.assertEqual(self.velmor("eval", "--properties", "p", stdin=template), b"x 5 two\r\nlines \xe9 \xe9")
        self.assertEqual(self.velmor("eval", "--properties", "p", "--property", "A=y", stdin=template)[:1], b"y")
        self.write("marked", b"\xef\xbb\xbf" + 'a="\u00e9":'.encode())
        self.write("utf8", 'a="\u00e9":'.encode())
        for name in ["marked", "utf8"]:
            self.assertEqual(self.velmor("eval", "--properties", name, stdin=b"\xe4<KV:TAG>PROPERTY:a=:</KV>"), b"\xe4\xe9")

    def test_includes(self):
        self.write("sub/letter.txt", b"<KV:TAG>INCLUDE=part.txt:</KV>|<KV:TAG>INCLUDE=list.kvl:KEY=b:</KV>|"
                                     b"<KV:TAG>INCLUDE=list.kvl:INDEX=1:</KV>|<KV:TAG>INCLUDE=none.txt:</KV>")
        self.write("sub/part.txt", b"[<KV:TAG>PROPERTY:a=in:</KV>]")
        self.write("sub/list.kvl", b'a="one":\r\nb="two":\r\n')
        self.write("other/part.txt", b"other")
        beside = b"[in]|two|one|"
        self.assertEqual(self.velmor("eval", "sub/letter.txt"), beside)
        self.assertEqual(self.velmor("eval", "letter.txt", "--include-path", "sub", expect=FILE), b"")
        self.assertEqual(self.velmor("eval", "--include-path", "sub", stdin=self.read("sub/letter.txt")), beside)
        self.assertEqual(self.velmor("eval", "sub/letter.txt", "--include-path", "other"), b"other|||")
        self.assertEqual(self.velmor("eval", "sub/letter.txt", "--property", "Path=other"), b"other|||")

    def test_includes_rtf_without_version(self):
        self.write("part.rtf", b"{\\rtf b}")
        self.write("host.rtf", b"{\\rtf1 <KV:TAG>INCLUDE=part.rtf:</KV>}")
        source = b"{\\rtf1 \\{\\\\rtf b\\}}"
        off = ["--property", "kvTag.RTF Tolerant=False"]
        for arguments, result in [([], b"{\\rtf1 {\\rtf1 b}}"), (["--exact"], source), (off, source)]:
            self.assertEqual(self.velmor("eval", "host.rtf", *arguments), result)

    def test_output_file(self):
        self.write("out.rtf", b"something much longer than the result")
        self.assertEqual(self.velmor("eval", "-", "-o", "out.rtf", stdin=b"a\r\nb\n"), b"")
        self.assertEqual(self.read("out.rtf"), b"a\r\nb\n")

    def test_error_log_is_reported(self):
        self.assertEqual(self.velmor("eval", stdin=b"a<KV:NONE>X:</KV>b", expect=REPORTED), b"ab")
        missing = "Tag Handler not found. The handler's class name is not registered"
        self.assertEqual(self.messages, f"velmor: standard input:1:2: <KV:NONE>X:</KV>: NONE: {missing}\n")
        self.write("t", b"x\r\n y<KV:TAG>INCLUDE=part.txt:</KV>\n<KV:TAG>INCLUDE=part.txt:</KV><KV:GONE>V:</KV>")
        self.write("part.txt", b"<KV:GONE>Z:</KV><KV:LOST>Z:</KV>")
        self.velmor("eval", "t", expect=REPORTED)
        self.assertEqual(self.messages.splitlines(), [
            f"velmor: 't':2:3: <KV:TAG>INCLUDE=part.txt:</KV>: {handler}: {missing} ({count} times)"
            for handler, count in [("GONE", 3), ("LOST", 2)]])
        table = b"{\\rtf1\\trowd\\irow0\\cellx9 a\\cell\\lastrow\\row\n <KV:NONE>X:</KV>}"
        self.velmor("eval", stdin=table, expect=REPORTED)
        self.assertTrue(self.messages.startswith("velmor: standard input:2:2: "), self.messages)
        self.velmor("eval", stdin=b"<KV:" + b"N" * 1000000 + b">X:</KV>", expect=REPORTED)
        self.assertLess(len(self.messages), 1000)
        shown = self.velmor("eval", "--property", "kvTag.No Handler Show Message=True", stdin=b"<KV:NONE>X:</KV>",
                            expect=REPORTED)
        self.assertEqual(shown, b"system handler not found: NONE")

    def test_rules(self):
        self.write("in/a.txt", b"a")
        self.write("out.txt", b"out")
        self.write("in/letter.txt", b"<KV:TAG>INCLUDE=a.txt:</KV>[<KV:TAG>INCLUDE=../out.txt:</KV>]"
                   b"[<KV:TAG>INCLUDE=link.txt:</KV>][<KV:TAG>PROPERTY:name=:</KV>][<KV:TAG>PROPERTY:data=:</KV>]")
        links = not RUNNER
        if links:
            os.symlink(self.path("out.txt"), self.path("in/link.txt"))
        data = "data=<KV:TAG>PROPERTY:Path=:</KV>"
        self.assertEqual(self.velmor("eval", "in/letter.txt", "--sandbox", "--missing", "mark", "--property", data,
                                     expect=REPORTED).decode(),
                         "a[[../out.txt?]][[link.txt?]][[name?]][<KV:TAG>PROPERTY:Path=:</KV>]")
        self.assertEqual(self.messages.count("not in the folder"), 2 if links else 1, self.messages)
        self.assertIn("left as text; from a property", self.messages)
        self.velmor("eval", "in/letter.txt", "--missing", "fail", "-o", "none.txt", expect=FILE)
        self.assertIn("in/letter.txt':1:", self.messages)
        self.assertFalse(os.path.exists(self.path("none.txt")))
        self.velmor("eval", "in/letter.txt", "--property", "kvTag.Missing=never", expect=FILE)
        self.assertIn("in/letter.txt': \"never\" is not a value of kvTag.Missing (error 5)", self.messages)
        for wrong in (["--missing", "never"], ["--max-depth", "0"], ["--record", "r", "--replay", "r"]):
            self.velmor("eval", *wrong, expect=USAGE)
        self.velmor("eval", "--include-root", "nowhere", expect=FILE)
        self.assertEqual(self.velmor("eval", "--drop-empty-paragraphs",
                                     stdin=b"a\r\n<KV:TAG>PROPERTY:n=:</KV> <KV:TAG>PROPERTY:n=:</KV>\r\nb"), b"a\r\nb")

    def test_trace_without_empty_paragraphs(self):
        empty = b"<KV:TAG>PROPERTY:none=:</KV>"
        self.write("i.txt", empty + b"\r\nin <KV:TAG>PROPERTY:v=deep:</KV>\r\n")
        for start, between, end in ((b"", b"\r\n", b""), (b"{\\rtf1 ", b"\\par ", b"}")):
            self.write("t.txt", start + between.join([
                empty + b" " + empty, empty + b"<KV:TAG>PROPERTY:n=first:</KV>", b"<KV:TAG>INCLUDE=i.txt:</KV>", empty,
                b"<KV:TAG>PROPERTY:m=last:</KV>"]) + end)
            self.velmor("eval", "t.txt", "-o", "o.txt", "--trace", "r.json", "--drop-empty-paragraphs")
            output = self.read("o.txt")
            self.assertEqual(output.count(between), 3, output)
            for value, name in ((b"first", b"n"), (b"deep", b"v"), (b"last", b"m")):
                said = self.velmor("explain", "o.txt:%d" % (output.index(value) + 2), "--trace", "r.json")
                self.assertIn(b"character 2 of the %d that TAG>PROPERTY:%s=" % (len(value), name), said)

    def test_trace_and_explanation(self):
        self.write("t.txt", b"Dear <KV:TAG>PROPERTY:n=x:</KV>,\n"
                            b"<KV:TAG>INCLUDE=<KV:TAG>PROPERTY:f=i.txt:</KV>:</KV>!")
        self.write("i.txt", b"in <KV:TAG>PROPERTY:v=:</KV>")
        self.velmor("eval", "t.txt", "-o", "o.txt", "--trace", "r.json", "--property", "n=Zoe",
                    "--property", "v=<<KV:TAG>PROPERTY:n=:</KV>>")
        self.assertEqual(self.read("o.txt"), b"Dear Zoe,\nin <Zoe>!")
        trace = json.loads(self.read("r.json"))
        self.assertEqual([trace["version"], trace["template"], trace["moved"]], [1, "t.txt", False])
        include = "TAG>INCLUDE=<KV:TAG>PROPERTY:f=i.txt:</KV>:"
        self.assertEqual([tag[:-1] for tag in trace["tags"]], [
            [0, "template", "TAG", "PROPERTY", "TAG>PROPERTY:n=x:", 6, 1, 6, 3, 6, False],
            [0, "template", "TAG", "INCLUDE", include, 34, 2, 1, 8, 11, False],
            [2, "template", "TAG", "PROPERTY", "TAG>PROPERTY:f=i.txt:", 1, None, None, 5, None, False],
            [2, "include", "TAG", "PROPERTY", "TAG>PROPERTY:v=:", 4, None, None, 5, 14, False],
            [4, "property", "TAG", "PROPERTY", "TAG>PROPERTY:n=:", 2, None, None, 3, 15, False]])
        self.assertEqual(self.velmor("explain", "o.txt:1", "--trace", "r.json"),
                         b"'o.txt':1:1: the template's text; no tag wrote it\n")
        chain = (f"'o.txt':2:6: character 2 of the 3 that TAG>PROPERTY:n=: wrote\n  't.txt':2:1 (template): {include}\n"
                 "  position 4 of its text (include): TAG>PROPERTY:v=:\n"
                 "  position 2 of its text (property): TAG>PROPERTY:n=:\n")
        for place in ("o.txt:16", "o.txt:2:6"):
            self.assertEqual(self.velmor("explain", place, "--trace", "r.json").decode(), chain)
        for name, change in (("version.json", (b'"version":1', b'"version":2')), ("cut.json", (b"\n]}", b"")),
                             ("parent.json", (b'[2,"include"', b'[9,"include"'))):
            self.write(name, self.read("r.json").replace(*change))
        self.check_failures([(["explain", place, "--trace", name], code, said) for place, name, code, said in (
            ("o.txt", "r.json", USAGE, "does not have the form"),
            ("o.txt:99", "r.json", FILE, "no such character"),
            ("o.txt:2:11", "r.json", FILE, "no such character"),
            ("t.txt:1", "r.json", FILE, "'r.json': /output is another file"),
            ("o.txt:1", "version.json", FILE, "/version is not 1"),
            ("o.txt:1", "cut.json", FILE, "'cut.json':"),
            ("o.txt:1", "parent.json", FILE, "/tags/3/0 is not"))])

    def test_trace_of_moved_and_escaped_results(self):
        self.velmor("eval", "-", "-o", "o.txt", "--trace", "r.json",
                    stdin=b"<KV:TAG>PROPERTY:m=y</KV><KV:TAG>PROPERTY:n=x:</KV>")
        self.assertIn(b"a tag whose place is not known", self.velmor("explain", "o.txt:1", "--trace", "r.json"))
        self.velmor("eval", "-", "-o", "o.rtf", "--trace", "r.json", "--property", "n=\u0141x",
                    stdin=b"{\\rtf1 A <KV:TAG>PROPERTY:n=:</KV> B <KV:TAG>PROPERTY:m=end:</KV>}")
        places = [(tag[9] - 1, tag[8]) for tag in json.loads(self.read("r.json"))["tags"]]
        self.assertEqual([self.read("o.rtf")[place:place + length] for place, length in places],
                         [b"\\u321?x", b"end"])

    def test_self_inclusion_ends(self):
        self.write("loop.txt", b"x<KV:TAG>INCLUDE=loop.txt:</KV><KV:TAG>INCLUDE=loop.txt:</KV>y")
        self.write("loop.rtf", b"{\\rtf1 x<KV:TAG>INCLUDE=loop.rtf:</KV><KV:TAG>INCLUDE=loop.rtf:</KV>y}")
        for name in ["loop.txt", "loop.rtf"]:
            # All levels fit a stack of 1 MB. (The sanitizers' frames are larger, and fit as well.)
            result = self.velmor("eval", name, expect=REPORTED, stack=1 << 20)
            self.assertTrue(b"x" in result and result.endswith((b"y", b"y}")))
            self.assertEqual(self.messages.count("\n"), 1)

    def test_bad_input(self):
        self.write("t", b"text")
        self.write("bad-utf8", b'a="\xff":')
        self.write("people.json", b'[{"name": "Ruth", "note": "x=y"}]')
        self.write("notes", b"Note=seen:\r\nsee above\r\nand below")
        os.mkdir(self.path("folder"))
        self.check_failures([
            (["eval", "missing"], FILE, "missing"), (["eval", "folder"], FILE, "is a folder"),
            (["eval", "t", "-o", "folder"], FILE, "cannot write 'folder': "),
            (["eval", "t", "-o", "none/out"], FILE, "cannot write 'none/out': "),
            (["eval", "t", "--include-path", "none"], FILE, "folder not found: 'none'"),
            (["eval", "t", "--include-path", "t"], FILE, "folder not found: 't'"),
            (["eval", "t", "--properties", "people.json"], FILE, "'people.json' is not a property file"),
            (["props", "people.json"], FILE, "'people.json' is not a property file"),
            (["props", "notes"], FILE, "'notes' is not a property file: entry 2"),
            (["help", "nonsense"], USAGE, "nonsense"),
            (["eval", "t", "--properties", "missing"], FILE, "missing"),
            (["eval", "t", "--properties", "folder"], FILE, "folder"),
            (["eval", "t", "--properties", "bad-utf8", "--encoding", "utf-8"], FILE, "bad-utf8"),
            (["eval", "t", "--registry", "missing"], FILE, "missing"),
            (["eval", "t", "--property", "noequals"], USAGE, "noequals"),
            (["eval", "t", "--property", "=x"], USAGE, "=x"),
            (["eval", "t", "--encoding", "latin"], USAGE, "encoding"), (["eval", "t", "u"], USAGE, "u"),
            (["eval", "--nonsense"], USAGE, "nonsense"), (["nonsense"], USAGE, "nonsense"), ([], USAGE, "eval"),
            (["tags", "missing"], FILE, "missing"),
        ])
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["bad-utf8", "folder", "notes", "people.json", "t"])

    def test_output_streams(self):
        if RUNNER:
            self.skipTest("the program's files are Windows'")
        os.mkfifo(self.path("pipe"))
        script = ("echo old > out; echo new | velmor eval -o /dev/stdout >> out; cat out;"
                  "echo piped | velmor eval -o /dev/stdout | cat;"
                  "echo substituted | velmor eval -o >(cat); wait $!;"
                  "cat pipe & echo named | velmor eval -o pipe; wait; ls")
        done = subprocess.run(["bash", "-c", "velmor() { \"$PROGRAM\" \"$@\"; }; " + script], capture_output=True,
                              cwd=self.folder.name, env=dict(os.environ, PROGRAM=PROGRAM), timeout=60)
        self.assertEqual(done.stdout.decode().split(), ["old", "new", "piped", "substituted", "named", "out", "pipe"])
        self.assertEqual(done.stderr, b"")

    def test_ended_while_writing_it_leaves_no_temporary_file(self):
        if RUNNER:
            self.skipTest("no signals")
        self.write("big", b"x" * (1 << 26))
        with subprocess.Popen([PROGRAM, "eval", "big", "-o", "out"], cwd=self.folder.name) as process:
            while process.poll() is None and not any(name.endswith(".tmp") for name in os.listdir(self.folder.name)):
                pass
            process.send_signal(signal.SIGTERM)
        self.assertEqual([name for name in os.listdir(self.folder.name) if name.endswith(".tmp")], [])

    def test_full_standard_output(self):
        if RUNNER or not os.path.exists("/dev/full"):
            self.skipTest("no such device")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "eval"], input=b"text", stdout=full, stderr=subprocess.PIPE, timeout=60)
        self.assertEqual(done.returncode, FILE)

    def test_help(self):
        self.assertIn(b"eval", self.velmor("--help"))
        self.assertIn(b"--include-path", self.velmor("eval", "--help"))
        self.assertEqual(self.velmor("help"), self.velmor("--help"))
        self.assertEqual(self.velmor("help", "eval"), self.velmor("eval", "--help"))
        self.assertRegex(self.velmor("--version"), rb"^velmor \d+\.\d+\.\d+\s*$")


class Clean(VelmorTest):
    HOST = b"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\f0 one \\\\}\r\n\0"
    NEXT = b"\r\n{\\rtf{\\fonttbl{\\f0 Courier;}}\\paperw11906\\lndscpsxn\\f0 two}\0\n"

    def test_one_document(self):
        every = bytes(code for code in range(256) if code not in b"\\{}")
        tables = b"{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red1\\green2\\blue3;}"
        inner, marker = b"a{\\rtf1 b}c}", b"{\\*\\korvanemergepagebreak}}"
        page = b"\\sect\\pgwsxn0\\pghsxn0\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0}"
        cases = [
            # opening, text, arguments, cleaned text
            (b"{\\rtf1", every + b"}\0", [], every + b"}\0"),
            (b"{\\rtf1", inner, [], b"a{b}c}"),
            (b"{\\rtf1", inner, ["--exact"], b"a bc}"),
            (b"{\\rtf", inner, [], b"a{b}c}"),
            (b"{\\rtf1", marker, [], marker),
            (b"{\\rtf1", marker, ["--exact", "--merge"], page),
        ]
        for opening, text, arguments, cleaned in cases:
            with self.subTest(opening=opening, text=text, arguments=arguments):
                header, _, out = self.velmor("clean", "-", *arguments, stdin=opening + tables + text).partition(b"blue3;}")
                self.assertEqual((header[:7], out, self.messages), (b"{\\rtf1{", cleaned, ""))

    def test_joins(self):
        self.write("a.rtf", self.HOST)
        self.write("b.rtf", self.NEXT)
        self.assertEqual(self.velmor("clean", "a.rtf", "-", "b.rtf", "-o", "a.rtf", stdin=b"{\\rtf1 0}"), b"")
        result = self.read("a.rtf")
        for said in [b"one \\\\\\sect", b"\\pgwsxn12240\\pghsxn15840", b"\\lndscpsxn\\pgwsxn15840\\pghsxn11906", b"\\f2 two}"]:
            self.assertIn(said, result)
        self.assertEqual((result.count(b"Arial"), result.count(b"Courier"), result.count(b"rtf")), (1, 1, 1))
        self.assertEqual((result.count(b"{"), result[-4:]), (result.count(b"}"), b"}\r\n\0"))
        self.assertEqual(self.messages, "")

    def test_styles_and_report(self):
        tables = b"{\\rtf1{\\fonttbl{\\f%d Arial;}}{\\colortbl;\\red%d;}{\\stylesheet{\\s2\\fs%d Head;}}"
        lists = b"{\\*\\listtable{\\list\\listid9}}{\\*\\listoverridetable{\\listoverride\\listid9\\ls3}}"
        self.write("a.rtf", tables % (0, 1, 40) + b"a}")
        self.write("b.rtf", tables % (5, 2, 20) + lists + b"\\pard\\plain\\s2\\fs20\\ls3 b}")
        names = []
        for styles, said in [("rename", b"\\s1\\fs20"), ("host", b"\\s2\\fs40"), ("keep", b"\\s2\\fs20")]:
            result = self.velmor("clean", "a.rtf", "b.rtf", "--styles", styles, "--report", "r.json")
            self.assertIn(said, result[result.index(b"sect"):])
            run = json.loads(self.read("r.json"))["runs"][-1]
            self.assertEqual([document["input"] for document in run["documents"]], run["inputs"])
            joined = run["documents"][1]
            names.append([joined["styles"][0].get(key) for key in ("outcome", "newName", "newNumber")])
        self.assertEqual(names, [["renamed", "Head (2)", "1"], ["replaced", None, None], ["direct", None, None]])
        self.assertEqual(run["documents"][0]["fonts"], [{"outcome": "kept", "name": "Arial", "number": "0"}])
        self.assertEqual((joined["fonts"], joined["colours"], joined["lists"], joined["listOverrides"]), (
            [{"outcome": "shared", "name": "Arial", "number": "0"}],  # it was 5 before the document was cleaned itself
            [{"outcome": "added", "name": "\\red2;", "number": "1", "newNumber": "2"}],
            [{"outcome": "added", "number": "9", "newNumber": "1"}],
            [{"outcome": "added", "number": "3", "newNumber": "1"}]))
        self.velmor("clean", "a.rtf", "--report", "-", expect=USAGE)

    def test_joins_documents_with_headers_of_their_own(self):
        self.write("a.rtf", b"{\\rtf1 a}")
        second = b"{\\rtf1{\\header old}b{\\rtf1{\\*\\korvanenewheader}}{\\rtf1{\\header new}c}}"
        for arguments in [["--exact"], []]:
            result = self.velmor("clean", "a.rtf", "-", *arguments, stdin=second)
            self.assertIn(b"b\\sect\\sbkpage\\pgncont{\\header new}", result)

    @unittest.skipUnless("VELMOR_EXCHANGE" in os.environ, "VELMOR_EXCHANGE is not set")
    def test_leaves_the_component_something_to_compare(self):
        if RUNNER:
            self.skipTest("the native program writes it")
        with open(os.path.join(SAMPLES, "letter", "terms.rtf"), "rb") as file:
            terms = file.read().strip().replace(b"<KV:", b"<")
        marks = b"{\\header x}{\\*\\korvanemergepagebreak}", b"{\\rtf1{\\*\\korvanenewheader}}"
        section = b"\\page{\\*\\korvanesection\\landscape\\paperwidth29.7}"
        joined = terms[:-1] + marks[0] + terms + marks[1] + terms[:-1] + terms + section + b"\\'e4}}"
        for name, arguments in [("", None), (".t", []), (".e", ["--exact"]), (".tm", ["--merge"]),
                                (".em", ["--exact", "--merge"])]:
            with open(os.path.join(os.environ["VELMOR_EXCHANGE"], "joined.rtf" + name), "wb") as file:
                file.write(joined if arguments is None else self.velmor("clean", "-", *arguments, stdin=joined))

    def test_reports(self):
        self.write("a.rtf", self.HOST)
        self.write("b.rtf", self.NEXT)
        cases = [
            # documents on standard input and in files, code, message
            (b"{\\rtf1 <kv:TAG>X:</KV>{\\rtf1 b}}", ["-"], REPORTED, "tag (position 8)"),
            (b"{\\rtf1 <KV:}", ["a.rtf", "-", "b.rtf"], REPORTED, "standard input still contains a tag"),
            (b"{\\rtf a{\\rtf b}}", ["-", "--exact"], REPORTED, "version"),
            (b"{\\rtf1 b} c }", ["a.rtf", "-"], REPORTED, "2 characters"),
            (b"{\\rtf1 {\\*\\korvanemergepagebreak}\\sectd\\sect}", ["-", "--merge", "--exact"], REPORTED, ": 1"),
            (b"{\\rtf1 b", ["a.rtf", "-"], FILE, "standard input cannot be joined"),
            (b"rtf1", ["-"], FILE, "standard input contains no RTF"),
            (b"", ["a.rtf", "missing"], FILE, "missing"),
            (b"", ["a.rtf", "-o", "none/out"], FILE, "none/out"),
            (b"", [], USAGE, "no file to clean"),
        ]
        for stdin, arguments, code, said in cases:
            with self.subTest(stdin=stdin, arguments=arguments):
                out = self.velmor("clean", *arguments, stdin=stdin, expect=code)
                self.assertIn(said, self.messages)
                if code != REPORTED:
                    self.assertEqual(out, b"")
                elif len(arguments) == 1:
                    self.assertEqual(out, stdin)
                elif "b.rtf" in arguments:
                    self.assertEqual(out.count(b"{\\*\\korvanemergepagebreak}{\\rtf1"), 2)


class Check(VelmorTest):
    def test_places_formats_and_repair(self):
        template = b"{\\rtf1 \\'e4 <KV:TAG>PROP{\\b }ERTY:Citi=:</KV> <KV:TAG>INCLUDE=x.txt:</KV>}"
        self.write("in/letter.rtf", template)
        self.write("in/x.txt", b"<KV:NONE>X:</KV>")
        expected = ("in/letter.rtf:1:13: error KV104: formatting cuts the tag, which is not evaluated as it is seen [page "
                    'text, paragraph 1] "<KV:TAG>PROPERTY:Citi=:</KV> <KV:TAG>INC..."\n'
                    "in/x.txt:1:1: error KV201: no handler NONE is registered (included from in/letter.rtf:1:47)\n")
        found = self.velmor("check", "in/letter.rtf", expect=REPORTED).decode().replace("\\", "/")
        self.assertEqual(found, expected)
        found = json.loads(self.velmor("check", "in/letter.rtf", "--property", "City=x", "--format", "json",
                                       "--fix", "in/fixed.rtf", "--annotate", "in/comments.rtf", expect=REPORTED))
        self.assertEqual([each["code"] for each in found["diagnostics"]], ["KV302", "KV201"])
        self.assertEqual(self.read("in/fixed.rtf"),
                         template.replace(b"<KV:TAG>PROP{\\b }ERTY", b"{\\b }<KV:TAG>PROPERTY"))
        self.assertEqual(self.read("in/comments.rtf").count(b"{\\*\\annotation"), 2)
        self.velmor("check", "in/x.txt", "--annotate", "x", expect=FILE)
        sarif = json.loads(self.velmor("check", "in/letter.rtf", "--format", "sarif", expect=REPORTED))
        with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "sarif.schema.json")) as file:
            jsonschema.validate(sarif, json.load(file))
        codes = [result["ruleId"] for result in sarif["runs"][0]["results"]]
        self.assertEqual(codes, ["KV104", "KV201"])
        self.assertTrue(set(codes) <= {rule["id"] for rule in sarif["runs"][0]["tool"]["driver"]["rules"]})
        self.assertEqual(self.velmor("check", stdin=b"Dear <KV:TAG>PROPERTY:a=:</KV>"), b"")
        self.velmor("check", "in/letter.rtf", "in/x.txt", "--fix", "x", expect=USAGE)
        self.velmor("check", "--format", "xml", expect=USAGE)
        self.assertIn("'xml' is not text|json|sarif|github", self.messages)
        self.write("x.txt", b"")
        found = self.velmor("check", "--max-tags", "1", "--include-root", "in", "--format", "json", expect=REPORTED,
                            stdin=b"<KV:TAG>PROPERTY:a=:</KV><KV:TAG>INCLUDE=x.txt:</KV>")
        self.assertEqual([each["code"] for each in json.loads(found)["diagnostics"]], ["KV502", "KV405"])

    def test_schema(self):
        self.write("t.txt", b"<KV:TAG>PROPERTY:Name:</KV> <KV:TAG>PROPERTY:n=5:</KV> <KV:TAG>PROPERTY:NAME=x:</KV>"
                            b"<KV:TAG>SETPROPERTY:own=1:</KV><KV:TAG>PROPERTY:own:</KV> <KV:TAG>INCLUDE=x.txt:</KV>")
        self.write("x.txt", b"<KV:TAG>PROPERTY:yes=True:</KV> <KV:TAG>PROPERTY:text=caf\xc3\xa9:</KV>")
        schema = json.loads(self.velmor("schema", "t.txt"))
        self.assertEqual(schema["properties"], {
            "Name": {}, "n": {"type": "number", "default": 5}, "own": {}, "yes": {"type": "boolean", "default": True},
            "text": {"type": "string", "default": "caf\u00e9"}})
        self.assertEqual(schema["required"], ["Name"])
        self.write("t.json", self.velmor("schema", "t.txt", "--sample"))
        self.assertEqual(self.velmor("eval", "t.txt", "--data", "t.json", "--encoding", "utf-8").decode(),
                         "Name 5 Name1 True caf\u00e9")
        self.velmor("schema", stdin=b"<KV:TAG>INCLUDE=none.txt:</KV>", expect=REPORTED)

    def test_verify(self):
        self.assertEqual(self.velmor("verify", "-", stdin=b"{\\rtf1 a}"), b"")
        self.write("out.rtf", b"{\\rtf1 a <KV:T>X:</KV>\\ls3}")
        found = self.velmor("verify", "out.rtf", "--format", "json", expect=REPORTED)
        self.assertEqual([each["code"] for each in json.loads(found)["diagnostics"]], ["KV705", "KV704"])

    def test_data(self):
        self.write("t.txt", b"".join(b"<KV:TAG>PROPERTY:%s=none:</KV> " % name for name in [
            b"text", b"whole", b"large", b"part", b"yes", b"no", b"inner"]))
        data = {"text": "caf\u00e9", "whole": -5, "large": 5000000000, "part": 0.5, "yes": True, "no": None,
                "inner": {"a": [1, {"b": 2}]}}
        self.write("t.json", json.dumps([data, {"text": "second"}]).encode())
        options = ["--data", "t.json", "--encoding", "utf-8", "--property", "yes=1"]
        self.assertEqual(self.velmor("eval", "t.txt", *options).decode(),
                         "caf\u00e9 -5 5000000000 0.5 1   ")
        self.assertEqual(self.velmor("check", "--data", "t.json", stdin=b"<KV:TAG>PROPERTY:txt:</KV>", expect=REPORTED),
                         b"-:1:1: error KV301: nothing sets the property txt; did you mean text?\n")
        for content, said in [
            (b"", "1:1: this is not JSON"), (b'{"a":1,\r\n "\xc3\xa4" 1}', "2:6: this is not JSON"),
            (b"[]", "1:2: the array is empty"), (b"\n[1]", "2:2: this is not a JSON object"),
            (b'{"a":' * 200 + b"1" + b"}" * 200, "1:1: the data nests deeper than 100 levels"),
        ]:
            self.write("wrong.json", content)
            self.check_failures([(["check", "t.txt", "--data", "wrong.json"], FILE, "'wrong.json':" + said)])


class Report(VelmorTest):
    # Uses the page as a reader does, and leaves what it saw in the element "seen".
    READER = """<script>
    const seen = {};
    try {
      const all = selector => [...document.querySelectorAll(selector)];
      const tagOf = text => all(".tag").find(each => each.textContent.includes(text));
      const press = (element, key) => element.dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true }));
      const chosenText = () => all(".chosen").map(each => each.textContent);
      const lit = () => all(".tag:not(.dim)").length;
      const chip = name => all(".chip").find(each => each.textContent.startsWith(name));
      const button = (area, text) => all(area + " button").find(each => each.textContent.includes(text));
      const details = () => byId("details").innerText;
      seen.text = byId("text").textContent;
      seen.counts = [all("script").length, all("img").length, lit()];
      tagOf("PROPERTY:name").click();
      seen.name = details();
      press(tagOf("PROPERTY:name"), "ArrowRight");
      seen.next = chosenText();
      press(document.activeElement, "Escape");
      seen.left = chosenText();
      tagOf("INCLUDE=i.txt").click();
      button("#details", "PROPERTY:deep").click();
      seen.deep = details();
      chip("NONE").click();
      seen.filtered = lit();
      chip("NONE").click();
      byId("search").value = "zoe";
      press(byId("search"), "Enter");
      seen.found = [byId("found").textContent, ...chosenText()];
      button("#problems", "t.txt:3:").click();
      seen.problem = [byId("part-template").hidden, ...chosenText()];
      seen.problems = byId("problems").textContent;
      byId("tab-properties").click();
      seen.properties = all("#properties tbody tr").map(row => [...row.cells].map(cell => cell.textContent));
      byId("tab-times").click();
      seen.times = all("#times .bar").filter(bar => bar.getBoundingClientRect().width > 0).length;
      byId("as-values").click();
      seen.values = byId("text").textContent;
    } catch (error) {
      seen.error = error.stack;
    }
    document.body.replaceChildren(make("p", { id: "seen" }, encodeURIComponent(JSON.stringify(seen))));
    </script></body>"""

    def page_data(self, name):
        page = self.read(name).decode("ascii")
        return json.loads(page.partition('id="data">')[2].partition("</script>")[0])

    def in_browser(self, name):
        page = self.read(name).decode()
        self.assertEqual(page.count("</body>"), 1)
        self.write("driven.html", page.replace("</body>", self.READER).encode())
        shown = subprocess.run(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             "--user-data-dir=" + self.path("browser"), "--dump-dom", "file://" + self.path("driven.html")],
            capture_output=True, timeout=120).stdout.decode()
        seen = json.loads(urllib.parse.unquote(shown.partition('<p id="seen">')[2].partition("<")[0]))
        self.assertNotIn("error", seen)
        return seen

    def test_page_in_a_browser(self):
        markup = "<script>window.bad = 1</script><!--<img src=x onerror=bad()>"
        self.write("t.txt", b"Dear <KV:TAG>PROPERTY:name=nobody:</KV>, " + markup.encode() + b"\n"
                            b"<KV:TAG>INCLUDE=i.txt:</KV> <KV:TAG>PROPERTY:citi=:</KV> <KV:TAG>SETPROPERTY:own=1:</KV>"
                            b"<KV:TAG>PROPERTY:m=<KV:TAG>PROPERTY:name=:</KV>:</KV>\n"
                            b'<KV:NONE>X:A="</script>":</KV> \xe2\x80\xa8\0.')
        self.write("i.txt", b"in <KV:TAG>PROPERTY:deep=:</KV>")
        self.velmor("report", "t.txt", "-o", "r.html", "--property", "name=<b>Zoe</b>", "--property", "city=Brest",
                    "--property", "deep=[<KV:TAG>PROPERTY:name=:</KV>]", expect=REPORTED)
        self.assertIn("NONE: Tag Handler not found", self.messages)
        self.assertEqual(self.read("r.html").count(b"</script>"), 2)
        if RUNNER:
            return
        seen = self.in_browser("r.html")
        self.assertIn("Dear <KV:TAG>PROPERTY:name=nobody:</KV>, " + markup, seen["text"])
        self.assertEqual(seen["counts"], [3, 0, 7])
        for said in ["TAG \u203a PROPERTY", "<b>Zoe</b>", "nobody", "line 1, column 6", "the template", "\u00b5s"]:
            self.assertIn(said, seen["name"])
        self.assertEqual([seen["next"], seen["left"]], [["<KV:TAG>INCLUDE=i.txt:</KV>"], []])
        self.assertIn("[<b>Zoe</b>]", seen["deep"])
        self.assertRegex(seen["deep"], r"(?s)CHAIN.*INCLUDE=i.txt.*PROPERTY:deep.*include.*PROPERTY:name.*property")
        self.assertEqual(seen["filtered"], 1)
        self.assertEqual(seen["found"], ["1 of 6", "<KV:TAG>PROPERTY:name=nobody:</KV>"])
        self.assertEqual(seen["problem"], [False, '<KV:NONE>X:A="</script>":</KV>'])
        for said in ["KV201", "KV302", "did you mean city?", "Tag Handler not found"]:
            self.assertIn(said, seen["problems"])
        self.assertEqual(seen["properties"], [
            ["name", "<b>Zoe</b>", "3", "0", ""], ["city", "Brest", "0", "0", "never read a tag reads citi"],
            ["deep", "[<KV:TAG>PROPERTY:name=:</KV>]", "1", "0", ""], ["OWN", "1", "0", "0", "never read from the template"],
            ["citi", "", "0", "1", "absent did you mean city?"], ["m", "", "0", "1", "absent"]])
        self.assertEqual(seen["times"], 11)
        self.assertIn("Dear <b>Zoe</b>, <script>", seen["values"])
        self.assertIn("in [<b>Zoe</b>] empty empty<b>Zoe</b>", seen["values"])

    def test_rtf_shows_its_text(self):
        self.write("t.rtf", b"{\\rtf1{\\header <KV:TAG>PROPERTY:a=x:</KV>}caf\\'e9 <KV:TAG>PROPERTY:b=:</KV>\\par"
                            b"\\trowd\\cellx1\\cellx2\\intbl one\\cell two\\cell\\row}")
        self.velmor("report", "t.rtf", "-o", "r.html", "--property", "b=\u0141{")
        data = self.page_data("r.html")
        self.assertEqual([(story["name"], story["text"]) for story in data["stories"]],
                         [("page text", "caf\u00e9 <KV:TAG>PROPERTY:b=:</KV>\none\ntwo\n\n"),
                          ("header", "<KV:TAG>PROPERTY:a=x:</KV>")])
        self.assertEqual([paragraph[1:] for paragraph in data["stories"][0]["paragraphs"]],
                         [[1], [1, 1, 1], [1, 1, 2]])
        self.assertEqual([tag["value"] for tag in data["tags"]], ["x", "\u0141{"])
        self.assertEqual([(span[0], data["tags"][span[3]]["name"]) for span in data["spans"]],
                         [(0, "TAG>PROPERTY:b=:"), (1, "TAG>PROPERTY:a=x:")])
        self.velmor("report", "t.rtf", "-o", "none/r.html", expect=FILE)
        self.assertIn("cannot write 'none/r.html': ", self.messages)


class Tags(VelmorTest):
    TEMPLATE = (b'ab<KV:TAG>INCLUDE=C:\\x\\<KV:TAG>PROPERTY:f=a.txt:</KV>:KEY=5:q="5":r=1.5:t=True:bare:</KV>'
                b"<KV:GRP-NAME>X:</KV><KV:nohandler</KV> <KV:OPEN>")

    def test_json(self):
        text = self.velmor("tags", "--json", stdin=self.TEMPLATE, expect=REPORTED)
        inner = {"position": 24, "length": 30, "handler": "TAG", "command": "PROPERTY", "commandValue": 0,
                 "parameters": [{"name": "F", "value": "a.txt"}], "tags": []}
        first, second, third = json.loads(text)["tags"]
        self.assertEqual(first["tags"], [inner])
        self.assertEqual((first["position"], first["handler"], first["command"]), (3, "TAG", "INCLUDE"))
        self.assertEqual(first["commandValue"], "C:\\x\\<KV:TAG>PROPERTY:f=a.txt:</KV>")
        self.assertEqual([(p["name"], p["value"]) for p in first["parameters"]],
                         [("KEY", 5), ("Q", "5"), ("R", 1.5), ("T", True), ("BARE", 0)])
        self.assertEqual((second["handler"], third["handler"]), ("GRP-NAME", ""))
        end = first["position"] - 1 + first["length"]
        self.assertTrue(self.TEMPLATE[:end].endswith(b"bare:</KV>"))
        self.assertEqual(json.loads(text)["unclosed"], [self.TEMPLATE.index(b"<KV:OPEN>") + 1])

    def test_list(self):
        self.write("t", b'x<KV:TAG>PROPERTY:a="7":</KV>\n<KV:A>B:v=<KV:C>D:</KV>:</KV>')
        self.assertEqual(self.velmor("tags", "t").decode().split("\n"),
                         ["2  TAG > PROPERTY", '      A = "7"', "31  A > B", '      V = "<KV:C>D:</KV>"',
                          "    41  C > D", ""])

    def test_hostile_nesting(self):
        deep = b"<KV:A>B:v=" * 5000 + b":</KV>" * 5000
        document = json.loads(self.velmor("tags", "--json", stdin=deep, expect=REPORTED))
        self.assertEqual(document["tooDeep"], 5000 - 100)
        self.assertLess(len(self.velmor("tags", stdin=deep, expect=REPORTED)), 100000)
        self.velmor("tags", stdin=b"<KV:" * 25000, expect=REPORTED)
        self.assertLess(self.messages.count("\n"), 50)


class Props(VelmorTest):
    FILE = (b'Name="caf\xe9\r\n\x01 Z":Items=3&:Items=~AT"-unit=1%:":Items=~PR"-when=#5 Mar 2024 2:07:09 PM#:":\r\n'
            b'Total=6458.88$:r=0.1!:d=!12.50!:n=NUL:b=True:Hex=~HX"61":Sub=~RO~kvProperties"YT0xJjpiPSJ4Ijo=":'
            b'Logo=~RO~Picture"R0lGODlhAQABAAAAADs=":Name="again":\r\n')
    # Name="Ruth \u0141":n=5&: under the password "pass \u00e9\u4e00"
    ENCIPHERED = (b"VelmorCipher1:no9OBTrju+In9V8dzTYvRCFu32/N1DbCRkueK8TmcEsalO"
                  b"aQLJ5A0tyAwFy5KuBL/uYiE58xfYjTK4I9cVdApA==")

    def test_json(self):
        listed = json.loads(self.velmor("props", "--json", "-", stdin=self.FILE))["properties"]
        self.assertEqual([(p["name"], p["type"], p["value"]) for p in listed if p["name"] not in ("Sub", "Logo")], [
            ("Name", "String", "caf\u00e9\r\n\x01 Z"), ("Items", "Long", 3), ("Total", "Currency", "6458.88"),
            ("r", "Single", 0.1), ("d", "Decimal", "12.5"), ("n", "Null", None), ("b", "Boolean", True),
            ("Hex", "String", "a"), ("Name", "String", "again")])
        by_name = {p["name"]: p for p in listed}
        self.assertEqual(by_name["Items"]["attributes"], [{"name": "unit", "type": "Integer", "value": 1}])
        self.assertEqual(by_name["Items"]["properties"],
                         [{"name": "when", "type": "Date", "value": "2024-03-05T14:07:09"}])
        self.assertEqual(by_name["Hex"]["encoding"], 2)
        self.assertEqual([p["value"] for p in by_name["Sub"]["value"]], [1, "x"])
        if not RUNNER:  # Windows loads a picture only when it is whole
            self.assertEqual(by_name["Logo"], {"name": "Logo", "type": "Picture", "value": "R0lGODlhAQABAAAAADs="})

    def test_table(self):
        self.write("p", self.FILE + b'Long="' + b"x" * 100 + b'":')
        lines = self.velmor("props", "p").decode().split("\n")
        for line in ["NAME     TYPE        VALUE", "Name     String      caf\u00e9\\r\\n\\u0001 Z", "  @unit  Integer     1",
                     "  +when  Date        2024-03-05 14:07:09", "n        Null", "Sub      Collection  (2 properties)",
                     "  b      String      x", "Long     String      " + "x" * 72 + "... (100 characters)"]:
            self.assertIn(line, lines)
        self.assertEqual(self.velmor("props", "-", stdin=b""), b"NAME  TYPE        VALUE\n")

    def test_enciphered(self):
        self.write("p", self.ENCIPHERED)
        self.write("password", "pass \u00e9\u4e00\r\nnot this".encode())
        self.write("wrong", b"pass")
        self.write("none", b"\n")
        self.write("plain", b"a=1&:")
        listed = json.loads(self.velmor("props", "p", "--json", "--password-file", "password"))["properties"]
        self.assertEqual([p["value"] for p in listed], ["Ruth \u0141", 5])
        self.check_failures([(["props", *arguments], FILE, said) for arguments, said in [
            (["p"], "--password-file"), (["p", "--password-file", "wrong"], "password"),
            (["p", "--password-file", "none"], "password"), (["p", "--password-file", "missing"], "missing"),
            (["plain", "--password-file", "password"], "plain"),
            (["missing", "--password-file", "password"], "missing")]])
        self.velmor("props", expect=USAGE)
        self.velmor("eval", "--password-file", "password", expect=USAGE)
        template = b"<KV:TAG>PROPERTY:n=:</KV>"
        self.assertEqual(self.velmor("eval", "--properties", "p", "--password-file", "password", stdin=template), b"5")
        self.velmor("eval", "--properties", "p", stdin=template, expect=FILE)

    def test_deep_nesting(self):
        text = b"x=1&:"
        for _ in range(150):
            unused = next((code for code in range(181, 192) if bytes([code]) not in text), None)
            if unused is None:
                text = b'a=0&:a=~PR"+' + base64.b64encode(text.decode("cp1252").encode()) + b'":'
            else:
                text = b'a=0&:a=~PR"' + bytes([unused]) + text.replace(b'"', bytes([unused])) + b'":'
        listed = self.velmor("props", "--json", "-", stdin=text, expect=REPORTED)
        self.assertEqual(listed.count(b'"name":"a"'), 101)
        self.assertIn("100 levels", self.messages)


class Log(VelmorTest):
    LINES = (b"05/03/2008 14:22:07 SRV 01 EVTAG  0000.016 DATABASE\r\n"
             b"05/03/2008 14:22:07 SRV 01 TAGCOL 0001.500 DATABASE 12\r\n"
             b"05/03/2008 14:22:08 SRV 01 EVTAG  0000.001 A\x80 EVTAG  0000.001 B\r\n"
             b"05/03/2008 14:22:08 SRV 01 EVTAG  12345.001 DATABASE\r\n"
             b"05/03/2008 14:22:08 SRV 01 TAGCOL 0000.000  3\r\n"
             b"05/03/2008 14:22:08 SRV 01 CLNRTF 0000.250 98765\r\n"
             b"05/03/2008 14:22:08 SRV 01 GENRES 0002.000 \r\n")

    def test_sums_up(self):
        self.write("day.log", self.LINES)
        self.assertEqual(self.velmor("log", "day.log").decode().splitlines(), [
            "STAGE   HANDLER                   CALLS      TOTAL       MEAN    SLOWEST",
            "EVTAG   DATABASE                      2  12345.017   6172.509  12345.001",
            "GENRES                                1      2.000      2.000      2.000",
            "TAGCOL  DATABASE                      1      1.500      1.500      1.500",
            "CLNRTF                                1      0.250      0.250      0.250",
            "EVTAG   A\u20ac EVTAG  0000.001 B          1      0.001      0.001      0.001",
            "TAGCOL                                1      0.000      0.000      0.000"])
        summary = json.loads(self.velmor("log", "--json", "-", stdin=self.LINES.replace(b"\r", b"")))
        self.assertEqual(summary["unread"], 0)
        self.assertEqual(summary["entries"][0], {"stage": "EVTAG", "handler": "DATABASE", "calls": 2,
                                                 "total": 12345.017, "mean": 6172.5085, "slowest": 12345.001})

    def test_bad_lines(self):
        self.assertEqual(json.loads(self.velmor("log", "-", "--json", stdin=b"")), {"entries": [], "unread": 0})
        for line in [b"\r\n", b"x\r\n", b"05/03/2008 14:22:07 SRV01 EVTAG  0000.016 HALF", b"\0" * 100,
                     b"05/03/2008 14:22:07 SRV01 EVTAG  00x0.016 A\r\n", b"05/03/2008 14:22:07 SRV01 EVTAG \r\n",
                     b"05/03/2008 14:22:07 SRV01 GENRES 100000000.000 \r\n",
                     b"05/03/2008 14:22:07 SRV01" + b" EVTAG  " * 150000 + b"\r\n"]:
            with self.subTest(line=line[:80]):
                out = self.velmor("log", "--json", "-", stdin=self.LINES + line, expect=REPORTED)
                self.assertEqual((json.loads(out)["unread"], len(json.loads(out)["entries"])), (1, 6))
        self.velmor("log", "missing", expect=FILE)
        self.velmor("log", expect=USAGE)

    def test_reads_what_evaluation_writes(self):
        if RUNNER:
            self.skipTest("the machine's registry and data folder are not the test's own")
        self.write("r.reg", b"Windows Registry Editor Version 5.00\r\n\r\n"
                   b"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Korvane\\Quillmark\\Options]\r\n\"Logging Types\"=\"22\"\r\n")
        os.environ["VELMOR_DATA"] = self.path("data")
        self.addCleanup(os.environ.pop, "VELMOR_DATA")
        template = b"<KV:TAG>PROPERTY:a=1:</KV>"
        self.assertEqual(self.velmor("eval", "--registry", "r.reg", stdin=template * 3), b"111")
        logs = os.path.join("data", "Pellmar", "Logs")
        (log,) = os.listdir(self.path(logs))
        self.assertRegex(log, r"^VelmorLog-\d{8}\.log$")
        entries = json.loads(self.velmor("log", "--json", os.path.join(logs, log)))["entries"]
        self.assertEqual(sorted((e["stage"], e["handler"], e["calls"]) for e in entries),
                         [("EVTAG", "TAG", 3), ("GENRES", "", 1), ("TAGCOL", "", 1), ("TAGCOL", "TAG", 3)])


class Handlers(VelmorTest):
    REGISTRY = (b"Windows Registry Editor Version 5.00\r\n\r\n"
                b"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Korvane\\Quillmark\\Handlers]\r\n"
                b"\"FORMAT\"=\"Sample.Formatter\"\r\n\"Tag\"=\"Never.Asked\"\r\n\"GONE\"=\"{00000000-0000-0000-C000-000000000046}\"\r\n"
                b"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Korvane\\Quillmark\\Handlers\\GONE]\r\n\"Hide\"=\"1\"\r\n"
                b"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Korvane\\Quillmark\\SubHandlers\\GRP]\r\n"
                b"\"F\"=\"Sample.Formatter\"\r\n"
                b"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Sample.Formatter]\r\n"
                b"\"NativeLibrary\"=\"SampleFormatter.so\"\r\n")

    def test_list(self):
        if RUNNER:
            self.skipTest("the sample handler is not registered yet")
        self.write("r.reg", self.REGISTRY)
        options = ["--registry", "r.reg", "--handlers", HANDLERS]
        handlers = json.loads(self.velmor("handlers", "--json", *options))["handlers"]
        self.assertEqual([(h["name"], h["available"]) for h in handlers],
                         [("FORMAT", True), ("Tag", True), ("ROWS", True), ("GRP-F", True)])
        self.assertEqual([c["name"] for c in handlers[3]["commands"]], ["DATE", "NUMBER"])
        lines = self.velmor("handlers", *options, "tag").decode().split("\n")
        self.assertEqual(lines[:3], ["Tag  (built in)",
                                     "  SETPROPERTY  TAG>SETPROPERTY:name=value:[PREPROCESS=(true):]",
                                     "      PREPROCESS"])
        self.assertIn(b"GONE  {0", self.velmor("handlers", *options, "--all", expect=REPORTED))
        self.assertIn("GONE: Cannot create object \"{0", self.messages)
        self.velmor("handlers", *options, "NONE", expect=FILE)
        for name in ["r.reg", "none"]:
            self.velmor("handlers", "--handlers", name, expect=FILE)
            self.assertIn(f"folder not found: '{name}'", self.messages)

    def test_without_a_registry(self):
        for content, code in [(b"Windows Registry Editor Version 5.00\r\n", DONE), (b"nonsense", REPORTED)]:
            self.write("r.reg", content)
            handlers = json.loads(self.velmor("handlers", "--json", "--registry", "r.reg", expect=code))["handlers"]
            self.assertEqual([h["name"] for h in handlers], ["TAG", "ROWS"])


class ProcessHandlers(VelmorTest):
    """Handlers that are programs."""

    # Answers with the number of tags that it has answered, and ends after the second one.
    COUNTER = b"import sys\nfor n, line in enumerate(sys.stdin, 1):\n    print('{\"result\": \"%d\"}' % n, flush=True)\n" \
              b"    if n == 2: break\n"

    def setUp(self):
        super().setUp()
        if RUNNER:
            self.skipTest("only Linux has them")
        sample = os.path.join(SAMPLES, "process")
        shutil.copy(os.path.join(sample, "signature.py"), self.folder.name)
        self.write("count.py", self.COUNTER)
        handlers = {"COUNT": "python3 count.py", "DEAD": "exit 3",
                    "MAD": "yes [1] 2>/dev/null", "ODD": "yes {} 2>/dev/null", "HUGE": "head -c 200000000 /dev/zero 2>/dev/null"}
        lines = [f'"{name}"="process:{command}"' for name, command in handlers.items()]
        with open(os.path.join(sample, "handlers.reg"), "rb") as file:
            self.write("r.reg", file.read() + "\n".join(lines).encode())

    def eval(self, text, expect=DONE, *options):
        return self.velmor("eval", "--registry", "r.reg", "--property", "customer=Zo\u00eb", *options,
                           stdin=text.encode(), expect=expect).decode()

    def test_answers(self):
        self.assertEqual(self.eval("<KV:SIGN>NAME=Ruth:</KV>|<KV:SIGN>NAME:FOR=none:</KV>"),
                         "Yours to Zo\u00eb, Ruth|Yours faithfully")
        nested = "<KV:SIGN>NAME=\"<KV:SIGN>NAME=Al:</KV>\":</KV>"
        self.assertEqual(self.eval(nested), "Yours to Zo\u00eb, Yours to Zo\u00eb, Al")
        self.assertIn(b"NAME  NAME[=signer]", self.velmor("handlers", "--registry", "r.reg", "SIGN"))
        out = self.velmor("handlers", "--registry", "r.reg", "--test", "SIGN", "NAME=Al:")
        self.assertEqual(out.decode().strip(), "Yours faithfully")

    def test_failures_are_entries(self):
        for name, said in [("DEAD", "ended"), ("MAD", "not a JSON object: [1]"), ("ODD", "no known member"),
                           ("HUGE", "too long"), ("SIGN", "there is no command A")]:
            with self.subTest(name):
                self.assertEqual(self.eval(f"a<KV:{name}>A:</KV>b", REPORTED), "ab")
                self.assertIn(said, self.messages)

    def test_one_program_answers_until_it_ends(self):
        self.assertEqual(self.eval("<KV:COUNT>A:</KV>" * 4, REPORTED, "--record", "r.kvr"), "121")
        self.assertIn("ended", self.messages)
        for name in ("count.py", "r.reg"):
            os.remove(self.path(name))
        self.assertEqual(self.velmor("eval", "--replay", "r.kvr", expect=REPORTED), b"121")


class Sample(VelmorTest):
    """The sample handler: a library that velmor loads, or under Wine a registered class."""

    @classmethod
    def setUpClass(cls):
        cls.options = ["--registry", os.path.join(SAMPLES, "letter", "handlers.reg")]
        if RUNNER:
            library = os.path.join(HANDLERS, "SampleFormatter.dll")
            subprocess.run([*RUNNER, "regsvr32", "/s", library], check=True, timeout=120)
        else:
            cls.options += ["--handlers", HANDLERS]

    def test_formats(self):
        cases = [
            ('DATE:PROPERTY=d:PATTERN="dddd, d mmmm yyyy":', "Friday, 5 March 2004"),
            ("DATE:PROPERTY=d:PATTERN=\"h.nn AM/PM 'on day' d mmm\":", "2.07 PM on day 5 Mar"),
            ("DATE:VALUE=2024-02-29:", "29 February 2024"),
            ('NUMBER:VALUE=1234567.885:PATTERN="#,##0.00":', "1,234,567.89"),
            ('NUMBER:VALUE=<KV:TAG>PROPERTY:n=:</KV>:PATTERN="0.0":', "4.5"),
            ("NUMBER:PROPERTY=missing:", ""),
        ]
        self.write("p", b"d=#5 Mar 2004 2:07:09 PM#:n=4.5#:")
        for tag, result in cases:
            with self.subTest(tag=tag):
                out = self.velmor("eval", *self.options, "--properties", "p", stdin=f"<KV:FORMAT>{tag}</KV>".encode())
                self.assertEqual(out.decode(), result)

    def test_failure_is_reported(self):
        out = self.velmor("eval", *self.options, stdin=b"a<KV:FORMAT>DATE:VALUE=never:</KV>b", expect=REPORTED)
        self.assertEqual(out, b"ab")
        self.assertEqual(self.messages, 'velmor: standard input:1:2: <KV:FORMAT>DATE:VALUE=never:</KV>: '
                                        'FORMAT: "never" is not a date (error 13)\n')

    def test_record_replaces_everything_outside(self):
        tags = ("INCLUDE=utf16.txt:", "INCLUDE=list.kvl:KEY=b:", "INCLUDE=none.txt:", "INCLUDE=part.rtf:",
                "PROPERTY:Logo=:", "PROPERTY:n=:", "PROPERTY:day=#5 Mar#:", "INCLUDE=bytes.bin:", "INCLUDE=bytes.bin:")
        formats = ("DATE:PROPERTY=day:", "DATE:VALUE=never:", "NUMBER:VALUE=<KV:TAG>INCLUDE=number.txt:</KV>:")
        self.write("t.rtf", b"{\\rtf1 \\trowd\\irow0\\lastrow\\cellx9\\intbl x\\cell\\row\\pard "
                   + "|".join([f"<KV:TAG>{tag}</KV>" for tag in tags] + [f"<KV:FORMAT>{tag}</KV>" for tag in formats]
                              + ["<KV:NONE>x:</KV>", "<KV:CUSTOMER>NAME:ID=1:</KV>"]).encode() + b"}")
        self.write("utf16.txt", "\ufeff\ud800x\0\U0001f600".encode("utf-16-le", "surrogatepass"))
        self.write("list.kvl", b'a="x":b="<KV:TAG>PROPERTY:n=:</KV>":')
        self.write("part.rtf", b"{\\rtf1 \\trowd\\irow0\\lastrow\\cellx9\\intbl <KV:TAG>PROPERTY:n=:</KV>\\cell\\row}")
        self.write("bytes.bin", bytes(range(256)))
        self.write("number.txt", b"1234.5")
        picture = base64.b64encode(b"\x89PNG\r\n\x1a\n" + bytes(40)).decode()
        self.write("p", f'Logo=~RO~Picture"{picture}":day=#5 Mar 2004 2:07:09 PM#:'.encode())
        self.write("d.json", b'{"n": "Zo\\u00eb"}')
        command = ["eval", "t.rtf", *self.options, "--properties", "p", "--data", "d.json", "--property", "x=1",
                   "--include-root", "."]
        self.velmor(*command, "-o", "first", "--record", "r.kvr", expect=REPORTED)
        messages, first, record = self.messages, self.read("first"), self.read("r.kvr")
        for said in (b"5 March 2004", b"Zo\xeb", b"1,234.50", b"korvane"):
            self.assertIn(said, first)
        self.assertNotEqual(self.velmor(*command, expect=REPORTED), first)  # markers of tables are random
        for name in os.listdir(self.folder.name):
            os.remove(self.path(name))
        self.write("r.kvr", record)
        for replay in (command, ["eval"]):
            self.assertEqual(self.velmor(*replay, "--replay", "r.kvr", expect=REPORTED), first)
            self.assertEqual(self.messages, messages)
        self.assertEqual(os.listdir(self.folder.name), ["r.kvr"])

        lines = record.split(b"\n")
        without = next(index for index, line in enumerate(lines) if b"number.txt" in line and b'"ask"' in line)
        deep = json.dumps({"ask": json.loads(lines[without])["ask"]})[:-1].encode()
        deep += b',"gave":' + b"[" * 200000 + b"]" * 200000 + b"}"
        foreign = json.loads(lines[1])
        foreign["settings"][0] = "1234,5"
        self.write("t.rtf", b"{\\rtf1 changed}")
        for name, damaged in (("cut.kvr", lines[:-2]), ("half.kvr", [record[:len(record) // 2]]),
                              ("less.kvr", lines[:without] + lines[without + 1:]),
                              ("no.kvr", lines[:without] + [b"{"] + lines[without + 1:]),
                              ("deep.kvr", lines[:without] + [deep] + lines[without + 1:]),
                              ("head.kvr", lines[:1] + [b"{}"] + lines[2:]),
                              ("foreign.kvr", lines[:1] + [json.dumps(foreign).encode()] + lines[2:]),
                              ("more.kvr", lines[:-2] + lines[-3:]),
                              ("wrong.kvr", lines[:-2] + [b'{"end":"0"}', b""]),
                              ("version.kvr", [lines[0].replace(b"1", b"2")] + lines[1:])):
            self.write(name, b"\n".join(damaged))
        number = without + 1
        self.check_failures([(["eval", *arguments, "--replay", name], FILE, said) for arguments, name, said in (
            (["t.rtf"], "r.kvr", "the template 't.rtf' is not that of the record"),
            (["other.rtf"], "r.kvr", "file not found: 'other.rtf'"),
            (["--property", "x=2"], "r.kvr", "--property is not that of the record"),
            (["--missing", "mark"], "r.kvr", "kvTag.Missing is not that"),
            ([], "t.rtf", "'t.rtf':1: this is not a record"),
            ([], "version.kvr", "'version.kvr':1: another velmor"),
            ([], "head.kvr", "'head.kvr':2: the record is damaged"),
            ([], "foreign.kvr", "'foreign.kvr':2: it was recorded with other settings"),
            ([], "cut.kvr", f"'cut.kvr':{len(lines) - 2}: the record is cut"),
            ([], "half.kvr", "the record is cut"),
            ([], "no.kvr", f"'no.kvr':{number}: this is not a line"),
            ([], "deep.kvr", f"'deep.kvr':{number}: the record is damaged"),
            ([], "more.kvr", "the evaluation has ended, but the record has not"),
            ([], "wrong.kvr", "the output is not the recorded one"),
            ([], "less.kvr", "<KV:FORMAT>NUMBER:VALUE=<KV:TAG>INCLUDE=number.txt:</KV>:</KV>: "
                             f"'less.kvr':{number}: the record does not hold"))])

    def test_letter(self):
        letter = os.path.join(SAMPLES, "letter")
        out = self.velmor("eval", os.path.join(letter, "invoice.rtf"), *self.options, "--properties",
                          os.path.join(letter, "invoice.properties"))
        for said in [b"6,458.88", b"Dear Madame H\xe9l\xe8ne Fournier,", b"steel \\\\ \\{nylon coated\\}",
                     b"27 quai des Pilotes\\par 29200 Brest", b"by insured road freight", b"NI-2024-0187",
                     b"interest of 4.5 per cent", b"{\\*\\korvane\\starttable"]:
            self.assertIn(said, out)
        self.assertNotIn(b"KV:", out)
        self.assertEqual(out.count(b"\\rtf1"), 2)
        out = self.velmor("clean", "--exact", "-", stdin=out)
        self.assertEqual((out.count(b"\\rtf1"), out.count(b"\\fonttbl")), (1, 1))
        self.assertEqual(out.count(b"{") - out.count(b"\\{"), out.count(b"}") - out.count(b"\\}"))


class Binary(VelmorTest):
    def test_linux_program_is_hardened(self):
        if RUNNER:
            self.skipTest("a Windows program")
        said = subprocess.run(["readelf", "-lWd", "--dyn-syms", PROGRAM], capture_output=True, text=True).stdout
        wanted = ["GNU_RELRO", "BIND_NOW", "NOW PIE"] + ([] if "__asan_init" in said else ["__stack_chk_fail", "_chk@"])
        for each in wanted:
            self.assertIn(each, said)


def main(document):
    """Runs the tests of the script that was called, with its arguments."""
    global PROGRAM, HANDLERS, RUNNER
    arguments = sys.argv[1:]
    if arguments in (["-h"], ["--help"]):
        sys.exit(print(document))
    if "--" in arguments:
        RUNNER = arguments[arguments.index("--") + 1:]
        arguments = arguments[:arguments.index("--")]
    PROGRAM, HANDLERS = (os.path.abspath(argument) for argument in arguments)
    unittest.main(argv=sys.argv[:1])


if __name__ == "__main__":
    main(__doc__)
