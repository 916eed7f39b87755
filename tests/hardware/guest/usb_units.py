# usb_units.py COUNT: USB MIDI units whose makers wished the machine no good, answered for at the far ends of
# virtual cables. Their texts are any that a string descriptor holds, where a gadget of the kernel sends 126 bytes
# of UTF-8 at most. What is wanted of them comes as lines on the standard input:
#
#   plug UNIT PLACE | play UNIT HEXADECIMAL | commotion PLUGS SEED
#
# Units count from 0; places are 0 to 119. "play" sends three bytes of MIDI from the unit's first and last port.
# "commotion" pulls units out and plugs each in at another place, at random moments, while they send bursts of
# events; when all are back in, "calm" is printed.

import os
import random
import selectors
import socket
import struct
import sys
import time

HUB = "/sys/devices/platform/vhci_hcd.0/"
MOST_EVENTS = 4096
BURST_PAUSE = 0.05
PLACES, PLACES_OF_A_HUB, FULL_SPEED = 120, 15, 2
SUBMIT, UNLINK, SUBMITTED, UNLINKED = 1, 2, 3, 4
STALL, UNLINKED_IN_TIME = -32, -104  # EPIPE, ECONNRESET
STANDARD_OUT, GET_DESCRIPTOR, STRING = 0x00, 6, 3

HOSTILE = [
    "", "A" * 126, "\U0001f39a" * 63, "é" * 126, "日" * 126, "x" * 125 + "\ud83d", "\udc00\ud800lone\udfff",
    "\x1b[2J\x1b]0;mine\x07\r\n\t\x08\x7f\x9b31m", "".join(map(chr, range(1, 32))), "   \t ", "hidden\0behind",
    "\u202eksed\u202d\u2067\u2066\u2069\u2069\u200f\u061c", "%s%n%n%x%p%999999d%%", None, "\ufeff\uffff\u200b\u00ad",
    "\"'`$(reboot);--\\", "../../../etc/passwd", "<b>&amp;</b>", "a" + "\u0301" * 125, "\u05d0\u05d1\u0627\u0644",
    "\ud800" * 126, "\n", "\ufdfa" * 126, "Midi Through", "Kestrin MIDI", "Port 1", " 2", "'); DROP TABLE objects; --", "{\"a\": [", "ééééééééé%",
]


class Unit:
    def __init__(self, number):
        def text(step):
            return HOSTILE[(number + step) % len(HOSTILE)]

        self.cable = None
        self.ports = 16 if number % 6 == 0 else 1
        product = text(0) if number % 8 == 7 else "MCU Pro USB" + (text(0) or "")
        # Of those without a serial number no two look alike: when both are out, nobody could tell which comes back.
        serial = f"{number}{text(5)}" if number % 3 != 1 else None
        texts = ["LOUD Technologies, Inc." + (text(11) or ""), product, serial]
        texts += [text(port + 3) for port in range(self.ports)]
        self.strings = {0: b"\x04\x03\x09\x04"} | {
            index: self._string(text) for index, text in enumerate(texts, 1) if text is not None}
        self.descriptors = {1: self._device(), 2: self._configuration()}

    @staticmethod
    def _string(text):
        units = text.encode("utf-16-le", "surrogatepass")[:252]
        return bytes([len(units) + 2, STRING]) + units

    def _device(self):
        texts = [index if index in self.strings else 0 for index in (1, 2, 3)]
        return struct.pack("<BBHBBBBHHHBBBB", 18, 1, 0x110, 0, 0, 0, 64, 0x0a73, 6, 0x100, *texts, 1)

    def _configuration(self):
        jacks = range(1, self.ports + 1)
        midi = b"".join(bytes([6, 0x24, 2, 1, jack, 3 + jack, 9, 0x24, 3, 1, jack + 16, 1, jack, 1, 3 + jack])
                        for jack in jacks)
        for address, first in ((0x01, 1), (0x81, 17)):
            ids = [first + jack for jack in range(self.ports)]
            midi += bytes([9, 5, address, 2, 64, 0, 0, 0, 0, 4 + self.ports, 0x25, 1, self.ports, *ids])
        body = bytes([9, 4, 0, 0, 0, 1, 1, 0, 0, 9, 0x24, 1, 0, 1, 9, 0, 1, 1, 9, 4, 1, 0, 2, 1, 3, 0, 0,
                      7, 0x24, 1, 0, 1]) + struct.pack("<H", 7 + len(midi)) + midi
        return struct.pack("<BBHBBBBB", 9, 2, 9 + len(body), 2, 1, 0, 0x80, 50) + body

    # The cable

    def plug(self, place):
        self.cable, far = socket.socketpair()
        port = place // PLACES_OF_A_HUB * 2 * PLACES_OF_A_HUB + place % PLACES_OF_A_HUB
        with far, open(HUB + "attach", "w") as attach:
            attach.write(f"{port} {far.fileno()} {1 << 16 | 1} {FULL_SPEED}")
        self.waiting, self.events = {}, b""

    def serve(self):
        command, sequence, _, is_in, endpoint, rest = struct.unpack(">5I28s", self._read(48))
        if command == UNLINK:
            victim = struct.unpack_from(">I", rest)[0]
            was_waiting = self.waiting.pop(victim, None) is not None
            self._answer(UNLINKED, sequence, UNLINKED_IN_TIME if was_waiting else 0)
            return
        length, setup = struct.unpack_from(">4xi12x8s", rest)
        if not is_in:
            self._read(length)
        if endpoint == 0:
            self._answer(SUBMITTED, sequence, *self._control(*struct.unpack("<BBHHH", setup)))
        elif is_in:
            self.waiting[sequence] = length
            self.play(b"")
        else:
            self._answer(SUBMITTED, sequence, 0, length)

    def play(self, packets):
        """Sends, or keeps until the machine asks for it, what a cable with events in it carries."""
        self.events = (self.events + packets)[-MOST_EVENTS:]
        while self.events and self.waiting:
            sequence, length = next(iter(self.waiting.items()))
            del self.waiting[sequence]
            self._answer(SUBMITTED, sequence, 0, self.events[:length])
            self.events = self.events[length:]

    def _control(self, kind, request, value, _, length):
        if kind == STANDARD_OUT:
            return 0, 0
        sort, index = value >> 8, value & 0xFF
        asked = self.strings.get(index) if sort == STRING else self.descriptors.get(sort)
        return (0, asked[:length]) if request == GET_DESCRIPTOR and asked else (STALL, 0)

    def _answer(self, command, sequence, status, done=0):
        data = done if isinstance(done, bytes) else b""
        length = len(data) or done or 0
        self.cable.sendall(struct.pack(">5Iii20x", command, sequence, 0, 0, 0, status, length) + data)

    def _read(self, count):
        data = self.cable.recv(count, socket.MSG_WAITALL) if count else b""
        if len(data) < count:
            raise ConnectionError
        return data


class Bench:
    """All units, where they are plugged in, and what is to be done to them."""

    def __init__(self):
        self.units = [Unit(number) for number in range(int(sys.argv[1]))]
        self.selector = selectors.DefaultSelector()
        self.selector.register(sys.stdin, selectors.EVENT_READ)
        self.plugs_left = 0

    def run(self):
        unfinished = ""
        while True:
            for key, _ in self.selector.select(BURST_PAUSE if self.plugs_left else None):
                if key.data:
                    self.serve(key.data)
                    continue
                unfinished += os.read(sys.stdin.fileno(), 4096).decode()
                *lines, unfinished = unfinished.split("\n")
                for line in lines:
                    self.do(*line.split())
            if self.plugs_left and time.monotonic() > self.next_burst:
                self.stir()

    def serve(self, unit):
        try:
            if unit.cable:
                unit.serve()
        except OSError:
            self.pull(unit)

    def do(self, what, unit, *rest):
        if what == "plug":
            self.plug(self.units[int(unit)], int(rest[0]))
        elif what == "play":
            unit = self.units[int(unit)]
            for cable in {0, unit.ports - 1}:
                unit.play(bytes([cable << 4 | 0x09]) + bytes.fromhex(rest[0]))
        elif what == "commotion":
            self.plugs_left, self.next_burst, self.next_pull = int(unit), 0, 0
            self.random = random.Random(rest[0])

    def plug(self, unit, place):
        """There, or at the next place that the machine holds for free."""
        while True:
            try:
                unit.plug(place)
                break
            except OSError:
                place = (place + 1) % PLACES
        self.selector.register(unit.cable, selectors.EVENT_READ, unit)

    def pull(self, unit):
        """As a cable is: without a word to the machine."""
        self.selector.unregister(unit.cable)
        unit.cable.close()
        unit.cable = None

    def stir(self):
        """A burst of fader moves, and now and then a cable."""
        self.next_burst = time.monotonic() + BURST_PAUSE
        move = self.random.randrange(0x4000)
        for unit in self.random.sample(self.units, 4):
            if unit.cable:
                unit.play(bytes([0x0E, 0xE0 | move & 7, move & 0x7F, move >> 7]) * 16)
        if time.monotonic() < self.next_pull:
            return
        self.next_pull = time.monotonic() + self.random.choice((0, 0.05, 0.3, 1))
        out = [unit for unit in self.units if not unit.cable]
        if len(out) < 3:
            self.pull(self.random.choice([unit for unit in self.units if unit.cable]))
        else:
            self.plug(self.random.choice(out), self.random.randrange(PLACES))
            self.plugs_left -= 1
        if not self.plugs_left:
            for unit in self.units:
                if not unit.cable:
                    self.plug(unit, self.random.randrange(PLACES))
            print("calm", flush=True)


Bench().run()
