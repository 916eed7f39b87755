"""languages_test.py MIDISETUP SURFACE_PORTS: what the tools say in the language of their user."""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unicodedata
import unittest

MIDISETUP, SURFACE_PORTS = sys.argv[1:3]
LANGUAGES = [path.name for path in (pathlib.Path(MIDISETUP).parent / "../share/locale").iterdir()]


def columns(text):
    return sum(2 if unicodedata.east_asian_width(letter) in "WF" else 1 for letter in text)


class Languages(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.database = pathlib.Path(self.folder.name) / "studio (%2) %1" / "objects.sqlite3"

    def run_tool(self, *words, program=MIDISETUP, database=None, **language):
        kept = {name: os.environ[name] for name in os.environ if not name.startswith(("LC_", "LANG"))}
        environment = {**kept, **(language or {"LANGUAGE": "de"}), "KESTRIN_MIDI_DATABASE": database or self.database}
        run = subprocess.run([program, *words], env=environment, capture_output=True, text=True, check=False)
        return run.stdout + run.stderr

    def test_finds_the_language_as_gettext_does_also_without_its_locale(self):
        german, english = "Es gibt keine MIDI-Geräte", "There are no MIDI devices"
        for language, expected in [({"LANGUAGE": "de"}, german), ({"LANG": "de_AT.UTF-8"}, german),
                                   ({"LC_ALL": "C.UTF-8", "LANGUAGE": "xx:de"}, german),
                                   ({"LC_MESSAGES": "de_DE", "LANG": "ja_JP.UTF-8"}, german),
                                   ({"LC_ALL": "C", "LANGUAGE": "de"}, english), ({"LANG": "xx_YY"}, english)]:
            with self.subTest(language):
                self.assertIn(expected, self.run_tool("list", **language))

    def test_counts_in_the_forms_of_the_language(self):
        for number in range(12):
            self.assertIn("hinzugefügt", self.run_tool("add", "external", f"Desk {number}", "--ports", "0"))
            if number == 10:
                self.assertIn("\n  und 1 weiteres\n", self.run_tool("show", "desk"))
        self.assertIn("\n  und 2 weitere\n", self.run_tool("show", "desk"))

    def test_tells_in_the_language_what_the_service_and_the_parser_say_in_english(self):
        self.database.parent.mkdir()
        self.database.write_text("this is no database, and long enough to be seen so")
        self.assertIn(f"Die MIDI-Datenbank {self.database} ist beschädigt (file is not a database).\n",
                      self.run_tool("list"))
        folder = pathlib.Path("/proc/none")
        self.assertIn(f"Der Ordner {folder} für die MIDI-Datenbank kann nicht angelegt werden (",
                      self.run_tool("list", database=folder / "objects.sqlite3"))
        for words, expected in [(["place", "a", "1", "128"], "POSITION: der Wert 128 liegt nicht zwischen 0 und 127\n"),
                                (["list", "a", "b"], "nicht erwartet: a b\n"),
                                (["export", "--to", "x"], "--to braucht auch --ardour\n"),
                                (["set"], "OBJECT fehlt\nAufruf: midisetup set OBJECT")]:
            self.assertIn(expected, self.run_tool(*words))

    def test_leaves_what_programs_read_as_it_is(self):
        self.run_tool("demo")
        self.run_tool("disconnect", "Rack Interface:Port 2")
        for words in (["doctor", "--json"], ["list", "--json"], ["export"], ["show", "HUI", "--json"]):
            told = self.run_tool(*words)
            self.assertTrue(json.loads(told))
            self.assertEqual(told, self.run_tool(*words, LC_ALL="C"))

    def test_explains_every_command_in_columns_in_every_language(self):
        self.assertGreater(len(LANGUAGES), 0)
        english = self.run_tool("--help", LANGUAGE="en")
        for language in LANGUAGES:
            program_help = self.run_tool("--help", LANGUAGE=language)
            commands = [line.split()[0] for line in program_help.split(":\n")[2].splitlines() if line[:3].strip()]
            self.assertIn("doctor", commands)
            for command in commands:
                told = self.run_tool(command, "--help", LANGUAGE=language)
                self.assertNotIn(told.splitlines()[0], english)
                options = told[:told.index("\n\n", told.index("  -h,--help"))].splitlines()
                for option in options:
                    _, *description = re.split(" {2,}", option.strip())
                    if description:
                        self.assertEqual(columns(option[:option.rindex(description[-1])]), 30, option)
            usage = self.run_tool("--help", program=SURFACE_PORTS, LANGUAGE=language)
            self.assertNotIn("keeps, for each", usage)
            self.assertIn("surface-ports --list ", usage)


unittest.main(argv=sys.argv[:1])
