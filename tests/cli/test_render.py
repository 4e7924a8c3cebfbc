#!/usr/bin/env python3
"""Runs `velmor render` as a user does.

    tests/cli/test_render.py PROGRAM HANDLERS [-- RUNNER ...]

The arguments are those of test_velmor.py.
"""

import json
import os
import signal
import sqlite3
import subprocess
import time
import unittest

import test_velmor
from test_velmor import DONE, FILE, REPORTED, USAGE, VelmorTest

INTERRUPTED = 130
LETTER = b"<KV:TAG>PROPERTY:Id=?:</KV> <KV:TAG>PROPERTY:Name=?:</KV>\n"
RTF = b"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Dear <KV:TAG>PROPERTY:Name=?:</KV>\\par}"


class RenderTest(VelmorTest):
    def render(self, data, *arguments, name="data.csv", template=LETTER, **more):
        self.write("letter.txt", template)
        self.write(name, data)
        return self.velmor("render", "letter.txt", "--data", name, "--encoding", "utf-8", *arguments, **more)

    def files(self, folder="out"):
        return {name: self.read(os.path.join(folder, name)) for name in sorted(os.listdir(self.path(folder)))}

    def check_rows(self, rows):
        """Each row: file name, data, arguments, output, what messages say (none: exit code 0)."""
        for name, data, arguments, output, said in rows:
            with self.subTest(data=data[:60], arguments=arguments):
                out = self.render(data, *arguments, name=name, expect=REPORTED if said else DONE)
                self.assertEqual(out, output)
                for each in said:
                    self.assertIn(each, self.messages)


class Data(RenderTest):
    def test_csv(self):
        self.check_rows([
            ("d.csv", b"Id,Name\r\n007,Ann\r\n2,\r\n", [], b"007 Ann\n2 \n", []),
            ("d.csv", b"Id;Name\n1;a,b\n", [], b"1 a,b\n", []),
            ("d.csv", b'Id\tName\n1\t"x""y\tz"\n', [], b'1 x"y\tz\n', []),
            ("d.csv", b'Id,Name\n1,"two\nlines"\n\n2,b', [], b"1 two\nlines\n2 b\n", []),
            ("d.csv", b"Id:Name\r1:a\r", ["--separator", ":"], b"1 a\n", []),
            ("d.csv", "\ufeffId,Name\n1,\u00e9\n".encode(), [], "1 \u00e9\n".encode(), []),
            ("d.csv", "Id,Name\n1,\u00e9\n".encode("utf-16"), [], "1 \u00e9\n".encode(), []),
            ("d.csv", b"Id,Name\n1,\xe9\n", [], "1 \u00e9\n".encode(), []),
            ("d.csv", b"Id,Name\n1,\xc3\xa9\n", ["--data-encoding", "ansi"], "1 \u00c3\u00a9\n".encode(), []),
            # what cannot be used is told; the rest is made
            ("d.csv", b"Id,Name\n1,a,x\n2\n3,c\n", [], b"3 c\n",
             ["'d.csv':2: record 1: 3 fields", "'d.csv':3: record 2: 1 field,", "2 of 3 records failed"]),
            ("d.csv", b'Id,Name\n1,"a\n2,b\n3,c\n', [], b"2 b\n3 c\n", ["'d.csv':2: record 1: a quote is never closed"]),
            ("d.csv", b'Id,Name\n1,"a"b\n2,"x\n3,"c"\n', [], b"3 c\n", [":2: record 1: text follows", ":3: record 2: text"]),
            ("d.csv", "Id,Name\n1,\u00e9\n2,\u00fc\n3,".encode() + b"\xff\n4,d\n", [], "1 \u00e9\n2 \u00fc\n4 d\n".encode(),
             ["'d.csv':4: record 3: the value of 'Name' is not UTF-8"]),
            ("d.csv", b"Id,Name\n1,a\0b\n2,b\n", [], b"2 b\n", [":2: record 1: the record holds a NUL"]),
            ("d.csv", b"Id,Name\n1," + b"x" * 17000000 + b"\n2,b\n", [], b"2 b\n", ["record 1: the record is longer than 16 MB"]),
            ("d.csv", b"Id,Name,kvtag.missing,Path,\n1,a,fail,/,z\n", [], b"1 a\n",
             ["not used: 'kvtag.missing'", "not used: 'Path'", "column 5, which has no name"]),
            ("d.csv", b"Id,Name\n", [], b"", ["no record was chosen"]),
        ])
        self.write("letter.txt", LETTER)
        for data, said in [(b"", "is empty"), (b"a,b,A\n1,2,3\n", ":1: there are two columns 'A'")]:
            self.write("data.csv", data)
            self.velmor("render", "letter.txt", "--data", "data.csv", expect=FILE)
            self.assertIn(said, self.messages)

    def test_json(self):
        self.check_rows([
            ("d.json", b'[{"Id": 1, "Name": "a"}, {"Id": 2.5, "Name": "\\u00e9"}]', [], "1 a\n2.5 \u00e9\n".encode(), []),
            ("d.json", b' {"Id": 12345678901234567, "Name": {"x": [1]}} ', [], b"12345678901234567 \n", []),
            ("d.jsonl", b'{"Id": 1, "Name": "}"}\r\n\n{"Id": 2}\n', [], b"1 }\n2 ?\n", []),
            # what cannot be used is told; the rest is made
            ("d.json", b'[{"Id": 1},\n 5, {"Id": tru}, {"Id": 4, "Path": "/"}]', [], b"1 ?\n4 ?\n",
             ["'d.json':2: record 2: this is not a JSON object", "'d.json':2: record 3: this is not JSON (character 11",
              "not used: 'Path'"]),
            ("d.json", b'[{"Id": 1},\n{"Id": "2', [], b"1 ?\n", ["'d.json':2: record 2: the data ends in the middle"]),
            ("d.json", b'[{"Id": 1},', [], b"1 ?\n", ["record 2: the data ends before the array does"]),
            ("d.json", b'[{"Id": 1} {"Id": 2}] x', [], b"1 ?\n", ["record 2: a comma is missing", "record 3: text follows"]),
            ("d.json", b"[{\"Id\": " + b"[" * 200000 + b"]" * 200000 + b'}, {"Id": 2}]', [], b"2 ?\n", ["deeper than 100 levels"]),
            ("d.jsonl", b'{"Id": 1\n{"Id": "\xff"}\n{"Id": 3}\n', [], b"3 ?\n",
             ["'d.jsonl':1: record 1: this is not JSON", "'d.jsonl':2: record 2: this is not JSON in UTF-8"]),
            ("d.csv", b'{"Id": 1}', ["--data-format", "jsonl"], b"1 ?\n", []),
        ])

    def test_sqlite(self):
        if test_velmor.RUNNER:
            self.write("data.db", b"")
            self.write("letter.txt", LETTER)
            self.velmor("render", "letter.txt", "--data", "data.db", "--sql", "select 1", expect=USAGE)
            return self.assertIn("does not read SQLite", self.messages)
        with sqlite3.connect(self.path("data.db")) as database:
            database.execute("create table people (Id, Name)")
            database.executemany("insert into people values (?, ?)", [(9007199254740993, "a"), (2.5, None), ("x", b"\0")])
        database.close()
        self.write("letter.txt", LETTER)
        render = ["render", "letter.txt", "--data", "data.db", "--sql"]
        self.assertEqual(self.velmor(*render, "select * from people", expect=REPORTED), b"9007199254740993 a\n2.5 \n")
        self.assertIn("'data.db': record 3: the value of 'Name' is binary data", self.messages)
        for sql, said, code in [("delete from people", "only reads", USAGE), ("select 1; select 2", "one query", USAGE),
                                ("select absent from people", "no such column", FILE)]:
            self.velmor(*render, sql, expect=code)
            self.assertIn(said, self.messages)

    def test_standard_input_and_choice(self):
        self.write("letter.txt", LETTER)
        data = b"Id,Name\n" + b"".join(b"%d,%s\n" % (i, b"ab"[i % 2:i % 2 + 1]) for i in range(1, 10))
        render = ["render", "letter.txt", "--data", "-"]
        self.assertEqual(self.velmor(*render, "--where", "name=a", "--limit", "2", stdin=data), b"2 a\n4 a\n")
        self.velmor(*render, "--part", "1/2", stdin=data, expect=USAGE)
        parts = [self.render(data, "--part", "%d/4" % part) for part in range(1, 5)]
        self.assertEqual(b"".join(parts), self.render(data))
        self.assertEqual([part.count(b"\n") for part in parts], [2, 2, 2, 3])

    def test_properties_that_all_share(self):
        self.write("shared.properties", b'Id="p":Name="p":Place="p":')
        template = LETTER.strip() + b" <KV:TAG>PROPERTY:Place=?:</KV>\n"
        out = self.render(b"Id\n1\n", "--properties", "shared.properties", "--property", "Place=q", template=template)
        self.assertEqual(out, b"1 p q\n")


class Letters(RenderTest):
    def test_names_stay_in_their_folder(self):
        rows = [("../../up", ".._.._up"), ("..", "._"), ("a/b\\c:d", "a_b_c_d"), ("NUL", "_NUL"), ("com1.x", "_com1.x"),
                ("e.", "e_"), ("\u00e9", "\u00e9")]
        data = "Id,Name\n" + "".join("%d,%s\n" % (i, value) for i, (value, _) in enumerate(rows))
        self.render(data.encode(), "--each", "out/{Name}/{##}-{Id}.txt")
        names = sorted(os.listdir(self.path("out")))
        self.assertEqual(names, sorted(name for _, name in rows))
        self.assertEqual(os.listdir(self.path("out/_NUL")), ["04-3.txt"])
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["data.csv", "letter.txt", "out"])

    def test_each(self):
        data = b"Id,Name\n1,a\n2,A\n3,\n4,d\n5,%s\n" % (b"x" * 300)
        self.render(data, "--each", "out/{Name}.txt", expect=REPORTED)
        for said in [":3: record 2: a record before it has the same file name, 'out/A.txt'", ":6: record 5: its file name is too long"]:
            self.assertIn(said, self.messages)
        self.assertEqual(self.files(), {".txt": b"3 \n", "a.txt": b"1 a\n", "d.txt": b"4 d\n"})
        os.remove(self.path("out/d.txt"))
        self.write("out/a.txt", b"kept")
        self.render(data, "--each", "out/{Name}.txt", "--continue", "--report", "run.json", expect=REPORTED)
        self.assertEqual(self.files(), {".txt": b"3 \n", "a.txt": b"kept", "d.txt": b"4 d\n"})
        run = json.loads(self.read("run.json"))
        self.assertEqual((run["made"], run["there"], run["failed"]), (1, 2, 2))
        self.assertEqual(run["failures"][0]["line"], 3)
        self.render(b"Id,Name\n1,\n", "--each", "out/{Name}", expect=REPORTED)
        self.assertIn("would be empty", self.messages)
        self.render(b"Id\n1\n", "--each", "out/{Name}", expect=REPORTED)
        self.assertIn("needs 'Name'", self.messages)
        for pattern in ["out/all.txt", "out/{Name", "out/}{Id}", "{}"]:
            self.render(data, "--each", pattern, expect=USAGE)
        self.assertEqual(self.render(b"Id,Name\n1,a\n", "--each", "{{{Id}}}.txt"), b"")
        self.assertEqual(self.read("{1}.txt"), b"1 a\n")

    def test_errors_have_their_record_and_place(self):
        template = b"<KV:TAG>PROPERTY:Id=:</KV>\n <KV:NONE>X:</KV>"
        data = b"Id,Name\n1,a\n,b\n3,c\n"
        self.assertEqual(self.render(data, "--jobs", "1", template=template, expect=REPORTED), b"1\n \n 3\n ")
        self.assertIn("'data.csv':2: record 1: 'letter.txt':2:2: <KV:NONE>X:</KV>", self.messages)
        self.assertIn("'data.csv': 2 more with: 'letter.txt':2:2", self.messages)
        template = b"<KV:TAG>PROPERTY:Id:</KV><KV:TAG>PROPERTY:Place:</KV>"
        self.assertEqual(self.render(data, "--missing", "fail", template=template, expect=REPORTED), b"")
        self.assertIn("'data.csv':4: record 3: 'letter.txt':1:26", self.messages)
        self.assertEqual(self.render(data, "--missing", "fail", "--property", "Place=x", template=template), b"1xx3x")

    def test_included_files_of_all_records(self):
        self.write("part.txt", b"[<KV:TAG>PROPERTY:Id=?:</KV>]")
        template = b"<KV:TAG>INCLUDE=part.txt:</KV><KV:TAG>INCLUDE=part.txt:</KV>"
        data = b"Id\n" + b"".join(b"%d\n" % i for i in range(500))
        self.assertEqual(self.render(data, "--jobs", "4", template=template),
                         b"".join(b"[%d][%d]" % (i, i) for i in range(500)))

    def test_byte_order_mark_begins_the_file_alone(self):
        template = "\ufeff".encode() + LETTER
        self.assertEqual(self.render(b"Id,Name\n1,a\n2,b\n", template=template), "\ufeff1 a\n2 b\n".encode())


class Joined(RenderTest):
    def test_rtf_is_what_clean_makes(self):
        data = "Name\n\u00e9\n\u0142\nc\n".encode()
        self.render(data, "--each", "out/{#}.rtf", template=RTF)
        self.velmor("clean", "out/1.rtf", "out/2.rtf", "out/3.rtf", "-o", "all.rtf")
        for jobs in ["1", "3"]:
            self.render(data, "--join", "joined.rtf", "--jobs", jobs, template=RTF)
            self.assertEqual(self.read("joined.rtf"), self.read("all.rtf"))
        self.assertEqual(self.render(data, template=RTF), self.read("all.rtf"))
        self.render(data, "--each", "clean/{#}.rtf", "--clean", template=RTF)
        self.velmor("clean", "--inputs-from", "-", "-o", "listed.rtf", stdin=b"out/1.rtf\r\n\nout/2.rtf\nout/3.rtf")
        self.assertEqual(self.read("listed.rtf"), self.read("all.rtf"))
        self.velmor("clean", expect=USAGE)
        self.velmor("clean", "out/2.rtf", "-o", "one.rtf")
        self.assertEqual(self.read("clean/2.rtf"), self.read("one.rtf"))

    def test_letter_that_cannot_be_joined(self):
        data = b"Name\na\n<KV:TAG>X:\n{\nd\n"
        out = self.render(data, template=RTF, expect=REPORTED)
        self.assertIn(b"Dear d", out)
        self.assertIn("record 2: the letter still contains a tag", self.messages)

    def test_order_whatever_finishes_first(self):
        data = b"Id,Name\n" + b"".join(b"%d,%s\n" % (i, b"x" * (i * 7919 % 3000)) for i in range(2000))
        expected = self.render(data, "--jobs", "1")
        self.assertEqual([line.split()[0] for line in expected.splitlines()], [b"%d" % i for i in range(2000)])
        self.assertEqual(self.render(data, "--jobs", "7"), expected)


@unittest.skipIf(os.name == "nt", "signals and devices of Linux")
class Trouble(RenderTest):
    def setUp(self):
        super().setUp()
        if test_velmor.RUNNER:
            self.skipTest("signals and devices of Linux")

    def test_full_disk(self):
        data = b"Id,Name\n1," + b"x" * 200000 + b"\n2,b\n"
        self.render(data, "--join", "/dev/full", expect=FILE)
        for arguments, code in [(["--each", "out/{Id}.txt"], REPORTED), (["--join", "all.txt"], FILE)]:
            self.write("letter.txt", LETTER)
            self.write("data.csv", data)
            command = "ulimit -f 100; exec \"$@\""
            done = subprocess.run(["sh", "-c", command, "sh", test_velmor.PROGRAM, "render", "letter.txt", "--data",
                                   "data.csv", *arguments], cwd=self.folder.name, capture_output=True)
            self.assertEqual(done.returncode, code, done.stderr)
            self.assertIn(b"File too large", done.stderr)
        self.assertEqual(self.files(), {"2.txt": b"2 b\n"})
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["data.csv", "letter.txt", "out"])

    def interrupt(self, *arguments):
        """Sends SIGINT when the first block of data is made into letters, while standard input has still more to come."""
        self.write("letter.txt", LETTER)
        process = subprocess.Popen([test_velmor.PROGRAM, "render", "letter.txt", "--data", "-", *arguments],
                                   cwd=self.folder.name, stdin=subprocess.PIPE, stderr=subprocess.PIPE)
        process.stdin.write(b"Id,Name\n" + b"".join(b"%d,a\n" % i for i in range(40000)))
        process.stdin.flush()
        time.sleep(0.5)
        process.send_signal(signal.SIGINT)
        _, said = process.communicate(timeout=60)
        self.assertEqual(process.returncode, INTERRUPTED, said)
        return said

    def test_interruption(self):
        self.assertIn(b"--continue makes the others", self.interrupt("--each", "out/{Id}.txt"))
        self.assertTrue(all(content.endswith(b" a\n") for content in self.files().values()))
        self.assertIn(b"nothing was written", self.interrupt("--join", "all.txt"))
        self.assertEqual(sorted(os.listdir(self.folder.name)), ["letter.txt", "out"])

    def test_handler_that_is_a_program_serves_each_thread(self):
        source = os.path.join(test_velmor.SAMPLES, "process", "signature.py")
        self.write("handlers.reg", b"REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Korvane\\Quillmark\\Handlers]\n"
                   b'"SIGN"="process:python3 ' + source.encode() + b'"\n')
        out = self.render(b"Name\n" + b"Ann\nBob\n" * 50, "--jobs", "4", "--registry", "handlers.reg",
                          template=b"<KV:SIGN>NAME=x:FOR=Name:</KV>\n")
        self.assertEqual(out, b"Yours to Ann, x\nYours to Bob, x\n" * 50)

    def test_progress(self):
        self.render(b"Id,Name\n1,a\n")
        self.assertEqual(self.messages, "")
        import pty
        master, slave = pty.openpty()
        subprocess.run([test_velmor.PROGRAM, "render", "letter.txt", "--data", "data.csv"], cwd=self.folder.name,
                       stdout=subprocess.DEVNULL, stderr=slave)
        self.assertIn(b"1 done, 0 failed", os.read(master, 4096))
        os.close(slave)
        os.close(master)


if __name__ == "__main__":
    test_velmor.main(__doc__)
