#!/usr/bin/env python3
"""Fails when a file of the emulator includes a layer above its own.

The folders of sve/ are layers, from the bottom: the register record and
descriptors (state); floating point (fp); application memory and faults
(memory); trace records and their producers (trace); the fast handlers and
the generic tier, side by side (handlers, generic); the decoders and the
lookup (decode); the client. A folder may include its own files and the
folders listed for it below, nothing else. The tools' table of forms sits
above decode and may read everything under it.

Usage: check_layers.py ROOT   (the repository's top folder)
"""
import os
import re
import sys

MAY_INCLUDE = {
    "state": set(),
    "fp": {"state"},
    "memory": {"state"},
    "trace": {"state"},
    "handlers": {"state", "fp", "memory", "trace"},
    "generic": {"state", "fp", "memory"},
    "decode": {"state", "fp", "memory", "trace", "handlers", "generic"},
    "client": {"state", "fp", "memory", "trace", "handlers", "generic", "decode"},
}
TOOLS_MAY_INCLUDE = {"state", "decode", "forms"}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
SOURCE = (".h", ".cpp", ".inc")


def layer_of(path, sve):
    rel = os.path.relpath(path, sve)
    return None if rel.startswith("..") else rel.split(os.sep)[0]


def check_file(path, own, allowed, sve, search_roots):
    problems = []
    with open(path, encoding="utf-8") as f:
        text = f.read()
    for target in INCLUDE.findall(text):
        candidates = [os.path.join(os.path.dirname(path), target)]
        candidates += [os.path.join(r, target) for r in search_roots]
        found = next((os.path.normpath(c) for c in candidates if os.path.exists(c)), None)
        if found is None:
            continue  # a system or generated header: not ours to place
        layer = layer_of(found, sve)
        if layer is None or layer == own:
            continue
        if layer not in allowed:
            problems.append(f"{path}: includes {target}, from {layer}, above {own}")
    return problems


def main():
    root = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else ".")
    sve = os.path.join(root, "sve")
    problems = []
    for layer, allowed in MAY_INCLUDE.items():
        for folder, _, files in os.walk(os.path.join(sve, layer)):
            for name in files:
                if name.endswith(SOURCE):
                    path = os.path.join(folder, name)
                    problems += check_file(path, layer, allowed, sve, [sve])
    unknown = set(os.listdir(sve)) - set(MAY_INCLUDE) - {"CMakeLists.txt"}
    problems += [f"sve/{u}: a folder with no place among the layers" for u in sorted(unknown)]
    forms = os.path.join(root, "tools", "forms")
    for name in sorted(os.listdir(forms)):
        if name.endswith(SOURCE):
            path = os.path.join(forms, name)
            problems += check_file(path, "forms", TOOLS_MAY_INCLUDE, sve, [sve, os.path.dirname(forms)])
    for p in problems:
        print(p)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
