#!/usr/bin/env python3
"""The installed program and its tools, as shells, readers of manuals and software centres meet them.

    installed_program.py SOURCE BUILD FOLDER VERSION
"""

import os
import pathlib
import pty
import re
import shutil
import subprocess
import sys
import unittest
import xml.etree.ElementTree

VERSION, FOLDER, BUILD, SOURCE = (sys.argv.pop() for _ in range(4))
FOLDER = pathlib.Path(FOLDER)
SHARE = FOLDER / "installed/share"
PROGRAMS = ("sorvex-mackie-setup", "midisetup", "surface-ports")
ENVIRONMENT = {"PATH": f"{FOLDER}/installed/bin:/usr/bin:/bin", "HOME": str(FOLDER), "TERM": "dumb",
               "LANG": "C.UTF-8", "KESTRIN_MIDI_DATABASE": str(FOLDER / "objects.sqlite3")}


def output_of(*command):
    return subprocess.run(command, env=ENVIRONMENT, cwd=FOLDER, check=True, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True).stdout


def setUpModule():
    shutil.rmtree(FOLDER, ignore_errors=True)
    FOLDER.mkdir()
    output_of("cmake", "--install", BUILD, "--prefix", FOLDER / "installed", "--component", "program")
    output_of("midisetup", "demo")
    output_of("midisetup", "add", "interface", "Bühnen Box")
    (FOLDER / "studio.json").touch()


def completions(*words):
    return [line.split("\t")[0] for line in output_of("midisetup", "--complete", *words).splitlines()]


def table_of_midisetup(*command):
    """The names of all its commands and options."""
    yield from completions(*command, "--")
    for name in completions(*command, "") if len(command) < 2 else ():
        if re.fullmatch("[a-z-]+", name):
            yield name
            yield from table_of_midisetup(*command, name)


class Programs(unittest.TestCase):
    def test_explain_themselves_without_a_display_and_in_a_manual(self):
        for name in PROGRAMS:
            self.assertEqual(output_of(name, "--version"), f"{name} {VERSION}\n")
            page = SHARE / f"man/man1/{name}.1"
            self.assertEqual(output_of("mandoc", "-T", "lint", "-W", "warning", page), "")
            text = re.sub(".\b", "", output_of("mandoc", "-T", "utf8", page))
            told = set(re.findall("--[a-z]+", output_of(name, "--help")))
            if name == "midisetup":
                told.update(table_of_midisetup())
                self.assertIn("connect-mixer", told)
            self.assertEqual({word for word in told if word not in text}, set())
        self.assertIn("Controller", output_of("env", "LANGUAGE=de", "sorvex-mackie-setup", "--help"))


class Desktop(unittest.TestCase):
    def test_finds_the_program_and_its_releases(self):
        entry = SHARE / "applications/sorvex-mackie-setup.desktop"
        output_of("desktop-file-validate", entry)
        values = dict(re.findall("^(Exec|Icon)=(.*)$", entry.read_text(), re.M))
        self.assertIn(values["Exec"], PROGRAMS)
        self.assertTrue((SHARE / f"icons/hicolor/scalable/apps/{values['Icon']}.svg").exists())

        info = SHARE / "metainfo/com.velt.sorvexmackiesetup.metainfo.xml"
        self.assertIn("Validation was successful",
                      output_of("appstreamcli", "validate", "--pedantic", "--no-net", "--no-color", info))
        component = xml.etree.ElementTree.parse(info)
        changelog = (pathlib.Path(SOURCE) / "CHANGELOG.md").read_text()
        releases = [(one.get("version"), one.get("date")) for one in component.iter("release")]
        self.assertEqual(releases, re.findall(r"^## (\S+) - (\S+)$", changelog, re.M))
        self.assertEqual(releases[0][0], VERSION)
        items = re.findall(r"^- (.*(?:\n  .*)*)", changelog, re.M)
        self.assertEqual([one.text for one in component.iter("li")][-len(items):],
                         [re.sub(r"\s+", " ", item).replace("`", "") for item in items])


class Completion(unittest.TestCase):
    TYPED = {
        r"surf": "surfaces",
        r"list --j": "list|--json",
        r"place Left": "place|Left Extender",
        r"place 'Left": "place|Left Extender",
        r"connect Büh": "connect|Bühnen Box:Port 1",
        r"connect Bühnen\ Box:P": "connect|Bühnen Box:Port 1",
        r"connect Bühnen\ Box\:P": "connect|Bühnen Box:Port 1",
        r"""connect "Bühnen Box:P""": "connect|Bühnen Box:Port 1",
        r"export --to inst": "export|--to|installed",
        r"import stu": "import|studio.json",
    }

    def complete(self, shell, preparation):
        """Types each line and the Tab key in that shell; a stand-in for the tool prints the words it gets."""
        process, terminal = pty.fork()
        if process == 0:
            os.chdir(FOLDER)
            os.execvpe(shell[0], shell, ENVIRONMENT)
        stand_in = "midisetup() { (IFS='|'; echo \"<$*>\"); }"
        os.write(terminal, f"{preparation}; {stand_in}; echo rea''dy\n".encode())
        self.read(terminal, r"ready\r?\n")
        for typed, words in self.TYPED.items():
            os.write(terminal, f"midisetup {typed}\t\n".encode())
            got = self.read(terminal, r"<([^<>$]*?)/?>\s*?\r?\n")
            self.assertEqual(got, words, typed)
        os.close(terminal)
        os.waitpid(process, 0)

    def read(self, terminal, wanted):
        """Waits for what is wanted, and answers its first group."""
        seen = b""
        while not (found := re.search(wanted, seen.decode(errors="replace"))):
            try:
                seen += os.read(terminal, 4096)
            except OSError:
                self.fail(seen.decode())
        return found[found.re.groups]

    def test_of_bash(self):
        self.complete(["bash", "--noprofile", "--norc", "-i"], "source /usr/share/bash-completion/bash_completion; "
                      f"source {SHARE}/bash-completion/completions/midisetup")

    def test_of_zsh(self):
        self.complete(["zsh", "-f", "-i"], f"fpath=({SHARE}/zsh/site-functions $fpath); "
                      "autoload -U compinit; compinit -u -D")

    def test_of_fish(self):
        file = SHARE / "fish/vendor_completions.d/midisetup.fish"
        for typed, words in self.TYPED.items():
            offered = output_of("fish", "--no-config", "-c", f"source {file}; complete -C {repr('midisetup ' + typed)}")
            self.assertIn(words.split("|")[-1].split(":")[-1], offered.replace("\\ ", " "))


if __name__ == "__main__":
    unittest.main()
