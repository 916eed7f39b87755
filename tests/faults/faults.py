# faults.py BUILD [--long] [SCENE...]: what a bad day does to the database. Each scene
# ends with one line of what was tried, or says what failed. FAULTS_SEED repeats a run.
import os
import subprocess
import sys
import time

import company
import crashes
import strangers
from studio import Failed, Rig

SCENES = {scene.__name__: scene for module in (crashes, company, strangers) for scene in module.SCENES}
words = [word for word in sys.argv[2:] if word != "--long"]
is_long = "--long" in sys.argv
seed = os.environ.get("FAULTS_SEED", str(time.time_ns() % 100000) if is_long else "1")
failed = 0
for name in words or SCENES:
    start = time.monotonic()
    rig = Rig(sys.argv[1], is_long, seed)
    try:
        result = SCENES[name](rig)
    except (Failed, subprocess.TimeoutExpired) as failure:
        result, failed = f"FAILED: {failure}", 1
    for program in rig.pressers:
        program.kill()
    print(f"{name}: {result} ({time.monotonic() - start:.0f} s, FAULTS_SEED={seed})", flush=True)
sys.exit(failed)
