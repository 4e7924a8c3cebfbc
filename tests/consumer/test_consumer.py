#!/usr/bin/env python3
"""Installs what projects outside the tree need, and builds and runs the sample projects with it: a program with the
library, and a handler. For Windows the handler alone, which a script then uses through the registered component.

    test_consumer.py --build FOLDER --version VERSION --compiler COMPILER --velmor PROGRAM --link=OPTIONS
    test_consumer.py --build FOLDER --toolchain FILE --wine COMMAND ...
"""

import argparse
import os
import subprocess
import sys
import tempfile

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
SAMPLES = os.path.join(ROOT, "samples")
TEMPLATE = os.path.join(SAMPLES, "letter", "short.rtf")
DATE = b'<KV:FORMAT>DATE:VALUE=2026-03-05:PATTERN="d mmmm yyyy":</KV>'


def run(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}\n{done.stdout.decode()}")
    return done.stdout


def read(path):
    with open(path, "rb") as file:
        return file.read()


class Consumer:
    def __init__(self, given, folder):
        self.given = given
        self.folder = folder
        self.prefix = os.path.join(folder, "usr")
        run("cmake", "--install", given.build, "--prefix", self.prefix, "--component", "development")

    def find(self, name):
        """The folder below the prefix that holds a file or folder."""
        return next(path for path, folders, files in os.walk(self.prefix) if name in folders + files)

    def make(self, sample, *options):
        made = os.path.join(self.folder, sample)
        run("cmake", "-S", os.path.join(SAMPLES, sample), "-B", made, "-DCMAKE_BUILD_TYPE=Release",
            f"-DVelmor_DIR={self.find('VelmorConfig.cmake')}", *options)
        run("cmake", "--build", made)
        return made

    def check_letter(self, *program):
        result = os.path.join(self.folder, "letter.rtf")
        run(*program, TEMPLATE, result)
        expected = read(TEMPLATE)
        for tag, value in ((b"Name=customer", b"Ada Lovelace"), (b"Item=goods", b"an aneroid barometer"),
                           (b"Closing=Yours faithfully", b"Yours faithfully")):
            expected = expected.replace(b"<KV:TAG>PROPERTY:" + tag + b":</KV>", value)
        assert read(result) == expected, read(result)

    def program(self):
        compiler = self.given.compiler
        made = self.make("program", f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_EXE_LINKER_FLAGS={self.given.link}")
        self.check_letter(os.path.join(made, "letter"))

        environment = dict(os.environ, PKG_CONFIG_PATH=os.path.join(self.find("pkgconfig"), "pkgconfig"))
        found = run("pkg-config", "--modversion", "velmor", env=environment).decode().strip()
        assert found == self.given.version, found
        options = run("pkg-config", f"--define-variable=prefix={self.prefix}", "--static", "--cflags", "--libs", "velmor",
                      env=environment).decode().split()
        program = os.path.join(self.folder, "with-pkg-config")
        run(compiler, os.path.join(SAMPLES, "program", "letter.cpp"), "-o", program, *options, *self.given.link.split())
        self.check_letter(program)

    def native_handler(self):
        made = self.make("formatter", f"-DCMAKE_CXX_COMPILER={self.given.compiler}")
        answer = run(self.given.velmor, "eval", "--registry", os.path.join(SAMPLES, "letter", "handlers.reg"),
                     "--handlers", made, input=DATE)
        assert answer == b"5 March 2026", answer

    def windows_handler(self):
        made = self.make("formatter", f"-DCMAKE_TOOLCHAIN_FILE={self.given.toolchain}")
        with open(os.path.join(made, "use.vbs"), "w") as script:
            script.write('Set tag = CreateObject("kvVelmor3.kvTag")\n')
            for text in (DATE.decode(), "<KV:FORMAT>NUMBER:VALUE=never:</KV>"):
                script.write('tag.Value = "' + text.replace('"', '""') + '"\nWScript.Echo tag.Result\n')
            script.write('WScript.Echo tag.ErrorLog(1).Value, tag.ErrorLog(1).Properties.GetValue("Err")\n')
        answers = []
        for step in ((), ("/u",)):
            run(*self.given.wine, "regsvr32", "/s", *step, "SampleFormatter.dll", cwd=made)
            answers.append(run(*self.given.wine, "cscript", "//nologo", "use.vbs", cwd=made).decode().split("\r\n"))
        assert answers[0][:3] == ["5 March 2026", "", '"never" is not a number 13'], answers
        assert answers[1][:3] == ["", "", "Tag Handler not found. The handler's class name is not registered "], answers


def main():
    parser = argparse.ArgumentParser()
    for name in ("build", "version", "compiler", "velmor", "link", "toolchain"):
        parser.add_argument("--" + name)
    parser.add_argument("--wine", nargs=argparse.REMAINDER)
    given = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        consumer = Consumer(given, folder)
        if given.toolchain:
            consumer.windows_handler()
        else:
            consumer.program()
            consumer.native_handler()


main()
