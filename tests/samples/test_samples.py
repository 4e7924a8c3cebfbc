#!/usr/bin/env python3
"""Makes the short letter with each sample for Windows whose language runs under Wine; the component is registered.

    test_samples.py EARLY_BOUND_PROGRAM COMMAND ...      COMMAND runs a Windows program
"""

import os
import re
import subprocess
import sys
import tempfile

SAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "samples")
TEMPLATE = os.path.join(SAMPLES, "letter", "short.rtf")
PROPERTIES = {"Name": "Ada Lovelace", "Item": "an aneroid barometer"}


def read(path):
    with open(path, "rb") as file:
        return file.read()


def windows(path):
    return "Z:" + os.path.abspath(path).replace("/", "\\")


def letter(**values):
    """The short letter as a host must make it."""
    values = {**PROPERTIES, **values}
    return re.sub(rb"<KV:TAG>PROPERTY:(\w+)=([^:]*):</KV>",
                  lambda tag: values.get(tag[1].decode(), tag[2].decode()).encode(), read(TEMPLATE))


class Samples:
    def __init__(self, wine, folder):
        self.wine = wine
        self.folder = folder
        self.result = os.path.join(folder, "result.rtf")

    def run(self, *command):
        done = subprocess.run([*self.wine, *command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
        if done.returncode != 0:
            sys.exit(f"{command}: {done.returncode}\n{done.stdout.decode()}")

    def check(self, name, *command, expected):
        if os.path.exists(self.result):
            os.remove(self.result)
        self.run(*command, windows(TEMPLATE), windows(self.result))
        made = read(self.result) if os.path.exists(self.result) else b"no letter"
        assert made == expected, f"{name}: {made}"

    def script(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", newline="\r\n") as file:
            file.write(text)
        return windows(path)

    def hosts(self, early_bound):
        cscript = ("cscript", "//nologo")
        self.check("vbscript", *cscript, windows(os.path.join(SAMPLES, "vbscript", "letter.vbs")), expected=letter())
        self.check("jscript", *cscript, windows(os.path.join(SAMPLES, "jscript", "letter.js")), expected=letter())
        module = re.sub(r"Attribute.*|Option Explicit", "", read(os.path.join(SAMPLES, "vba", "Letter.bas")).decode())
        call = '\nIf MakeLetter(WScript.Arguments(0), WScript.Arguments(1)) <> "" Then WScript.Quit 3\n'
        self.check("vba", *cscript, self.script("vba.vbs", module + call), expected=letter())
        self.check("early-bound", early_bound, expected=letter())

    def script_handler(self):
        component = "/i:" + windows(os.path.join(SAMPLES, "script-handler", "Signature.wsc"))
        host = read(os.path.join(SAMPLES, "vbscript", "letter.vbs")).decode()
        added = 'tag.Properties.Add "Closing", "<KV:SIGN>NAME=Ruth:FOR=Name:</KV>", True\ntag.Value ='
        host = self.script("handler.vbs", host.replace("tag.Value =", added, 1))
        self.run("regsvr32", "/s", "/n", component, "scrobj.dll")
        self.run("regedit", "/S", windows(os.path.join(SAMPLES, "script-handler", "handlers.reg")))
        self.check("script-handler", "cscript", "//nologo", host,
                   expected=letter(Closing="Yours to Ada Lovelace, Ruth"))
        self.run("regsvr32", "/s", "/u", "/n", component, "scrobj.dll")


def main():
    early_bound, *wine = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        samples = Samples(wine, folder)
        samples.hosts(early_bound)
        samples.script_handler()


main()
