"""Programs that end, or whose disk ends, in the middle of their work."""
import difflib
import re
import time

from disk import Disk, calls_in
from studio import BACKUP, KILLED, LEFTOVERS, SET_ASIDE, Studio, expect

LARGE = re.compile(r"-?\b\d{4,}\b")


def empty(rig):
    return Studio(rig)


def full(rig):
    return Studio.demo(rig)


def with_other_document(rig):
    studio = full(rig)
    other = studio.copy()
    other.do("rename", "HUI", "Old")
    other.do("remove", "Desk Interface:Port 3")
    other.do("place", "SAC-2K", "2", "1")
    other.do("import", "-", "--yes", text=other.do("export").replace('"Velt"', '"Other"').encode())
    (studio.folder / "other.json").write_text(other.do("export"))
    other.do("disconnect", "Rack Interface:Port 1")
    other.drop()
    return studio


def with_nonsense(rig):
    studio = full(rig)
    studio.sql("INSERT INTO properties VALUES(1, 'half', 1.5)")
    return studio


def with_broken_page(rig):
    studio = full(rig)
    [(page,)] = studio.sql("SELECT rootpage FROM sqlite_schema WHERE name = 'objects_by_owner'")
    with studio.file.open("r+b") as file:
        file.seek((page - 1) * 4096)
        file.write(b"\xAA" * 4096)
    return studio


class Case:
    """A command, on what it is run, and the states that it leads through, the last of which it confirms."""

    def __init__(self, base, *words, **environment):
        self.base, self.words, self.environment = base, words, environment

    def prepare(self, rig):
        self.studio = self.base(rig)
        self.words = [rig.press_ok if word == "OK" else word for word in self.words]
        self.original = self.studio.file.read_bytes() if self.studio.file.exists() else b""
        before = self.studio.state()
        self.known = set(LARGE.findall(str(before[0])))
        self.states = [self.same(before)]
        self.log = rig.folder() / "log"
        done = self.studio.copy()
        self._run(done)
        self.states.append(self.same(done.state()))
        self.calls = calls_in(self.log)
        self.check(done, 1, "after", *self.words)

    def same(self, state):
        """New unique IDs are random."""
        return [LARGE.sub(lambda id: id[0] if id[0] in self.known else "new", text) if isinstance(text, str) else text
                for text in state]

    def _run(self, studio):
        done = studio.run(*self.words, FAULT_LOG=str(self.log), **self.environment)
        expect(done.returncode in self.ends, *self.words, done.returncode, done.stderr)

    @property
    def ends(self):
        """The doctor ends with 4 where the machine has no sequencer."""
        return (0, 4) if self.words[0] == "doctor" else (0,)

    def difference(self, state):
        """What differs from what was confirmed."""
        for text, wanted in zip(state, self.states[-1]):
            yield "\n".join(difflib.unified_diff(str(wanted).split("\n"), str(text).split("\n"), n=2, lineterm=""))

    def check(self, studio, confirmed, *where):
        """What was confirmed is there, at most what was being done besides; nothing else changed; and it can be
        done again."""
        state = self.same(studio.state())
        expect(state in self.states[confirmed:], *where, ": the studio is neither as before nor as confirmed:",
               *self.difference(state))
        expect(set(studio.names()) >= {BACKUP} & set(self.studio.names()), *where)
        if state != self.states[-1] or self.words[0] == "doctor":
            done = studio.run(*self.words, **self.environment)
            expect(done.returncode in self.ends, *where, ": a second try ends with", done.returncode, done.stderr)
            expect(self.same(studio.state()) == self.states[-1], *where, ": a second try does something else")
        expect(not studio.damage(), *where, studio.damage())
        more = {name for name in studio.names() - self.studio.names() if not LEFTOVERS.match(name)}
        aside = [name for name in more if SET_ASIDE.match(name)]
        if self.words[0] == "doctor":
            # Without links a repair that begins anew copies anew.
            contents = [(studio.folder / name).read_bytes() for name in aside]
            expect(set(contents) == {self.original} and (len(aside) == 1 or self.environment), *where,
                   ": the damaged file is not beside it as it was:", more)
        else:
            expect(studio.file.exists() and not aside, *where)
        expect(more <= {*aside, studio.file.name}, *where, ": there is litter:", more)
        expect(studio.link.is_symlink() == self.studio.link.is_symlink(), *where, ": the link is gone")


def cases(rig):
    made = [
        Case(empty, "demo"),
        Case(full, "set", "HUI", "label", "x" * 9000),
        Case(full, "place", "MCU Pro USB", "1", "3"),
        Case(full, "add", "external", "New", "--ports", "12"),
        Case(full, "connect", "Desk Interface:Port 4", "SAC-2K"),
        Case(full, "remove", "Rack Interface"),
        Case(full, "remove", "HUI"),
        Case(with_other_document, "import", "other.json", "--yes"),
        Case(with_other_document, "OK", "all", "1"),
        Case(lambda rig: changed(full(rig)), "export", BACKUP),
        Case(with_nonsense, "doctor", "--repair"),
        Case(with_broken_page, "doctor", "--repair"),
        Case(with_broken_page, "doctor", "--repair", FAULT_NO_LINKS="1"),
    ]
    for case in made:
        case.prepare(rig)
    return made


def changed(studio):
    studio.do("rename", "HUI", "Old")
    return studio


def at_every_call(rig, faults, judge):
    """Each case with each fault at every call that changes files; judge(case, studio, fault, ended, where)."""
    runs, step = 0, rig.count(5, 1)
    for case in cases(rig):
        for fault in faults:
            for at in range(rig.random.randint(1, step), len(case.calls) + 2, step):
                studio = case.studio.copy()
                ended = studio.run(*case.words, fault=fault, at=at, **case.environment)
                where = (fault, "at call", at, "of", *case.words[:3], case.environment or "")
                judge(case, studio, fault, ended, where)
                studio.drop()
                runs += 1
    return runs


def kills(rig):
    def judge(case, studio, fault, ended, where):
        expect(ended.returncode in (KILLED, *case.ends), *where, "ended with", ended.returncode, ended.stderr)
        case.check(studio, 0 if ended.returncode == KILLED else 1, *where)
    at_calls = at_every_call(rig, ("kill", "tear"), judge)
    at_random, confirmed = kills_at_random(rig, rig.count(60, 1000))
    return f"{at_calls} kills at disk calls, {at_random} at random moments of {confirmed} confirmed changes, none lost"


def last_number(lines):
    """The last number that press-ok confirmed; a line cut short is none."""
    numbers = re.findall(r"stored (\d+)\n", lines)
    return int(numbers[-1]) if numbers else 0


def kills_at_random(rig, times):
    studio = full(rig)
    (studio.folder / "other").touch()
    with (studio.folder / "other").open("r+") as said:
        other = studio.press_ok("1", "1000000", stdout=said)
        total = last = 0
        for _ in range(times):
            victim = studio.press_ok("0", "1000000", str(last + 1))
            surface = victim.stdout.readline().split()[1].decode()
            lines = victim.stdout.readline().decode()
            time.sleep(rig.random.uniform(0, 0.05))
            victim.kill()
            lines += victim.stdout.read().decode()
            victim.communicate()
            confirmed = max(last, last_number(lines))
            stored = studio.settings(surface)
            expect(stored in (confirmed % 16384, (confirmed + 1) % 16384), "killed after", confirmed, "stored", stored)
            total, last = total + confirmed - last, confirmed
            last = confirmed + ((stored - confirmed) % 16384)
        other.kill()
        other.wait()
        said.seek(0)
        text = said.read()
    number, surface = last_number(text), text.split()[1]
    expect(number > times and studio.settings(surface) - number % 16384 in (0, 1, -16383), "the other writer:", number)
    expect(not studio.damage(), studio.damage())
    return times, total + number


def disks(rig):
    words = {"full": re.compile("full|No space left"), "fail": re.compile(r"\w")}
    told = [0]

    def judge(case, studio, fault, ended, where):
        expect(ended.returncode in (0, 1, 3, *case.ends), *where, "ended with", ended.returncode, ended.stderr)
        is_told = ended.returncode not in case.ends
        if is_told:
            told[0] += 1
            state = case.same(studio.state())
            expect(state == case.states[0] or case.words[0] in ("doctor", "export"), *where, "says", ended.stderr,
                   "but:", *case.difference(state))
            expect(words[fault].search(ended.stderr + ended.stdout), *where, "says:", ended.stderr, ended.stdout)
        case.check(studio, 0 if is_told else 1, *where)
    runs = at_every_call(rig, ("full", "fail"), judge)
    return f"{runs} runs on disks that were full or failed, {told[0]} of which said so, nothing half stored"


def power(rig):
    cuts = 0
    loop = Case(full, "OK", "all", "3")
    loop.prepare(rig)
    loop.states[1:1] = [loop.same(stored_once(loop, times)) for times in ("1", "2")]
    for case in (*cases(rig), loop):
        disk = Disk(case.studio.folder)
        # The log tells the folder of the run that it was taken from.
        disk.folder = next(path for call, path, *_ in case.calls if call != "say").rpartition("/")[0]
        confirmed, known = 0, set()
        for number, call in enumerate((*case.calls, ("end", "", 0, b""))):
            if call[0] == "end":
                confirmed = len(case.states) - 1
            tries = rig.count(number % 4 == 0, 12)
            known, images = disk.images(rig.random, tries), known
            for image in known - images if call[0] != "end" else known:
                studio = Studio(rig)
                for (name, *others), content in image:
                    (studio.folder / name).write_bytes(content)
                    for other in others:
                        (studio.folder / other).hardlink_to(studio.folder / name)
                if case.studio.link.is_symlink():
                    studio.link.symlink_to(studio.file.name)
                case.check(studio, confirmed, "power cut in front of call", number, "of", *case.words[:3],
                           case.environment or "", [(*names, len(content)) for names, content in image])
                studio.drop()
                cuts += 1
            if call[0] == "say":
                confirmed += len(re.findall(rb"stored \d+\n", call[3]))
                known = set()
            elif call[0] != "end":
                disk.apply(*call)
    return f"{cuts} power cuts, each confirmed change there afterwards"


def stored_once(case, times):
    studio = case.studio.copy()
    studio.do(case.words[0], "all", times)
    return studio.state()


SCENES = (kills, disks, power)
