"""translations_test.py SOURCE: faults put into a copy of the tools; scripts/check-translations must report each."""
import pathlib
import shutil
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(sys.argv[1])
CATALOGUE, CODE = "tools/messages/po/de.po", "tools/midisetup/ListCommands.cpp"
# In which file, what stands there, what is put in its place, what is reported.
FAULTS = [
    (CODE, 'Message("There are no compatible surfaces.")', 'Message("Nothing is here.")', "not translated: Nothing is"),
    (CODE, 'Message("There are no compatible surfaces.")', 'Message("Nothing is here.")', "no text of the code: There"),
    (CODE, 'Message("There are no compatible surfaces.")', '"There are no good ones."', "not marked for translation: T"),
    (CATALOGUE, 'msgstr "%1 und %2 schließen', 'msgstr "%1 und %1 schließen', "argument 2 doesn't exist"),
    (CATALOGUE, 'msgid "%1 excludes %2"', '#, fuzzy\nmsgid "%1 excludes %2"', "fuzzy: %1 excludes %2"),
    (CATALOGUE, 'msgstr[1] "und %1 weitere"\n', "", "plural"),
]


def main():
    for number, (path, old, new, report) in enumerate(FAULTS):
        with tempfile.TemporaryDirectory() as folder:
            copy = pathlib.Path(folder)
            for part in ("tools", "scripts", "Platform/CoreMIDI"):
                shutil.copytree(SOURCE / part, copy / part)
            text = (copy / path).read_text()
            assert old in text, (path, old)
            (copy / path).write_text(text.replace(old, new))
            check = subprocess.run([copy / "scripts/check-translations"], capture_output=True, text=True, check=False)
            if check.returncode == 0 or report not in check.stdout:
                sys.exit(f"fault {number} was not reported: {check.stdout}{check.stderr}")


main()
