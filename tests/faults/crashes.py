# Programs that end, or whose disk ends, in the middle of their work.
import difflib
import re
import time

from disk import Disk, calls_in
from studio import BACKUP, Presser, Studio, during, expect

KILLED = -9
NEW_ID = re.compile(r"-?\b\d{4,}\b")
# What a program that was killed, or whose disk failed, may leave: the log, an export that was not finished.
LEFTOVERS = re.compile(r"objects\.sqlite3(\.repair)?-(wal|shm)$|backup\.json\.new-\d+$")


def with_document(rig):
    # Beside the studio the document of a changed one, in which devices came, went and were changed.
    studio = Studio.demo(rig)
    other = studio.copy()
    other.do("rename", "HUI", "Old")
    other.do("set", "Old", "extra", "1")
    other.do("disconnect", "Rack Interface:Port 1")
    studio.do("remove", "SAC-2K")
    (studio.folder / "other.json").write_text(other.do("export"))
    return studio


def renamed(rig):
    studio = Studio.demo(rig)
    studio.do("rename", "HUI", "Old")
    return studio


def with_nonsense(rig):
    studio = Studio.demo(rig)
    studio.sql("INSERT INTO properties VALUES(1, 'half', 1.5)")
    return studio


def with_broken_page(rig):
    studio = Studio.demo(rig)
    [(page,)] = studio.sql("SELECT rootpage FROM sqlite_schema WHERE name = 'objects_by_owner'")
    content = studio.file.read_bytes()
    studio.file.write_bytes(content[:4096 * (page - 1)] + b"\xAA" * 4096 + content[4096 * page:])
    return studio


class Case:
    # A command, on what it is run, and the states that it leads through, the last of which it confirms.

    def __init__(self, rig, base, *words, **environment):
        self.studio, self.words, self.environment = base(rig), words, environment
        self.is_repair = words[0] == "doctor"
        self.good = (0, 4) if self.is_repair else (0,)  # 4: without a sequencer
        self.original = self.studio.file.exists() and self.studio.file.read_bytes()
        before = self.studio.state()
        self.known = set(NEW_ID.findall(str(before[0])))
        log, after = rig.folder() / "log", self.studio.copy()
        ended = after.run(*words, FAULT_LOG=str(log), **environment)
        expect(ended.code in self.good, *words, ended)
        self.states = [self.same(before), self.same(after.state())]
        self.calls = calls_in(log)
        # The calls at which something may happen; what programs share in memory is nobody's to lose.
        files = [call for call in self.calls if call[0] != "say"]
        self.points = [number + 1 for number, call in enumerate(files) if not call[1].endswith("-shm")]

    def same(self, state):
        # New unique IDs are random.
        return [isinstance(text, str) and NEW_ID.sub(lambda id: id[0] if id[0] in self.known else "new", text) or text
                for text in state]

    def check(self, studio, confirmed):
        # What was confirmed is there, at most what was being done besides; nothing else was changed; and it can be
        # done again. Answers the state.
        state = found = self.same(studio.state())
        expect(state in self.states[confirmed:], "is neither as before nor as confirmed:", *difflib.unified_diff(
            "\n".join(map(str, self.states[-1])).split("\n"), "\n".join(map(str, state)).split("\n"), lineterm=""))
        if state != self.states[-1] or self.is_repair:
            ended = studio.run(*self.words, **self.environment)
            state = self.same(studio.state())
            expect(ended.code in self.good and state == self.states[-1], "the next try:", ended)
        studio.expect_sound()
        names, known = ({path.name for path in one.folder.iterdir()} for one in (studio, self.studio))
        aside = {name for name in names if ".damaged-" in name}
        # Without links a repair that begins anew copies anew.
        expect(len(aside) == 1 or len(aside) > 1 and self.environment or not self.is_repair, names)
        expect(all((studio.folder / name).read_bytes() == self.original for name in aside), "it was set aside changed")
        litter = {name for name in names - known - aside - {studio.file.name} if not LEFTOVERS.match(name)}
        expect(not litter and not known - names, "there is", names, "there was", known)
        return found


def cases(rig):
    demo = Studio.demo
    yield Case(rig, Studio, "demo")
    yield Case(rig, demo, "set", "HUI", "label", "x" * 9000)
    yield Case(rig, demo, "place", "MCU Pro USB", "1", "3")
    yield Case(rig, demo, "add", "external", "New", "--ports", "12")
    yield Case(rig, demo, "connect", "Desk Interface:Port 4", "SAC-2K")
    yield Case(rig, demo, "remove", "HUI")
    yield Case(rig, with_document, "import", "other.json", "--yes")
    yield Case(rig, demo, rig.press_ok, "all", "1", "300")
    yield Case(rig, renamed, "export", BACKUP)
    yield Case(rig, with_nonsense, "doctor", "--repair")
    yield Case(rig, with_broken_page, "doctor", "--repair")
    yield Case(rig, with_broken_page, "doctor", "--repair", FAULT_NO_LINKS="1")


def at_every_call(rig, judge, *faults):
    # Each case with each fault at every call that changes files; judge(case, studio, fault, ended).
    count = 0
    for case in cases(rig):
        step = 1 if case.words[0] == rig.press_ok else rig.count(4, 1)
        for fault in faults:
            for at in (*case.points[rig.random.randrange(step)::step], len(case.calls) + 1):
                with during(fault, "at call", at, "of", *case.words[:3], case.environment or ""):
                    studio = case.studio.copy()
                    judge(case, studio, fault,
                          studio.run(*case.words, FAULT=fault, FAULT_AT=str(at), **case.environment))
                    studio.drop()
                count += 1
    return count


def kills(rig):
    def judge(case, studio, _, ended):
        expect(ended.code in (KILLED, *case.good), ended)
        case.check(studio, int(ended.code != KILLED))
    count = at_every_call(rig, judge, "kill")
    studio, times, last, confirmed = Studio.demo(rig), rig.count(60, 1000), 0, 0
    other = Presser(studio, 1)
    for _ in range(times):
        first = last + 2  # one more than was confirmed may be stored
        victim = Presser(studio, 0, first)
        time.sleep(rig.random.uniform(0, 0.05))
        last = victim.end()
        confirmed += last - first + 1
    confirmed += other.end()
    studio.expect_sound()
    return f"{count} kills at disk calls; {times} at random moments, of {confirmed} confirmed changes none lost"


def disks(rig):
    told = []

    def judge(case, studio, fault, ended):
        is_done = ended.code in case.good
        state = case.check(studio, int(is_done))
        if not is_done:
            words = "full|No space left" if fault == "full" else "."
            expect(ended.code in (1, 3) and re.search(words, ended.errors + ended.said), ended)
            # An export may be there and not yet be safe.
            expect(state == case.states[0] or case.words[0] == "export", "is stored, but says:", ended)
            told.append(state)
    count = at_every_call(rig, judge, "full", "fail")
    return f"{count} runs on disks that were full or failed, {len(told)} of which said so, nothing half stored"


def stored_thrice(rig):
    # A program that stays open and confirms three changes.
    case = Case(rig, Studio.demo, rig.press_ok, "all", "3")
    expect(b"".join(call[3] for call in case.calls if call[0] == "say").count(b"stored") == 3, "nothing was told")
    for times in (2, 1):
        studio = case.studio.copy()
        studio.do(rig.press_ok, "all", str(times))
        case.states.insert(1, case.same(studio.state()))
    return case


def power(rig):
    cuts = 0
    for case in (*cases(rig), stored_thrice(rig)):
        disk, confirmed, known = Disk(case.studio), 0, set()
        for number, call in enumerate((*case.calls, ("end", "", 0, b""))):
            if call[0] == "end":
                confirmed, known = len(case.states) - 1, set()
            images = disk.images(rig.random, rig.count(number % 4 == 0, 8))
            for image in images - known:
                with during("power cut in front of call", number, "of", *case.words[:3], case.environment or "",
                            [(*names, len(content)) for names, content in image]):
                    studio = lay_out(rig, image, case.studio.link.is_symlink())
                    case.check(studio, confirmed)
                    studio.drop()
                cuts += 1
            known = images
            if call[0] == "say":
                stored = call[3].count(b"stored ")
                confirmed, known = confirmed + stored, set() if stored else known
            elif call[0] != "end":
                disk.apply(*call)
    return f"{cuts} power cuts, each confirmed change there afterwards"


def lay_out(rig, image, is_linked):
    studio = Studio(rig)
    for (name, *others), content in image:
        (studio.folder / name).write_bytes(content)
        for other in others:
            (studio.folder / other).hardlink_to(studio.folder / name)
    if is_linked:
        studio.link.symlink_to(studio.file.name)
    return studio


SCENES = (kills, disks, power)
