#!/usr/bin/env python3
"""Guest instructions by function, from the counts insnprofile.so writes.

    qemu-aarch64 -plugin BUILD/bench/insnprofile.so,out=/tmp/p.out ... APP
    python3 bench/tools/insnprofile.py /tmp/p.out [--top 40] [--by file]
    python3 bench/tools/insnprofile.py -- 2*/tmp/short.out -1*/tmp/long.out -1*/tmp/start.out

Each line of the plugin's output is PATH FILE_OFFSET INSTRUCTIONS, and for a
block of the C library, the loader or a PLT stub also the caller's PATH and
FILE_OFFSET (--by caller names it); the file offset becomes an address
through the file's program headers and the address a symbol through its
symbol table (.symtab, else .dynsym). Generated code shows as [anon]. Several files, each with a factor (COEF*FILE), are summed
with their factors: twice a short run less a run twice as long leaves
start-up and translation, the steady state cancelled; less a program without
SVE, translation alone.
"""
import argparse
import bisect
import collections
import shutil
import subprocess


def tool(name):
    cross = "aarch64-linux-gnu-" + name
    return cross if shutil.which(cross) else name


def load_segments(path):
    out = subprocess.run([tool("readelf"), "-lW", path], capture_output=True, text=True).stdout
    segments = []
    for line in out.splitlines():
        fields = line.split()
        if fields and fields[0] == "LOAD":
            offset, vaddr, filesz = (int(fields[i], 16) for i in (1, 2, 4))
            segments.append((offset, vaddr, filesz))
    return segments


def load_symbols(path):
    for extra in ([], ["-D"]):
        out = subprocess.run([tool("nm"), "-C", "--defined-only", "-n"] + extra + [path],
                             capture_output=True, text=True).stdout
        symbols = []
        for line in out.splitlines():
            parts = line.split(" ", 2)
            if len(parts) == 3 and parts[1] in "tTwWiI":
                symbols.append((int(parts[0], 16), parts[2]))
        if symbols:
            return symbols
    return []


class Objects:
    def __init__(self, copies=None):
        self.cache = {}
        self.copies = copies or {}

    def symbol(self, path, offset):
        if path not in self.cache:
            source = self.copies.get(path, path)
            symbols = load_symbols(source)
            self.cache[path] = (load_segments(source), [a for a, _ in symbols],
                                [n for _, n in symbols])
        segments, addresses, names = self.cache[path]
        address = offset
        for seg_offset, vaddr, size in segments:
            if seg_offset <= offset < seg_offset + size:
                address = offset - seg_offset + vaddr
                break
        i = bisect.bisect_right(addresses, address) - 1
        return names[i] if i >= 0 else "?"


def place(objects, where, offset):
    """(file name, symbol) of a place the plugin wrote; generated code is
    ("[anon]", "")."""
    short = where.rsplit("/", 1)[-1]
    if not where.startswith("/"):
        return short, ""
    return short, objects.symbol(where, int(offset, 16))


def read_by_symbol(path, objects):
    """Instructions by (file name, symbol, the caller's (file name, symbol) or
    None): a block of the C library, the loader or a PLT stub comes with the
    caller the plugin saw."""
    counts = collections.Counter()
    with open(path) as f:
        lines = f.read().splitlines()
    for line in lines:
        fields = line.split()
        caller = place(objects, *fields[3:5]) if len(fields) == 5 else None
        counts[place(objects, *fields[:2]) + (caller,)] += int(fields[2])
    return counts


def read_counts(path, objects, by):
    counts = collections.Counter()
    for (short, symbol, caller), n in read_by_symbol(path, objects).items():
        key = short if by == "file" or not symbol else short + ": " + symbol
        if by == "caller" and caller:
            key += " (from %s: %s)" % caller
        counts[key] += n
    return counts


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("counts", nargs="+", help="[COEF*]FILE")
    parser.add_argument("--top", type=int, default=40)
    parser.add_argument("--by", choices=["symbol", "file", "caller"], default="symbol")
    parser.add_argument("--per", type=float, default=1.0,
                        help="divide every figure by this (e.g. the SVE words translated)")
    parser.add_argument("--object", action="append", default=[], metavar="PATH=COPY",
                        help="read PATH's symbols from COPY: a profile of an earlier build "
                             "whose library has since been rebuilt at PATH")
    args = parser.parse_args()
    objects = Objects(dict(o.split("=", 1) for o in args.object))
    counts = collections.Counter()
    for spec in args.counts:
        coef, _, path = spec.rpartition("*")
        for key, n in read_counts(path, objects, args.by).items():
            counts[key] += float(coef or 1) * n
    total = sum(counts.values())
    print("%14s %10s  %s" % ("instructions", "per unit", "where"))
    for key, n in sorted(counts.items(), key=lambda kv: -abs(kv[1]))[:args.top]:
        print("%14.0f %10.1f  %s" % (n, n / args.per, key))
    print("%14.0f %10.1f  total" % (total, total / args.per))


if __name__ == "__main__":
    main()
