#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""samples.py SOURCE BUILD DOCUMENT: runs what the document shows.

Its fenced blocks are run in their order, in one folder with a database of its own:
  sh      in a shell; the block fails where a command does
  c       compiled without a warning; a program is run
  text    is what the block before it printed; "…" stands for any text
Other languages are run where a comment says; a block without one is a picture or what a person types.
A comment above a block says what no reader needs to see: "before: COMMAND" is run first, "answers N"
is the expected exit status, and "run by FILE" names the test where the commands are run that need
hardware, root or another program; it must hold their words.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

SOURCE, BUILD, DOCUMENT = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
INCLUDES = ["-I" + str(SOURCE / "Platform/include")]
WARNINGS = ["-std=c11", "-D_POSIX_C_SOURCE=200809L", "-Wall", "-Wextra", "-Wno-unused-function", "-Werror"]


def blocks(text):
    """(line, language, comments above, content) of each fenced block."""
    comments, inside, previous_is_blank = [], None, True
    for number, line in enumerate(text.splitlines(), 1):
        if inside is not None:
            if line == "```":
                yield inside[0], inside[1], comments, "".join(text + "\n" for text in inside[2])
                comments, inside = [], None
            else:
                inside[2].append(line)
        elif line.startswith("```"):
            inside = (number, line[3:], [])
        elif line.startswith("    ") and previous_is_blank:
            raise SystemExit(f"{DOCUMENT.name}:{number}: a sample stands in a fence that names its language")
        elif comment := re.fullmatch(r"<!-- (.*) -->", line):
            comments.append(comment[1])
        previous_is_blank = not line


class Reader:
    def __init__(self, folder):
        self.folder = folder
        programs = ("tools/midisetup", "tools/surface-ports", "examples")
        self.environment = dict(os.environ, KESTRIN_MIDI_DATABASE=str(folder / "objects.sqlite3"), HOME=str(folder),
                                PATH=":".join([*(str(BUILD / name) for name in programs), os.environ["PATH"]]))
        self.printed = ""

    def run(self, command, answer=0):
        done = subprocess.run(command, cwd=self.folder, env=self.environment, text=True, capture_output=True)
        self.printed = done.stdout
        if done.returncode != answer:
            raise AssertionError(f"answered {done.returncode}, not {answer}:\n{done.stdout}{done.stderr}")

    def shell(self, content, answer=0):
        self.run(["bash", "-euc", content], answer)

    def compiled(self, content):
        program, sample = self.folder / "sample", self.folder / "sample.c"
        sample.write_text(content)
        command = [os.environ.get("CC", "cc"), *WARNINGS, *INCLUDES, str(sample)]
        if " main(" not in content:
            self.run([*command, "-fsyntax-only"])
            return
        libraries = subprocess.run(["pkg-config", "--libs", "icu-uc", "icu-i18n", "sqlite3", "alsa"], check=True,
                                   text=True, capture_output=True).stdout.split()
        library = next(BUILD.rglob("libkestrin-midi.a"))
        self.run([*command, str(library), *libraries, "-lstdc++", "-lm", "-o", str(program)])
        self.program = str(program)

    def compared(self, content):
        expected = ".*".join(re.escape(part) for part in content.split("…"))
        if not re.fullmatch(expected, self.printed, re.DOTALL):
            raise AssertionError(f"printed:\n{self.printed}")


def run_elsewhere(place, content):
    if not (SOURCE / place).exists():
        raise AssertionError(f"there is no {place}")
    there = (SOURCE / place).read_text()
    for line in filter(None, (line.split("#")[0].strip() for line in content.splitlines())):
        words = [word for word in re.findall(r"[\w./:-]+", line) if not word.startswith(("/", "."))][:2]
        if not all(word in there for word in words):
            raise AssertionError(f"{place} does not run: {line}")


def take(reader, language, comments, content):
    notes = dict(note.split(" ", 1) for note in (c.replace("run by", "run-by").replace("before:", "before")
                                                 for c in comments) if " " in note)
    if "run-by" in notes:
        return run_elsewhere(notes["run-by"], content)
    if "before" in notes:
        reader.shell(notes["before"])
    if language == "sh":
        return reader.shell(content, int(notes.get("answers", 0)))
    if language == "c":
        return reader.compiled(content)
    if language == "text":
        if getattr(reader, "program", None):
            reader.run([reader.program])
            reader.program = None
        return reader.compared(content)
    raise AssertionError(f"nothing runs a sample in '{language}'")


def main():
    count = 0
    with tempfile.TemporaryDirectory(prefix="kestrin-docs-") as folder:
        reader = Reader(pathlib.Path(folder))
        for line, language, comments, content in blocks(DOCUMENT.read_text()):
            if not language:
                continue
            try:
                take(reader, language, comments, content)
            except AssertionError as failure:
                raise SystemExit(f"{DOCUMENT.name}:{line}: {failure}") from None
            count += 1
    print(f"{DOCUMENT.name}: {count} samples")


main()
