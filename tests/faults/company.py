# Many programs that work on one database at once.
import concurrent.futures
import sqlite3
import time

from studio import Presser, Studio, expect

LONGEST_WAIT = 14  # a lock is waited for 5 seconds; the rest is for a busy machine


def writers(rig):
    studio, names = Studio(rig), [f"Device {number}" for number in range(10)]
    for program in [studio.start("add", "external", name) for name in names]:
        errors = program.communicate()[1]
        expect(program.returncode == 0, "when many programs make the database:", errors)
    expect(len(studio.sql("SELECT 1 FROM objects WHERE owner IS NULL")) == len(names), "a device is missing")

    studio, names, end = Studio.demo(rig), ("HUI", "Left Extender", "SAC-2K"), time.monotonic() + rig.count(5, 180)
    pressers = [Presser(studio, surface) for surface in range(4)]
    with concurrent.futures.ThreadPoolExecutor() as threads:
        counts = list(threads.map(lambda name: connect_and_set(studio, name, end), names))
    confirmed = sum(presser.end() for presser in pressers)
    expect(confirmed > 100, "too few to tell:", confirmed)
    cables = studio.sql(
        "SELECT length(value) / 4 FROM properties WHERE key = 'connUniqueID' AND typeof(value) = 'blob'")
    expect(cables == [(3,), (3,)], "of 3 devices connected to a port at once are there:", cables)
    for name, count in zip(names, counts):
        expect(studio.do("get", name, "last") == f"{count}\n", name, "lacks the change", count)
    studio.expect_sound()
    return f"10 first starts at once; of {confirmed + sum(counts)} changes that 4 open and 3 repeated programs " \
           "confirmed at once, none lost"


def connect_and_set(studio, name, end):
    # Programs one after another that change one list with others, and each a number of its own.
    count = 0
    while time.monotonic() < end:
        count += 1
        if count > 1:
            studio.do("disconnect", "MCU Pro USB:Port 4", name)
        studio.do("connect", "MCU Pro USB:Port 4", name)
        studio.do("set", name, "last", str(count))
    return count


def locks(rig):
    studio = Studio.demo(rig)
    (studio.folder / "other.json").write_text(studio.do("export").replace("Velt", "Other"))
    changes = [("set", "HUI", "label", "x"), ("place", "HUI", "1", "1"), ("add", "external", "New"),
               ("remove", "HUI"), ("connect", "Desk Interface:Port 4", "HUI"), ("import", "other.json", "--yes"),
               (rig.press_ok, "all", "3")]
    reads = [("list",), ("export",), ("surfaces",)]
    before, count = studio.state(), 0
    for refused, allowed, mode in ((changes, reads, "NORMAL"),
                                   (changes + reads + [("doctor", "--repair")], [], "EXCLUSIVE")):
        holder = sqlite3.connect(studio.file, isolation_level=None)
        holder.execute(f"PRAGMA locking_mode={mode}")
        holder.execute("BEGIN IMMEDIATE")
        start = time.monotonic()
        for is_refused, command, program in [(command in refused, command, studio.start(*command))
                                             for command in refused + allowed]:
            said = b"".join(program.communicate(timeout=60)).decode()
            expect(bool(program.returncode) == is_refused and ("lock" in said) == is_refused, *command, mode, said)
            count += 1
        expect(time.monotonic() - start < LONGEST_WAIT, "waited", time.monotonic() - start, "seconds", mode)
        holder.close()
        expect(studio.state() == before, "something was stored in spite of the lock", mode)
    return f"{count} programs at locked databases, all ended within {LONGEST_WAIT} s, nothing half stored"


def repair(rig):
    studio, rounds = Studio.demo(rig), rig.count(12, 300)
    pressers = [Presser(studio, surface) for surface in (0, 1)]
    for number in range(rounds):
        studio.sql("INSERT OR REPLACE INTO properties VALUES(1, 'half', 1.5)")
        before, deadline = [presser.confirmed() for presser in pressers], time.monotonic() + 20
        while any(presser.confirmed() <= past for presser, past in zip(pressers, before)):
            expect(time.monotonic() < deadline, "a writer stands still before repair", number, before)
            time.sleep(0.002)
        said = studio.run("doctor", "--repair").said
        expect("was set aside" in said and "1 entry made no sense" in said, "repair", number, said)
    aside = [name for name in map(str, studio.folder.glob("*.damaged-*")) if name[-1].isdigit()]
    expect(len(aside) == rounds, "of", rounds, "files were set aside:", aside)
    confirmed = sum(presser.end() for presser in pressers)
    studio.expect_sound()
    return f"{rounds} repairs beside 2 programs that confirmed {confirmed} changes, none lost"


SCENES = (writers, locks, repair)
