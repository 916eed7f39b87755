#!/usr/bin/env python3
"""Compares the texts that the code looks up with the tables of localized strings.

    check_strings.py ROOT

Fails when a key that the code under ROOT asks for is missing from a table, and when a table holds a
key twice, one that nothing asks for, or a text with fewer or more of the "%" that stand for a name.
A LookupString whose argument is no literal names its keys in a comment on the lines above:
`// Keys: "Ok", "Cancel"`.
"""

import pathlib
import re
import sys
import xml.etree.ElementTree

LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
CALL = re.compile(r'(?:// Keys: (.*(?:\n *//.*)*)\n.*)?(?<!UString )\bLookupString\(\s*((?:"(?:[^"\\\n]|\\.)*"\s*)*)')
ESCAPES = {r"\n": "\n", r"\"": '"', r"\\": "\\"}


def text_of(literal):
    return re.sub(r"\\.", lambda escape: ESCAPES[escape.group()], literal)


def keys_of(call):
    """The keys that a call asks for; none when it does not tell them."""
    if call.group(2):
        return [text_of("".join(LITERAL.findall(call.group(2))))]
    return [text_of(key) for key in LITERAL.findall(call.group(1) or "")]


def check(root):
    used = set()
    for path in [*(root / "app").rglob("*.cpp"), *(root / "Source").rglob("*.cpp")]:
        for call in CALL.finditer(path.read_text()):
            if path.name != "LocalizedStrings.cpp" and not keys_of(call):
                yield f"{path}: no literal and no comment `// Keys: ...`: {call.group()}"
            used.update(keys_of(call))
    tables = list((root / "app/Resources").rglob("LocalizableStrings.xml"))
    for table in tables:
        items = list(xml.etree.ElementTree.parse(table).iter("TEXT"))
        held = [item.get("name") for item in items]
        yield from (f"{table}: {key!r} is missing" for key in sorted(used - set(held)))
        yield from (f"{table}: nothing asks for {key!r}" for key in sorted(set(held) - used))
        yield from (f"{table}: {key!r} stands there twice" for key in held if held.count(key) > 1)
        yield from (f"{table}: {item.get('value')!r} has other % than {item.get('name')!r}" for item in items
                    if item.get("value").count("%") != item.get("name").count("%"))
    if not tables:
        yield "there is no table"


if __name__ == "__main__":
    sys.exit("\n".join(check(pathlib.Path(sys.argv[1]))) or 0)
