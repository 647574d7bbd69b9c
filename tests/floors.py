#!/usr/bin/env python3
"""Tells every include that runs against the floors of the house: a folder sees those below it only."""
import pathlib
import re
import sys

INTERFACES = {"platform", "platform/controls"}
BESIDE_EACH_OTHER = [  # from the ground up; the folders of one floor don't see each other
    {"forms", "persist"},
    {"speech"},
    {"web"},
    {"documents", "desktop"},
    {"app"},
]
SEES = {"platform": INTERFACES, "platform/controls": INTERFACES, "platform/qt": INTERFACES | {"platform/conversion", "platform/files", "platform/rtf", "platform/text_files"},
        "platform/voice": INTERFACES | {"platform/confinement"}, "platform/confinement": INTERFACES, "platform/text_files": INTERFACES,
        "platform/files": INTERFACES, "platform/rtf": INTERFACES,
        "platform/conversion": INTERFACES | {"platform/confinement", "platform/rtf", "platform/text_files"}}
ADAPTERS = SEES.keys() - INTERFACES  # these may see the system, too
COMPOSITION_ROOT = "app/main.cpp"
INCLUDE = re.compile(r'\s*#\s*include\s*(["<])([^">]+)[">]')
STANDARD = re.compile(r"[a-z_0-9]+")  # <vector>, but neither <QString> nor <unistd.h>


def folder_of(name):
    """platform's own folders count each for itself, all others with what lies below them."""
    parts = name.split("/")
    return "/".join(parts[:2]) if parts[0] == "platform" and len(parts) > 2 else parts[0]


def complaint(name, bracket, included):
    folder = folder_of(name)
    if bracket == "<":
        # What platform itself is built with stays in its sources, out of sight of who includes it.
        may = folder in ADAPTERS or folder == "platform" and name.endswith(".cpp")
        return not may and not STANDARD.fullmatch(included) and "is none of the standard library's"
    seen = folder_of(included)
    if folder not in SEES:
        return f"is seen from {folder}/, which has no floor in tests/floors.py yet"
    return seen not in SEES[folder] | {folder} and f"is not below {folder}/"


def complaints(root):
    below = set(INTERFACES)
    for floor in BESIDE_EACH_OTHER:
        SEES.update((folder, set(below)) for folder in floor)
        below |= floor
    for top in {folder.split("/")[0] for folder in SEES}:
        for path in (root / top).rglob("*.[ch]*"):
            name = path.relative_to(root).as_posix()
            for number, line in enumerate(path.read_text().splitlines(), 1):
                include = name != COMPOSITION_ROOT and INCLUDE.match(line)
                why = include and complaint(name, *include.groups())
                if why:
                    yield f"{name}:{number}: {include[2]} {why}"


sys.exit("\n".join(complaints(pathlib.Path(__file__).resolve().parent.parent)) or 0)
