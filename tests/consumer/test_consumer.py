#!/usr/bin/env python3
"""Installs the library, and builds and runs a program outside the tree with it.

    test_consumer.py BUILD_FOLDER VERSION COMPILER [LINK_OPTION ...]
"""

import os
import subprocess
import sys
import tempfile


def run(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}\n{done.stdout}")
    return done.stdout


def main():
    build, version, compiler, *link = sys.argv[1:]
    source = os.path.dirname(os.path.abspath(__file__))
    with tempfile.TemporaryDirectory() as folder:
        prefix = os.path.join(folder, "usr")
        run("cmake", "--install", build, "--prefix", prefix, "--component", "development")
        flags = " ".join(link)
        run("cmake", "-S", source, "-B", os.path.join(folder, "build"), f"-DCMAKE_PREFIX_PATH={prefix}",
            f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_EXE_LINKER_FLAGS={flags}")
        run("cmake", "--build", os.path.join(folder, "build"))
        answer = run(os.path.join(folder, "build", "consumer"))
        assert answer == "Dear Ada\n", answer

        libraries = next(os.path.join(path, "pkgconfig") for path, folders, _ in os.walk(prefix) if "pkgconfig" in folders)
        environment = dict(os.environ, PKG_CONFIG_PATH=libraries)
        found = run("pkg-config", "--modversion", "velmor", env=environment).strip()
        assert found == version, found
        options = run("pkg-config", f"--define-variable=prefix={prefix}", "--static", "--cflags", "--libs", "velmor",
                      env=environment).split()
        program = os.path.join(folder, "with-pkg-config")
        run(compiler, os.path.join(source, "consumer.cpp"), "-o", program, *options, *link)
        assert run(program) == "Dear Ada\n"


main()
