# What a power cut leaves of a folder: a file's content as it was synchronised last, or with some of what was
# written since; its names as of the last synchronisation that concerned them, or of a later moment.
import os


class File:
    def __init__(self, content=b""):
        self.synchronised = content
        self.pending = []  # (place, bytes), or (size, None) for a new size

    def content(self, chosen):
        content = bytearray(self.synchronised)
        for place, data in chosen:
            length = place if data is None else max(len(content), place + len(data))
            content = content[:length].ljust(length, b"\0")
            content[place:place + len(data or b"")] = data or b""
        return bytes(content)


class Disk:
    def __init__(self, studio):
        self.names = {path.name: File(path.read_bytes()) for path in studio.folder.iterdir() if not path.is_symlink()}
        self.certain, self.pending = dict(self.names), []  # pending: (the file concerned, the names after it)

    def apply(self, call, path, place, data):
        name = os.path.basename(path)
        # What programs share in memory begins anew; what is not there is not taken away either.
        if name.endswith("-shm") or call == "unlink" and name not in self.names:
            return
        if call == "sync" and "." not in name:  # the folder
            return self._names_are_certain(len(self.pending))
        if name not in self.names:
            self.names[name] = File()
            self.pending.append((self.names[name], dict(self.names)))
        file = self.names[name]
        if call in ("write", "truncate"):
            file.pending.append((place, data if call == "write" else None))
        elif call == "sync":
            file.synchronised, file.pending = file.content(file.pending), []
            # What was done to names before is on the disk as well: file systems keep that in order.
            self._names_are_certain(max((i + 1 for i, (one, _) in enumerate(self.pending) if one is file), default=0))
        else:
            if call in ("rename", "link"):
                self.names[os.path.basename(data.decode())] = file
            if call in ("rename", "unlink"):
                del self.names[name]
            self.pending.append((file, dict(self.names)))

    def _names_are_certain(self, count):
        if count:
            self.certain = self.pending[count - 1][1]
            del self.pending[:count]

    def images(self, random, tries):
        # What may be there after a cut at this moment, each once: (the names of a file, its content)...
        def image(names, choose):
            files = {}
            for name, file in sorted(names.items()):
                files.setdefault(file, []).append(name)
            return tuple((tuple(names), file.content(choose(file.pending))) for file, names in files.items())

        def some(pending):
            return [(place, data and data[:random.choice((len(data), len(data) // 2))])
                    for place, data in pending if random.random() < 0.6]
        later = [self.certain, *(names for _, names in self.pending)]
        return {image(self.certain, lambda pending: []), image(self.names, lambda pending: []),
                *(image(random.choice(later), some) for _ in range(tries))}


def calls_in(log):
    # What DiskFaults.c told: (call, path, place, bytes).
    text, calls = log.read_bytes(), []
    while text:
        line, _, text = text.partition(b"\n")
        call, place, size, path = line.decode().split(" ", 3)
        calls.append((call, path, int(place), text[:int(size)]))
        text = text[int(size):]
    return calls
