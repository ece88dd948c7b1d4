#!/usr/bin/env python3
"""Checks every #include of src/ against the layers of the program.

A file may include files of its own layer and of the layers it is allowed to
use, nothing else: the model knows nothing of the script layer, the formula
language nothing of the marine model, one mode's model nothing of the
other's. Prints each include that breaks the rule and fails when there is
one.

Usage: tools/check_includes.py
"""
import pathlib
import re
import sys

# Layer: the layers it may include, besides its own.
ALLOWED = {
    "platform": set(),
    "fileformat": {"platform"},
    "formula": {"fileformat", "platform"},
    "turbo": {"fileformat", "platform"},
    "marine": {"formula", "fileformat", "platform"},
    "plot": set(),
    "convergence": set(),
    "script": {"plot", "convergence", "fileformat", "platform"},
    "turbo/commands": {"turbo", "script", "plot", "fileformat", "platform"},
    "marine/commands": {"marine", "formula", "script", "plot", "fileformat", "platform"},
    "app": {"turbo/commands", "marine/commands", "turbo", "marine", "formula", "script", "plot",
            "convergence", "fileformat", "platform"},
    "watch": {"turbo", "marine", "formula", "plot", "convergence", "fileformat", "platform"},
}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def layer_of(path):
    """The layer of a path relative to src/: the longest layer name it starts with."""
    matches = [layer for layer in ALLOWED if path == layer or path.startswith(layer + "/")]
    return max(matches, key=len) if matches else None


def main():
    source = pathlib.Path(__file__).resolve().parent.parent / "src"
    broken = []
    checked = 0
    for file in sorted(source.rglob("*")):
        if file.suffix not in (".cpp", ".h"):
            continue
        relative = file.relative_to(source).as_posix()
        own = layer_of(relative)
        if own is None:
            broken.append(f"{relative}: in no layer")
            continue
        for included in INCLUDE.findall(file.read_text(encoding="utf-8")):
            target = layer_of(included)
            checked += 1
            if target is None or (target != own and target not in ALLOWED[own]):
                broken.append(f"{relative}: includes {included} ({target or 'no layer'}), "
                              f"which the {own} layer may not use")
    for line in broken:
        print(line)
    if broken:
        print(f"check_includes: {len(broken)} includes break the layers")
        return 1
    print(f"check_includes: {checked} includes, every one within the layers")
    return 0


if __name__ == "__main__":
    sys.exit(main())
