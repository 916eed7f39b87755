"""Many programs that work on one database at once."""
import concurrent.futures
import contextlib
import re
import sqlite3
import time

from studio import Studio, expect

SURFACES = ("HUI", "SAC-2K", "Mackie Control", "Left Extender", "Right Extender")
# A lock is waited for 5 seconds; the rest is for a busy machine.
LONGEST_WAIT = 14


class Presser:
    """A program that stays open and in which Ok is pressed again and again for one surface."""

    def __init__(self, studio, surface):
        self.studio = studio
        self.said = studio.folder.parent / f"{studio.folder.name}-said-{surface}"
        with self.said.open("w") as said:
            self.program = studio.press_ok(str(surface), "1000000", stdout=said)

    def confirmed(self):
        """The last number that it told; a line cut short is none."""
        with self.said.open("rb") as said:
            said.seek(max(0, self.said.stat().st_size - 100))
            numbers = re.findall(rb"stored (\d+)\n", said.read())
        return int(numbers[-1]) if numbers else 0

    def end(self):
        """Kills it; answers how often it was confirmed, all of which must be there."""
        ended = self.program.poll()
        expect(ended is None, "a writer ended:", ended, ended is not None and self.program.stderr.read())
        self.program.kill()
        self.program.communicate()
        confirmed, stored = self.confirmed(), self.studio.settings(self.said.open().readline().split()[1])
        expect((stored - confirmed) % 16384 in (0, 1), "confirmed", confirmed, "but stored", stored)
        return confirmed


def writers(rig):
    studio = Studio(rig)
    kinds = ["interface"] * 5 + ["external"] * 5
    first = [studio.start("add", kind, f"{kind} {number}") for number, kind in enumerate(kinds)]
    for program in first:
        errors = program.communicate()[1]
        expect(program.returncode == 0, "many programs that make the database at once:", errors)
    expect(len(studio.sql("SELECT * FROM objects WHERE owner IS NULL")) == len(kinds), "a device is missing")

    studio = Studio.demo(rig)
    end = time.monotonic() + rig.count(6, 180)
    pressers = [Presser(studio, surface) for surface in range(4)]
    with concurrent.futures.ThreadPoolExecutor() as threads:
        lists = [threads.submit(connect_and_set, studio, name, end) for name in ("HUI", "Left Extender", "SAC-2K")]
        scans = threads.submit(scan, studio, end)
        counts = [one.result() for one in lists]
    confirmed = sum(presser.end() for presser in pressers)
    expect(confirmed > 100, "too few to tell:", confirmed)
    cables = studio.sql("SELECT length(value) / 4 FROM properties JOIN objects ON object = id WHERE "
                        "key = 'connUniqueID' AND type = 2 AND typeof(value) = 'blob'")
    expect(cables == [(3,)], "of 3 devices connected at once these are there:", cables)
    for name, count in zip(("HUI", "Left Extender", "SAC-2K"), counts):
        expect(studio.do("get", name, "last") == f"{count}\n", name, count)
    expect(not studio.damage(), studio.damage())
    return f"{len(kinds)} first starts at once; {len(pressers) + len(lists) + 1} programs at once, " \
           f"{confirmed + sum(counts)} confirmed changes and {scans.result()} scans, none lost"


def connect_and_set(studio, name, end):
    """Programs one after another that change one list with others, and each a number of its own."""
    count = 0
    while time.monotonic() < end or count == 0:
        count += 1
        studio.do("connect", "MCU Pro USB:Port 4", name)
        studio.do("set", name, "last", str(count))
        if time.monotonic() < end - 1:
            studio.do("disconnect", "MCU Pro USB:Port 4", name)
    return count


def scan(studio, end):
    count = 0
    while time.monotonic() < end:
        expect(studio.do("surfaces").count("unique ID") >= 6, "a surface is missing")
        count += 1
    return count


@contextlib.contextmanager
def lock(studio, *how):
    holder = sqlite3.connect(studio.file, isolation_level=None)
    for statement in how:
        holder.execute(statement)
    try:
        yield holder
    finally:
        holder.close()


def locks(rig):
    studio = Studio.demo(rig)
    (studio.folder / "other.json").write_text(studio.do("export").replace("Velt", "Other"))
    changes = [("set", "HUI", "label", "x"), ("place", "HUI", "1", "1"), ("add", "external", "New"),
               ("remove", "HUI"), ("connect", "Desk Interface:Port 4", "HUI"), ("import", "other.json", "--yes"),
               ("rename", "HUI", "Old"), (rig.press_ok, "all", "3")]
    reads = [("list",), ("export",), ("show", "HUI")]
    before, tried = studio.state(), 0
    everything = (*changes, *reads, ("surfaces",), ("doctor", "--repair"))
    for refused, allowed, how in ((changes, reads, ("BEGIN IMMEDIATE",)),
                                  (everything, (), ("PRAGMA locking_mode=EXCLUSIVE", "BEGIN IMMEDIATE"))):
        with lock(studio, *how), concurrent.futures.ThreadPoolExecutor(len(everything)) as threads:
            for wanted, words in (1, refused), (0, allowed):
                for command, ended in zip(words, threads.map(lambda one: timed(studio, one), words)):
                    check_wait(command, how, wanted, *ended)
                    tried += 1
        expect(studio.state() == before, "something was stored in spite of", how)
    with lock(studio, "BEGIN IMMEDIATE") as holder:
        waiting = [studio.start(*command) for command in changes[:3]]
        time.sleep(1)
        holder.execute("COMMIT")
        for program in waiting:
            expect(program.communicate()[1] == b"" and program.returncode == 0, "does not wait for a lock")
    return f"{tried + len(waiting)} programs at locked databases, none longer than {LONGEST_WAIT} s, nothing half stored"


def timed(studio, command):
    start = time.monotonic()
    return studio.run(*command), time.monotonic() - start


def check_wait(command, how, wanted, ended, seconds):
    said = ended.stdout + ended.stderr
    expect(bool(ended.returncode) == bool(wanted) and (not wanted or "lock" in said), *command, "at", *how, "ends with",
           ended.returncode, said)
    expect(seconds < LONGEST_WAIT, *command, "waits", seconds, "seconds at", *how)


def repair(rig):
    studio = Studio.demo(rig)
    pressers = [Presser(studio, surface) for surface in (0, 1)]
    rounds = rig.count(12, 300)
    for number in range(rounds):
        studio.sql("INSERT OR REPLACE INTO properties VALUES(1, 'half', 1.5)")
        before = [presser.confirmed() for presser in pressers]
        deadline = time.monotonic() + 20
        while any(presser.confirmed() <= past for presser, past in zip(pressers, before)):
            expect(time.monotonic() < deadline, "a writer stands still in round", number, before)
            time.sleep(0.002)
        ended = studio.run("doctor", "--repair")
        expect("was set aside" in ended.stdout and "1 entry made no sense" in ended.stdout, number, ended.stdout)
        for path in studio.folder.glob("*.damaged-*"):
            path.unlink()
    confirmed = sum(presser.end() for presser in pressers)
    expect(not studio.damage(), studio.damage())
    return f"{rounds} repairs beside {len(pressers)} programs that confirmed {confirmed} changes, none lost"


SCENES = (writers, locks, repair)
