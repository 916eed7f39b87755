"""A studio in a folder of its own, the programs that work on it, and what must hold whatever befell them."""
import os
import pathlib
import random
import re
import shutil
import sqlite3
import subprocess
import tempfile

DATABASE = "objects.sqlite3"
BACKUP = "backup.json"
SET_ASIDE = re.compile(re.escape(DATABASE) + r"\.damaged-[-0-9]+$")
# What a program that was killed may leave: the log, an export that was not finished; and a disk that fails.
LEFTOVERS = re.compile(re.escape(DATABASE) + r"(\.repair)?-(wal|shm)$|" + re.escape(BACKUP) + r"\.new-\d+$")
KILLED = -9


class Failed(Exception):
    pass


def expect(holds, *what):
    if not holds:
        raise Failed(" ".join(str(part) for part in what))


class Rig:
    """The programs under test, the scratch folder, and how much is tried."""

    def __init__(self, midisetup, press_ok, faults, is_long, seed):
        self.midisetup, self.press_ok, self.faults = midisetup, press_ok, faults
        self.is_long, self.random = is_long, random.Random(seed)
        # A file system in memory spares the disk; nothing here depends on which it is.
        memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        self.scratch = tempfile.TemporaryDirectory(prefix="faults-", dir=memory)

    def count(self, short, whole):
        return whole if self.is_long else short

    def folder(self):
        return pathlib.Path(tempfile.mkdtemp(dir=self.scratch.name))


class Studio:
    """A folder with the database, a link by which programs know it, and an export of it."""

    def __init__(self, rig, folder=None):
        self.rig, self.folder = rig, folder or rig.folder()
        self.file = self.folder / DATABASE
        self.link = self.folder / "studio.sqlite3"

    @classmethod
    def demo(cls, rig):
        studio = cls(rig)
        studio.do("demo", KESTRIN_MIDI_DATABASE=str(studio.file))
        studio.link.symlink_to(DATABASE)
        studio.do("surfaces")
        studio.do("export", BACKUP)
        return studio

    def copy(self):
        folder = self.rig.folder() / "copy"
        shutil.copytree(self.folder, folder, symlinks=True)
        return Studio(self.rig, folder)

    def drop(self):
        shutil.rmtree(self.folder)

    # Running

    def start(self, *words, fault=None, at=0, **environment):
        """A program that begins to work on it: midisetup, where the first word names no other."""
        words = [word if isinstance(word, str) else str(word) for word in words]
        variables = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "LC_ALL": "C.UTF-8",
                     "KESTRIN_MIDI_DATABASE": str(self.link if self.link.is_symlink() else self.file)}
        if fault or "FAULT_LOG" in environment:
            variables |= {"LD_PRELOAD": self.rig.faults, "FAULT": fault or "", "FAULT_AT": str(at)}
        options = {name: environment.pop(name) for name in list(environment) if name.islower()}
        variables |= environment
        if words[0] != self.rig.press_ok:
            words.insert(0, self.rig.midisetup)
        return subprocess.Popen(words, **({"stdin": subprocess.PIPE, "stdout": subprocess.PIPE,
                                           "stderr": subprocess.PIPE, "cwd": self.folder} | options),
                                env={name: value for name, value in variables.items() if value is not None})

    def run(self, *words, text=b"", seconds=60, **rest):
        program = self.start(*words, **rest)
        try:
            out, errors = program.communicate(text, timeout=seconds)
        except subprocess.TimeoutExpired:
            program.kill()
            program.wait()
            raise Failed("does not end:", *words) from None
        return subprocess.CompletedProcess(words, program.returncode, (out or b"").decode(errors="replace"),
                                           (errors or b"").decode(errors="replace"))

    def do(self, *words, **rest):
        done = self.run(*words, **rest)
        expect(done.returncode == 0, *words, "ended with", done.returncode, done.stderr)
        return done.stdout

    def press_ok(self, *words, **rest):
        return self.start(self.rig.press_ok, *words, **rest)

    def sql(self, *statements):
        """Runs statements in the file itself, and answers the last one's rows."""
        connection = sqlite3.connect(self.file, isolation_level=None)
        try:
            return [connection.execute(statement).fetchall() for statement in statements][-1]
        finally:
            connection.close()

    # What is there

    def names(self):
        return {path.name for path in self.folder.iterdir()}

    def state(self):
        """All that programs get to see: the studio, or the refused file's bytes; and the older export."""
        done = self.run("export")
        expect(done.returncode in (0, 1), "export ended with", done.returncode, done.stderr)
        backup = self.folder / BACKUP
        return (done.stdout if done.returncode == 0 else self.file.read_bytes(),
                backup.read_text() if backup.exists() else None)

    def damage(self):
        """What a reader of its own finds wrong in the file."""
        found = self.sql("PRAGMA integrity_check")
        return [] if found == [("ok",)] and not self.sql("PRAGMA foreign_key_check") else found

    def settings(self, surface):
        """The number that press-ok stored for a surface."""
        rows = dict(self.sql("SELECT substr(key, -3), value FROM properties JOIN objects ON object = id "
                             f"WHERE unique_id = {surface} AND key LIKE 'com_velt_sorvex_control_surface_%'"))
        return rows["pid"] + 128 * ((rows["pos"] - rows["pid"]) % 128)
