"""walls.py SOURCE BUILD: includes that break a rule, put into a copy of the tree and before the compiler with
the flags of the file they stand beside. scripts/check-layers must report each in the copy; the compiler
must refuse those that the include roots keep out. What is allowed must pass both."""
import json
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

# Beside which file, what is included, and whether the compiler finds it: from the bottom to the top.
BROKEN = [
    ("Platform/CoreFoundation/CFData.cpp", "<CoreServices/Files.h>", False),
    ("Platform/CoreFoundation/CFData.cpp", '"Platform/CoreMIDI/Store/Database.h"', True),
    ("Platform/CoreMIDI/Store/Repair.cpp", '"Platform/CoreMIDI/Live/LiveStudio.h"', True),
    ("Platform/CoreMIDI/Live/LiveStudio.cpp", "<sqlite3.h>", True),
    ("Platform/CoreServices/Files.cpp", '"Platform/CoreFoundation/CFObject.h"', False),
    ("Platform/Qt/CGPath.cpp", '"UI/View.h"', False),
    ("Surfaces/SurfaceGroups.cpp", '"Platform/CoreMIDI/Store/Database.h"', False),
    ("Source/Strings/UString.cpp", "<unicode/ustring.h>", True),
    ("Source/XML/XMLName.cpp", '"UI/View.h"', False),
    ("Source/XML/XMLName.cpp", '"../Resources/LocalizedStrings.h"', True),
    ("Source/Resources/ResourceAccess.cpp", '"Platform/UI/NativeView.h"', False),
    ("Source/UI/View.cpp", '"App/Application.h"', True),
    ("Source/UI/View.cpp", '"Platform/Qt/QtView.h"', False),
    ("Source/App/Application.cpp", '"app/CnslView.h"', False),
    ("app/CnslView.cpp", '"UI/Internal/ViewBridge.h"', True),
    ("tools/midisetup/Tree.cpp", '"app/CnslView.h"', False),
    ("tools/midisetup/Tree.cpp", '"Strings/UString.h"', False),
    ("tools/midisetup/Tree.cpp", "<boost/version.hpp>", True),
    ("examples/mixer/main.c", "<CoreServices/Files.h>", False),
]
ALLOWED = [
    ("Platform/CoreMIDI/Live/LiveStudio.cpp", '"Platform/CoreMIDI/Store/Database.h"', True),
    ("Source/App/Application.cpp", '"UI/Internal/ViewBridge.h"', True),
    ("Source/XML/XMLName.cpp", "<libxml/parser.h>", True),
    ("app/CnslView.cpp", '"Strings/UString.h"', True),
    ("tools/midisetup/Tree.cpp", '"Surfaces/SurfaceGroups.h"', True),
]

source, build = map(pathlib.Path, sys.argv[1:3])
commands = {entry["file"]: entry for entry in json.loads((build / "compile_commands.json").read_text())}


def is_found_by_the_compiler(beside, include):
    entry = commands[str(source / beside)]
    flags = shlex.split(entry["command"].partition(" -o ")[0])
    language = "c" if beside.endswith(".c") else "c++"
    return subprocess.run([*flags, "-E", "-w", "-x", language, "-"], cwd=(source / beside).parent,
                          input=f"#include {include}\n", capture_output=True, text=True).returncode == 0


def reported_in_a_copy(seeds):
    """The numbers of the seeds that check-layers reports."""
    with tempfile.TemporaryDirectory() as copy:
        copy = pathlib.Path(copy)
        shutil.copytree(source, copy, dirs_exist_ok=True,
                        ignore=shutil.ignore_patterns("build", "artefacts", ".git", "fuzz"))
        subprocess.run(["git", "init", "-q", copy], check=True)
        for number, (beside, include, _) in enumerate(seeds):
            (copy / beside).with_name(f"Seed{number}.h").write_text(f"#include {include}\n")
        lines = subprocess.run([copy / "scripts/check-layers"], capture_output=True, text=True).stdout
        return {number for number, seed in enumerate(seeds)
                if str(pathlib.PurePath(seed[0]).with_name(f"Seed{number}.h:1:")) in lines}


reported = reported_in_a_copy(BROKEN + ALLOWED)
faults = [f"check-layers on {seed[1]} beside {seed[0]}" for number, seed in enumerate(BROKEN + ALLOWED)
          if (number in reported) != (number < len(BROKEN))]
faults += [f"the compiler on {include} beside {beside}" for beside, include, is_found in BROKEN + ALLOWED
           if is_found_by_the_compiler(beside, include) != is_found]
sys.exit("\n".join(["Not as it should be:", *faults]) if faults else 0)
