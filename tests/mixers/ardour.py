#!/usr/bin/env python3
"""Ardour itself, without its window, on a JACK server that plays into nothing.

    ardour.py MIDISETUP BRIDGE

A group of three is described for it and its ports are connected to those of the surfaces. BRIDGE stands
in for the program that shows the sequencer's ports to JACK, since this needs no sequencer.
"""

import glob
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

MIDISETUP, BRIDGE = sys.argv[1:3]
SERVER = f"midisetup-test-{os.getpid()}"


def fail(what):
    print(f"0 passed, 1 failed\n{what}", file=sys.stderr)
    sys.exit(1)


def expect(found, wanted, what):
    if found != wanted:
        fail(f"{what}: {found!r} instead of {wanted!r}")


def wait_for(condition, what, seconds=60):
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            fail(f"{what} did not come within {seconds} s")
        time.sleep(0.2)


class Bench:
    """A home folder of its own, and the programs that were started in it."""

    def __init__(self, folder):
        self.home = pathlib.Path(folder)
        self.started = []
        self.environment = {**os.environ, "HOME": folder, "JACK_DEFAULT_SERVER": SERVER,
                            "JACK_NO_AUDIO_RESERVATION": "1",
                            "KESTRIN_MIDI_DATABASE": str(self.home / "objects.sqlite3")}
        self.environment.pop("XDG_CONFIG_HOME", None)

    def start(self, *command, **more):
        log = open(self.home / "log", "ab")
        self.started.append(subprocess.Popen(command, env={**self.environment, **more}, stdout=log,
                                             stderr=log, stdin=subprocess.DEVNULL))

    def run(self, *command, status=0, **more):
        done = subprocess.run(command, env={**self.environment, **more}, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=120)
        if done.returncode != status:
            fail(f"{command} ended with {done.returncode}:\n{done.stdout}{done.stderr}")
        return done.stdout

    def end(self):
        for program in reversed(self.started):
            program.terminate()
            try:
                program.wait(timeout=10)
            except subprocess.TimeoutExpired:
                program.kill()
                program.wait()


def ardour_environment(libraries, version):
    return {"GTK_PATH": f"/etc/{version}", "LD_LIBRARY_PATH": libraries, "ARDOUR_DLL_PATH": libraries,
            "ARDOUR_DATA_PATH": f"/usr/share/{version}", "ARDOUR_CONFIG_PATH": f"/etc/{version}"}


def make_studio(bench):
    """Group 0: extender, main unit, extender; the numbers of the places have gaps."""
    for name, model, position in (("Main", "Mackie Control", 4), ("Right", "Mackie Control Exp", 9),
                                  ("Left", "Mackie Control Exp", 1)):
        bench.run(MIDISETUP, "add", "external", name, "--manufacturer", "Mackie", "--model", model)
        bench.run(MIDISETUP, "place", name, "0", str(position))


def switch_on(session, device):
    """Makes the session use the Mackie protocol with this device."""
    text = session.read_text()
    session.write_text(re.sub(
        r'<Protocol name="Mackie" active="0"/>',
        f'<Protocol name="Mackie" active="1" bank="0" ipmidi-base="0" device-profile="" '
        f'device-name="{device}"><Configurations/></Protocol>', text))


def ports(bench, what):
    return sorted(line for line in bench.run("jack_lsp").splitlines() if what in line)


def connections(bench):
    """Of each port of Ardour's the ports that it is connected to."""
    found, port = {}, None
    for line in bench.run("jack_lsp", "-c").splitlines():
        if not line.startswith(" "):
            port = line
        elif "mackie control" in port:
            found.setdefault(port.removeprefix("ardour:"), []).append(line.strip())
    return found


def main(bench):
    libraries = sorted(glob.glob("/usr/lib/ardour[0-9]*"))[-1]
    version = os.path.basename(libraries)
    headless = glob.glob(f"{libraries}/hardour-*")[0]
    make_studio(bench)

    by_hand = bench.run(MIDISETUP, "connect-mixer", "ardour")
    if "Main at place 2: Surfaces 0, 2 Main" not in by_hand:
        fail(f"Without a JACK server it said {by_hand!r}")

    devices = bench.home / ".config" / version / "mcp"
    devices.parent.mkdir(parents=True)
    bench.run(MIDISETUP, "export", "--ardour", "0")
    expect([path.name for path in devices.iterdir()], ["surfaces-0.device"], "the description's name")

    bench.start("jackd", "--no-realtime", "-d", "dummy", "-r", "48000", "-p", "1024")
    bench.run("jack_wait", "-w", "-t", "30")
    session = bench.home / "session"
    bench.run(f"{version}-new_empty_session", "-s", "48000", str(session), "three")
    switch_on(session / "three.ardour", "Surfaces 0")
    bench.start(headless, str(session), "three", **ardour_environment(libraries, version))
    names = [f"ardour:mackie control {way}{end}" for way in ("in", "out")
             for end in ("", " ext 1", " ext 3")]
    wait_for(lambda: len(ports(bench, "mackie control")) >= len(names), "Ardour's ports")
    expect(ports(bench, "mackie control"), sorted(names), "Ardour's ports")

    bench.run(MIDISETUP, "connect-mixer", "ardour", status=1)  # the surface ports are not shown yet
    bench.start(BRIDGE, "Surfaces 0", "1 Left", "2 Main", "3 Right")
    wait_for(lambda: len(ports(bench, "Surfaces 0")) == 6, "the bridge's ports")
    for _ in range(2):  # what is connected already is no fault
        bench.run(MIDISETUP, "connect-mixer", "ardour")
    expect(connections(bench),
           {f"mackie control {way}{end}": [f"a2j:Surfaces 0 [130] ({side}): {unit}"]
            for way, side in (("in", "capture"), ("out", "playback"))
            for end, unit in ((" ext 1", "1 Left"), ("", "2 Main"), (" ext 3", "3 Right"))},
           "the connections")
    print("1 passed, 0 failed")


with tempfile.TemporaryDirectory() as folder:
    desk = Bench(folder)
    try:
        main(desk)
    finally:
        desk.end()
