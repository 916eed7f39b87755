# A studio in a folder of its own, the programs that work on it, and what must hold whatever befell them.
import collections
import contextlib
import os
import pathlib
import random
import re
import resource
import shutil
import sqlite3
import subprocess
import tempfile
import time

BACKUP = "backup.json"
Ended = collections.namedtuple("Ended", "code said errors")


class Failed(Exception):
    pass


def expect(holds, *what):
    if not holds:
        raise Failed(" ".join(map(str, what)))


@contextlib.contextmanager
def during(*what):
    # What fails inside tells where that was.
    try:
        yield
    except Failed as failure:
        raise Failed(" ".join(map(str, what)) + f": {failure}") from None


class Rig:
    # The programs under test, the scratch folder, and how much is tried.

    def __init__(self, build, is_long, seed):
        self.midisetup, self.press_ok, self.disk_faults = (os.path.join(os.path.abspath(build), name) for name in (
            "tools/midisetup/midisetup", "tests/faults/press-ok", "tests/faults/libdisk-faults.so"))
        self.random, self.pressers = random.Random(seed), []
        self.count = lambda short, whole: whole if is_long else short
        # A file system in memory spares the disk. No fault of ours shall fill it.
        memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 28, 1 << 28))
        self.scratch = tempfile.TemporaryDirectory(prefix="faults-", dir=memory)

    def folder(self):
        return pathlib.Path(tempfile.mkdtemp(dir=self.scratch.name))


class Studio:
    # A folder with the database, a link by which programs know it, and an export of it.

    def __init__(self, rig, folder=None):
        self.rig, self.folder = rig, folder or rig.folder()
        self.file, self.link = self.folder / "objects.sqlite3", self.folder / "studio.sqlite3"

    @classmethod
    def demo(cls, rig):
        studio = cls(rig)
        studio.do("demo")
        studio.link.symlink_to(studio.file.name)
        studio.do("surfaces")
        studio.do("export", BACKUP)
        return studio

    def copy(self):
        return Studio(self.rig, shutil.copytree(self.folder, self.rig.folder() / "copy", symlinks=True))

    def drop(self):
        shutil.rmtree(self.folder)

    def start(self, *words, before="", options=None, **environment):
        # A program that begins to work on it: midisetup, or the one that the first word names; `before` it a line for
        # the shell.
        command = [*[self.rig.midisetup][words[0] == self.rig.press_ok:], *words]
        variables = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "LC_ALL": "C.UTF-8",
                     "KESTRIN_MIDI_DATABASE": str(self.link if self.link.is_symlink() else self.file), **environment}
        if any(name.startswith("FAULT") for name in environment):
            variables["LD_PRELOAD"] = self.rig.disk_faults
        pipes = dict.fromkeys(("stdin", "stdout", "stderr"), subprocess.PIPE)
        return subprocess.Popen(["sh", "-c", before + '; exec "$@"', "sh", *command] if before else command,
                                **pipes | {"cwd": self.folder} | (options or {}),
                                env={name: value for name, value in variables.items() if value is not None})

    def run(self, *words, text=b"", seconds=60, **rest):
        program = self.start(*words, **rest)
        try:
            said = [output.decode(errors="replace") for output in program.communicate(text, timeout=seconds)]
        except subprocess.TimeoutExpired:
            program.kill()
            raise Failed(f"does not end: {words} {rest}") from None
        return Ended(program.returncode, *said)

    def do(self, *words, **rest):
        ended = self.run(*words, **rest)
        expect(ended.code == 0, *words, ended)
        return ended.said

    def sql(self, *statements):
        # Runs statements in the file itself, and answers the last one's rows.
        connection = sqlite3.connect(self.file, timeout=60, isolation_level=None)
        try:
            return [connection.execute(statement).fetchall() for statement in statements][-1]
        finally:
            connection.close()

    def state(self):
        # All that programs get to see: the studio, or the refused file's bytes; and the older export.
        ended, backup = self.run("export"), self.folder / BACKUP
        expect(ended.code in (0, 1), "export", ended)
        return [ended.said if ended.code == 0 else self.file.read_bytes(), backup.exists() and backup.read_text()]

    def expect_sound(self):
        # A reader of its own finds nothing wrong in the file.
        expect(self.sql("PRAGMA integrity_check") == [("ok",)], "the file is damaged")
        expect(not self.sql("PRAGMA foreign_key_check"), "something belongs to nothing")


class Presser:
    # A program that stays open and in which Ok is pressed again and again for one surface.

    def __init__(self, studio, surface, first=1):
        self.studio, self.said = studio, studio.rig.folder() / "said"
        with self.said.open("w") as said:
            self.program = studio.start(studio.rig.press_ok, str(surface), "9000000", str(first),
                                        options={"stdout": said})
        studio.rig.pressers.append(self.program)
        while not self.confirmed() and self.program.poll() is None:
            time.sleep(0.001)

    def confirmed(self):
        # The last number that it told, or 0; a line cut short is none.
        with self.said.open("rb") as said:
            said.seek(max(0, self.said.stat().st_size - 100))
            return int((re.findall(rb"stored (\d+)\n", said.read()) or [0])[-1])

    def end(self):
        # Kills it, and answers the last number that it confirmed, which must be there, or the next.
        ended = self.program.poll()
        self.program.kill()
        errors = self.program.communicate()[1]
        expect(ended is None and not errors, "a writer", ended, "says", errors)
        surface = self.said.read_text().split()[1]
        parts = dict(self.studio.sql("SELECT substr(key, -3), value FROM properties JOIN objects ON object = id "
                                     f"WHERE unique_id = {surface} AND key LIKE '%surface_group%'"))
        stored = parts["pid"] + 128 * ((parts["pos"] - parts["pid"]) % 128)
        expect((stored - self.confirmed()) % 16384 in (0, 1), "confirmed", self.confirmed(), "but stored", stored)
        return self.confirmed()
