# Files, places and environments that nobody would have thought of.
import itertools
import os
import pwd
import re
import shutil
import sqlite3

from studio import BACKUP, Studio, during, expect

NOBODY = 65534
WORDS = re.compile(r"midisetup: .|The (MIDI )?(database|file|folder)|Problem")
UNESCAPED = re.compile("[\0-\x09\x0b-\x1f\x7f\u202a-\u202e\u2066\u2067]")


def for_nobody(studio, program):
    # The superuser may go everywhere, so that an ordinary user tries.
    for folder in (studio.rig.scratch.name, studio.folder):
        os.chmod(folder, 0o755)
    copy = studio.folder / os.path.basename(program)
    if not copy.exists():
        shutil.copy(program, copy)
    return {"user": NOBODY, "group": NOBODY, "executable": copy} if os.geteuid() == 0 else {}


def places(rig):
    studio = Studio.demo(rig)
    folder = studio.folder
    (folder / "loop").symlink_to("loop")
    os.mkfifo(folder / "pipe")
    shutil.copy(studio.file, folder / "read-only").chmod(0o444)
    (folder / "closed" / "folder").mkdir(parents=True)
    shutil.copy(studio.file, folder / "closed")
    (folder / "closed").chmod(0o000)
    programs, count = {program: for_nobody(studio, program) for program in (rig.midisetup, rig.press_ok)}, 0

    def everything():
        return {path: path.is_file() and path.read_bytes() for path in folder.rglob("*") if path.name != "loop"}
    before = everything()
    for place in ("loop", "loop/a", "closed/a", "closed/folder/a", "closed/" + studio.file.name, BACKUP + "/a", BACKUP,
                  "n" * 300, "n" * 300 + "/a", ".", "pipe", "read-only", "/dev/null", "/dev/full", "/proc/a"):
        for command in (("list",), ("set", "HUI", "label", "x"), ("doctor", "--repair"), (rig.press_ok, "0", "1")):
            ended = studio.run(*command, KESTRIN_MIDI_DATABASE=str(folder / place),
                               options=programs.get(command[0], programs[rig.midisetup]))
            expect(ended.code in (1, 3) and WORDS.search(ended.said + ended.errors), *command, "at", place, ended)
            expect(place != "read-only" or "can only be read" in ended.said + ended.errors, *command, ended)
            expect(everything() == before, *command, "at", place, "changed something")
            count += 1
    return f"{count} runs at places without a database, {environments(rig)} in odd environments, nothing lost"


def environments(rig):
    odd = ["export LC_ALL=xx_YY.none LANGUAGE=../../x", "export LC_ALL=%s%n TZ=%n", "unset HOME", "export PATH=",
           "mkdir gone; cd gone; rmdir ../gone", *(f"ulimit -n {most}" for most in range(4, 12)),
           *(f"ulimit -f {most}" for most in (0, 10, 40, 60, 80)), "trap '' XFSZ; ulimit -f 30",
           *(f"ulimit -v {most}000" for most in (50, 55, 60, 65, 70)),
           *("; ".join(f"exec {file}>&-" for file in files) for count in (1, 2, 3)
             for files in itertools.combinations(range(3), count))]
    studio = Studio.demo(rig)
    for number, line in enumerate(odd):
        with during(line):
            label, (_, older) = studio.do("get", "HUI", "label") if number else "", studio.state()
            ended = studio.run("set", "HUI", "label", str(number), before=line)
            # 127: the loader could not begin; -25: the limit's signal.
            expect(ended.code in (0, 1, 127, -25), ended)
            expect(studio.do("get", "HUI", "label") == (label if ended.code else f"{number}\n"), ended)
            ended = studio.run("export", BACKUP, before=line)
            now, newer = studio.state()
            expect(newer == (older if ended.code else now), "export", ended)
    studio.expect_sound()
    for home, data in ((None, "data"), ("home", None), ("home", "data"), ("", "")) if os.geteuid() == 0 else ():
        ended = studio.run("list", HOME=home, XDG_DATA_HOME=data, KESTRIN_MIDI_DATABASE="",
                           options=for_nobody(studio, rig.midisetup))
        expect(pwd.getpwuid(NOBODY).pw_dir in ended.errors, "HOME", home, "XDG_DATA_HOME", data, ended)
    return 2 * len(odd) + 4


def mutate(random, content):
    # Content with one to three accidents in it; in one of three cases the header has one, too.
    if random.random() < 0.3:
        at = random.randrange(100)
        content = content[:at] + random.randbytes(1) + content[at + 1:]
    for _ in range(random.randint(1, 3)):
        at, start = (random.randrange(len(content) + 1) for _ in range(2))
        length = random.choice((1, 2, 16, 512, 4096))
        piece = random.choice((b"", random.randbytes(length), bytes(length), content[start:start + length]))
        content = content[:at] + random.choice((b"", piece + content[at:], piece + content[at + length:]))
    return content


def read_and_repair(studio):
    # Programs read a file of any content and repair it where they can't; its bytes remain somewhere. Answers
    # whether it was repaired.
    has_log, before = any(studio.folder.glob("*-wal")), studio.file.read_bytes()
    for command in (("surfaces", "--json"), ("doctor",), ("list",)):
        ended = studio.run(*command)
        said = ended.said + ended.errors
        expect(ended.code in (0, 1, 3, 4) and (ended.code == 0 or WORDS.search(said)), *command, ended)
        expect(not UNESCAPED.search(said), *command, "shows", ended)
    now = studio.file.read_bytes()
    # The header tells how changes are logged.
    expect(ended.code == 0 or has_log or before[100:] == now[100:], "a refused file was changed")
    said = studio.run("doctor", "--repair").said
    aside = [path.read_bytes() for path in studio.folder.iterdir() if re.search(r"\.damaged-[-0-9]+$", path.name)]
    if ended.code == 0 or not re.search("newer|other program", said):
        expect(bool(aside) == ("was set aside" in said) and (aside == [now] or ended.code == 0 or has_log), said)
        studio.do("set", studio.do("add", "external", "Afterwards").split()[-1].rstrip("."), "label", "x")
        studio.expect_sound()
    return bool(aside)


def repaired(rig, originals, times, change):
    # How many of so many changed copies of the originals were repaired.
    count = 0
    for number in range(times):
        studio = rig.random.choice(originals).copy()
        with during("file", number, change(studio)):
            count += read_and_repair(studio)
        studio.drop()
    return count


def files(rig):
    clean, times = Studio.demo(rig), rig.count(60, 2000)
    writer = sqlite3.connect(clean.file)
    writer.execute("UPDATE properties SET value = 'Other' WHERE key = 'manufacturer'")
    writer.commit()
    with_log = clean.copy()
    writer.close()

    def change(studio):
        victim = rig.random.choice([path for path in studio.folder.glob("objects*") if path.suffix != ".sqlite3-shm"])
        victim.write_bytes(mutate(rig.random, victim.read_bytes()))
    count = repaired(rig, [clean, clean, with_log], times, change)
    return f"{times} mutated and truncated database files, {count} of them repaired, no hang, nothing destroyed"


def contents(rig):
    studio, pick, times = Studio.demo(rig), rig.random.choice, rig.count(40, 1000)
    columns = {table: [row[1] for row in studio.sql(f"PRAGMA table_info({table})")]
               for table in ("objects", "properties", "hardware")}
    values = ("NULL", "-1", "0", "9223372036854775807", "-9223372036854775808", "1.5", "'x'", "x'00'", "x''", "''",
              "char(27, 10, 8238, 0, 65)", "'%s%n'", "CAST(x'ff41' AS TEXT)", "(SELECT max(id) FROM objects)")
    endless = "(WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n)"
    large = ("zeroblob(3000000)", "replace(hex(zeroblob(600000)), '0', 'n')")

    def change(studio):
        # Values, tables and rules of any kind. Answers which.
        connection, done = sqlite3.connect(studio.file, isolation_level=None), []
        connection.executescript("PRAGMA max_page_count = 5000; PRAGMA foreign_keys = OFF")
        for number in range(rig.random.randint(1, 6)):
            table = pick(list(columns))
            column, row = pick(columns[table]), ", ".join(pick(values + large) for _ in columns[table])
            anew = f"CREATE TABLE t AS SELECT * FROM {table}; DROP TABLE {table}; "
            done.append(pick((
                f"UPDATE {table} SET {column} = {pick(values)} WHERE {columns[table][0]} % 3 = 1",
                f"INSERT OR REPLACE INTO {table} VALUES({row})", f"DELETE FROM {table} WHERE {column} > {pick(values)}",
                anew + f"ALTER TABLE t RENAME TO {table}; UPDATE {table} SET {column} = {pick(values)} WHERE rowid < 9",
                anew + f"CREATE VIEW {table} AS SELECT t.* FROM t, {endless}",
                anew, f"ALTER TABLE {table} ADD COLUMN more",
                f"CREATE UNIQUE INDEX i{number} ON {table}({column})", f"PRAGMA user_version = {number - 2}",
                f"CREATE TRIGGER r{number} AFTER INSERT ON {table} BEGIN DELETE FROM objects; END",
                "INSERT INTO properties SELECT 1, hex(randomblob(5)), 1 FROM objects a, objects b LIMIT 5000")))
            try:
                connection.executescript(done[-1])
            except sqlite3.Error:
                done.pop()
            if done and endless in done[-1]:  # what follows would read it here
                break
        connection.close()
        return done
    count = repaired(rig, [studio], times, change)
    return f"{times} files with contents and rules of their own, {count} of them repaired, no hang, all escaped"


def documents(rig):
    studio, times, taken = Studio.demo(rig), rig.count(60, 3000), 0
    document = studio.do("export")
    parts = ["null", "-1", "1e400", "2147483648", '"\\u202e\\u0000"', "[]", "{}", "[" * 70000, '"' + "n" * (2 << 20) + '"',
             '{"data": "00ff"}', *re.findall(r'"\w+"|\d+', document)]
    for number in range(times):
        place = rig.random.choice(list(re.finditer(r'"[^"]*"|-?\d+|[\[\]{},:]', document)))
        text = (document[:place.start()] + rig.random.choice(parts) + document[place.end():]).encode()
        text = rig.random.choice((text, text, mutate(rig.random, text)))
        with during("document", number, text[place.start() - 200:place.end() + 200]):
            copy = studio.copy()
            before, ended, after = copy.state(), copy.run("import", "-", "--yes", text=text), copy.state()
            if ended.code == 0:
                expect("nothing to change" in copy.do("import", "-", "--yes", text=text), "is not what is there now")
                taken += 1
            else:
                expect(ended.code == 1 and after == before and WORDS.search(ended.errors), ended)
            copy.expect_sound()
            copy.drop()
    return f"{times} mutated documents, {taken} taken whole, the others refused with words and nothing changed"


SCENES = (places, files, documents, contents)
