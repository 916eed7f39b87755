#!/usr/bin/env python3
"""Compares the texts that the code looks up with the tables of localized strings.

    check_strings.py ROOT

Fails when a key that the code under ROOT asks for is missing from a table, and when a table holds a
key that nothing asks for. A LookupString whose argument is no literal names its keys
in a comment on the same line or the one above (`// Keys: "Ok", "Cancel"`); each of them must be a
literal of the same file.
"""

import ast
import pathlib
import re
import sys
import xml.etree.ElementTree

LITERAL = r'"(?:[^"\\\n]|\\.)*"'
CALL = re.compile(r'\bLookupString\(\s*((?:' + LITERAL + r'\s*)*)')
COMMENT = re.compile('(' + LITERAL + r')|//[^\n]*')
DECLARED = re.compile(r'UString LookupString\(')
KEYS = re.compile(r'// Keys: (.*)')
OWN_FILE = "Source/Resources/LocalizedStrings"


def text_of(literals):
    """The text of adjacent C literals, whose escapes Python shares."""
    return "".join(ast.literal_eval(literal) for literal in re.findall(LITERAL, literals))


def keys_in_comments(text, at):
    """The keys that the comments on the line of `at` and on the line above name."""
    lines = [""] + text.split("\n")
    number = 1 + text.count("\n", 0, at)
    for line in (lines[number], lines[number - 1]):
        if found := KEYS.search(line):
            return [text_of(literal) for literal in re.findall(LITERAL, found.group(1))]
    return []


def keys_of(path, text, problems):
    """Each key that the file asks for, with the line."""
    code = COMMENT.sub(lambda found: found.group(1) or " " * len(found.group()), text)
    literals = {text_of(literal) for literal in re.findall(LITERAL, code)}
    for call in CALL.finditer(code):
        if DECLARED.search(code, max(0, call.start() - 8), call.end()):
            continue
        place = f"{path}:{text.count(chr(10), 0, call.start()) + 1}"
        if call.group(1):
            yield text_of(call.group(1)), place
            continue
        keys = keys_in_comments(text, call.start())
        if not keys:
            problems.append(f"{place}: no literal and no comment `// Keys: ...` tells the keys")
        problems.extend(f"{place}: {key!r} is no literal of this file"
                        for key in keys if key not in literals)
        yield from ((key, place) for key in keys)


def keys_of_table(path, problems):
    names = [item.get("name") for item in xml.etree.ElementTree.parse(path).iter("TEXT")]
    problems.extend(f"{path}: {name!r} stands there twice"
                    for name in sorted(set(names)) if names.count(name) > 1)
    return set(names)


def check(root):
    problems = []
    used = {}
    for folder in ("app", "Source"):
        for path in sorted((root / folder).rglob("*.[ch]*")):
            name = str(path.relative_to(root))
            if path.suffix in (".h", ".cpp") and not name.startswith(OWN_FILE):
                for key, place in keys_of(name, path.read_text(), problems):
                    used.setdefault(key, place)
    tables = sorted((root / "app/Resources").rglob("LocalizableStrings.xml"))
    if not tables:
        problems.append("there is no table")
    for table in tables:
        held = keys_of_table(table, problems)
        name = table.relative_to(root)
        problems.extend(f"{used[key]}: {key!r} is missing from {name}"
                        for key in used if key not in held)
        problems.extend(f"{name}: nothing asks for {key!r}" for key in sorted(held - set(used)))
    return problems


if __name__ == "__main__":
    found = check(pathlib.Path(sys.argv[1]))
    print("\n".join(found))
    sys.exit(1 if found else 0)
