#!/usr/bin/env python3
"""Shows that check_strings finds what it is there to find."""

import pathlib
import tempfile
import unittest

from check_strings import check


class CheckStrings(unittest.TestCase):
    def problems(self, code, keys):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            (root / "app/Resources").mkdir(parents=True)
            (root / "app/Code.cpp").write_text(code)
            texts = "".join(f'<TEXT name="{key}"/>' for key in keys)
            (root / "app/Resources/LocalizableStrings.xml").write_text(f"<r><XSET>{texts}</XSET></r>")
            return check(root)

    def test_takes_literals_apart(self):
        code = 'f("http://x", LookupString("One\\n" // first\n  "two"), LookupString( "\\"q\\""));'
        self.assertEqual(self.problems(code, ["One&#10;two", "&quot;q&quot;"]), [])

    def test_finds_missing_unused_and_double_keys(self):
        self.assertEqual(self.problems('LookupString("a");\nLookupString("b");', ["a"]),
                         ["app/Code.cpp:2: 'b' is missing from app/Resources/LocalizableStrings.xml"])
        unused = self.problems('LookupString("a");', ["a", "b"])
        self.assertEqual(unused, ["app/Resources/LocalizableStrings.xml: nothing asks for 'b'"])
        self.assertIn("twice", self.problems('LookupString("a");', ["a", "a"])[0])

    def test_asks_what_an_indirect_key_is(self):
        self.assertIn("no literal", self.problems("LookupString(caption);", [])[0])
        told = 'Add("Ok");\n// Keys: "Ok"\nLookupString(caption);'
        self.assertEqual(self.problems(told, ["Ok"]), [])
        self.assertIn("missing", self.problems(told, [])[0])
        self.assertIn("no literal of this file",
                      self.problems('LookupString(caption); // Keys: "Ok"', ["Ok"])[0])

    def test_passes_over_declarations_and_comments(self):
        self.assertEqual(self.problems('UString LookupString(const char* key);\n'
                                       '// LookupString("gone")\n', []), [])


if __name__ == "__main__":
    unittest.main()
