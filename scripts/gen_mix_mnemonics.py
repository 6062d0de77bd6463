#!/usr/bin/env python3
"""Writes the assembler mnemonic of each instruction form into its row of
sve/decode/forms.inc (the row's last field), for the instruction mix that
`zorvo --mix` prints and for the tools.

For every row of sve/decode/forms.inc it builds words that the decode
cascade (maps in the order of sve/decode/decode_maps.inc, first match wins)
sends to that row, disassembles them with aarch64-linux-gnu-objdump, and
keeps the mnemonic the disassembler names most often (random operands
rarely make an alias such as `mov` for `orr` with equal sources). Run it again
when rows change: python3 scripts/gen_mix_mnemonics.py
"""
import os
import random
import re
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OBJDUMP = "aarch64-linux-gnu-objdump"
FORMS = os.path.join(ROOT, "sve/decode/forms.inc")
# THIN(family, map, key, name, ...), BRIDGE(family, map, key, name, ...),
# EMPTY(map, key, name, ...): the fields up to the name, and the rest.
ROW = re.compile(r"^(?P<head>(?:THIN|THIN_FP|BRIDGE)\(\w+, |EMPTY\()(?P<map>\w+), "
                 r"(?P<key>0x[0-9a-f]+), (?P<name>\w+)(?P<rest>[^)\n]*)\)", re.M)


# Fields after the decoder name, before the mnemonic: ", shape, elem, handler"
# splits into an empty first field and three more.
FIELDS_AFTER_NAME = {"THIN": 4, "THIN_FP": 4, "BRIDGE": 3, "EMPTY": 1}


def layout(name):
    """'31_21__15_13' -> [(31, 21), (15, 13)]"""
    return [tuple(int(b) for b in part.split("_")) for part in name.split("__")]


def key_of(word, ranges):
    key = 0
    for hi, lo in ranges:
        width = hi - lo + 1
        key = (key << width) | ((word >> lo) & ((1 << width) - 1))
    return key


def value_of(key, ranges):
    word = 0
    for hi, lo in reversed(ranges):
        width = hi - lo + 1
        word |= (key & ((1 << width) - 1)) << lo
        key >>= width
    return word


def mask_of(ranges):
    return sum(((1 << (hi - lo + 1)) - 1) << lo for hi, lo in ranges)


def read_rows():
    with open(os.path.join(ROOT, "sve/decode/decode_maps.inc")) as f:
        maps = re.findall(r"X\((\w+)\)", f.read())
    rows = []
    with open(FORMS) as f:
        for m in ROW.finditer(f.read()):
            rows.append((m.group("map"), int(m.group("key"), 16), m.group("name")))
    return maps, rows


def disassemble(words):
    """The disassembler's text of each word, without its comment; "" where it
    has none."""
    with tempfile.NamedTemporaryFile(suffix=".bin") as blob:
        blob.write(b"".join(w.to_bytes(4, "little") for w in words))
        blob.flush()
        out = subprocess.run([OBJDUMP, "-D", "-b", "binary", "-m", "aarch64", blob.name],
                             capture_output=True, text=True, check=True).stdout
    texts = [""] * len(words)
    for line in out.splitlines():
        m = re.match(r"\s*([0-9a-f]+):\s+[0-9a-f]{8}\s+(.*)$", line)
        if m:
            texts[int(m.group(1), 16) // 4] = m.group(2).split("//")[0].split(";")[0].strip()
    return texts


def main():
    maps, rows = read_rows()
    table = {(m, k): name for m, k, name in rows}
    order = [(m, layout(m)) for m in maps]

    def row_for(word):
        for m, ranges in order:
            name = table.get((m, key_of(word, ranges)))
            if name:
                return name
        return None

    rng = random.Random(21)
    seen = {}  # row name -> mnemonics named for it, in order
    for attempt in range(96):
        todo = [(m, k, n) for m, k, n in rows if len(seen.get(n, [])) < 12]
        if not todo:
            break
        words = []
        for m, k, n in todo:
            ranges = layout(m)
            free = 0xFFFFFFFF & ~mask_of(ranges)
            words.append(value_of(k, ranges) | (rng.getrandbits(32) & free))
        for (m, k, n), word, text in zip(todo, words, disassemble(words)):
            mnemonic = text.split(" ")[0].split("\t")[0]
            if row_for(word) == n and mnemonic and not mnemonic.startswith(".") \
                    and mnemonic != "udf":
                seen.setdefault(n, []).append(mnemonic)
    found = {n: max(names, key=names.count) for n, names in seen.items()}
    missing = [n for _, _, n in rows if n not in found]
    if missing:
        sys.exit("gen_mix_mnemonics: no mnemonic for " + ", ".join(missing))
    with open(FORMS) as f:
        text = f.read()

    def with_mnemonic(m):
        fields = m.group("rest").split(", ")
        if len(fields) == FIELDS_AFTER_NAME[m.group("head").split("(")[0]] + 1:
            fields = fields[:-1]  # the mnemonic written before
        return "%s%s, 0x%s, %s%s, %s)" % (m.group("head"), m.group("map"), m.group("key")[2:],
                                        m.group("name"), ", ".join(fields), found[m.group("name")])

    with open(FORMS, "w") as f:
        f.write(ROW.sub(with_mnemonic, text))
    print("gen_mix_mnemonics: %d rows, wrote their mnemonics into %s" % (len(rows), FORMS))

if __name__ == "__main__":
    main()
