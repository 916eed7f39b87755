"""faults.py MIDISETUP PRESS_OK DISK_FAULTS [--long] [SCENE...]: what a bad day does to the database. Each scene
ends with one line of what was tried, or says what failed and how to see it again. FAULTS_SEED repeats a run."""
import os
import sys
import time

import company
import crashes
import strangers
from studio import Failed, Rig

SCENES = {scene.__name__: scene for module in (crashes, company, strangers) for scene in module.SCENES}


def main(midisetup, press_ok, disk_faults, *words):
    is_long = "--long" in words
    seed = os.environ.get("FAULTS_SEED", str(time.time_ns() % 100000) if is_long else "1")
    failed = 0
    for name in [word for word in words if word != "--long"] or SCENES:
        start = time.monotonic()
        rig = Rig(os.path.abspath(midisetup), os.path.abspath(press_ok), os.path.abspath(disk_faults), is_long, seed)
        try:
            print(f"{name}: {SCENES[name](rig)} ({time.monotonic() - start:.0f} s, seed {seed})", flush=True)
        except Failed as failure:
            failed += 1
            print(f"{name}: FAILED with FAULTS_SEED={seed}{' --long' if is_long else ''}: {failure}", flush=True)
    return 1 if failed else 0


sys.exit(main(*sys.argv[1:]))
