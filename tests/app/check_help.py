#!/usr/bin/env python3
"""Compares the help pages of all languages with the English one.

    check_help.py RESOURCES

A translated page has the parts, links, commands and styles of the English page, calls the window's
captions what the window calls them, and leaves no sentence in English.
"""

import html.parser
import pathlib
import sys
import xml.etree.ElementTree

INLINE = {"a", "code", "em", "kbd", "strong"}  # may change places within a sentence
SPOKEN = {"lang", "aria-label"}
NAME = "SorvexMackieSurfaceHelp.htm"


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.tags, self.parts, self.kept, self.captions, self.sentences = [], [], [], [], set()
        self.feed(path.read_text())
        self.kept.sort()

    def handle_starttag(self, tag, attributes):
        if tag not in {"meta"}:
            self.tags.append(tag)
        if tag == "html":
            self.language = dict(attributes)["lang"]
        kept = [tag] + [attribute for attribute in attributes if attribute[0] not in SPOKEN]
        (self.kept if tag in INLINE else self.parts).append(str(kept))

    def handle_startendtag(self, tag, attributes):
        self.parts.append(str([tag, attributes]))

    def handle_endtag(self, tag):
        self.tags.pop()

    def handle_data(self, text):
        text = " ".join(text.split())
        if {"code", "style"} & set(self.tags):
            self.kept.append(text)
        elif self.tags[-1:] == ["strong"]:
            self.captions.append(text)
        elif text.count(" ") >= 3:
            self.sentences.add(text)


def captions_of(folder):
    table = xml.etree.ElementTree.parse(folder / "LocalizableStrings.xml")
    return {item.get("name"): item.get("value") for item in table.iter("TEXT")}


def check(resources):
    english = Page(resources / NAME)
    folders = sorted(resources.glob("*.lproj"))
    for folder in folders:
        page = Page(folder / NAME)
        captions = captions_of(folder)
        expected = sorted(captions[text] for text in english.captions if text in captions)
        differences = {
            "language": {page.language} ^ {folder.stem.replace("_", "-")},
            "parts": set(page.parts) ^ set(english.parts) or page.parts != english.parts,
            "commands and links": set(page.kept) ^ set(english.kept) or page.kept != english.kept,
            "captions": [text for text in expected if page.captions.count(text) < expected.count(text)],
            "English": page.sentences & english.sentences,
        }
        yield from (f"{folder.name}: {what}: {found}" for what, found in differences.items() if found)
    if not folders:
        yield "there is no translation"


if __name__ == "__main__":
    sys.exit("\n".join(check(pathlib.Path(sys.argv[1]))) or 0)
