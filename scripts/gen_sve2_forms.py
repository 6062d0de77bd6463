#!/usr/bin/env python3
"""Derives every SVE2, SVE BF16 and SVE matrix-multiply instruction form from
the GNU disassembler and assembler, and writes them as data to
sve/decode/sve2_forms.txt: one line per form with its fixed bits (mask and
value), the decode map and key a row of forms.inc would use, the extension
that brings it, and the form's text with operands blanked.

How a form is found:
  1. Every word of the SVE encoding space with bits 31:10 enumerated and a few
     patterns in bits 9:0 is disassembled. Register numbers and immediates are
     blanked, so `saddlb z1.h, z2.b, z3.b` and `saddlb z7.h, z0.b, z9.b` have
     one signature; each signature is a form.
  2. A form belongs here when the assembler accepts its text for the SVE2
     architecture with the optional extensions and rejects it for plain SVE.
  3. Its fixed bits: a bit is an operand bit when flipping it, in any of a few
     words of the form, leaves the signature unchanged.
Then every form must be disjoint from every other and from the rows already
in forms.inc (under the cascade, any overlap is a decode fault).

  python3 scripts/gen_sve2_forms.py           rewrite the data file
  python3 scripts/gen_sve2_forms.py --check   fail unless the file is current

The SVE2 rows of forms.inc are written from sve/decode/sve2_rows.txt, one
line per row: `form text | family | decoder | shape | ELEM_x`, the form text
as in the data file. They stand last in forms.inc, between two marker lines;
--check also fails when they differ from what that file gives.
"""
import os
import random
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from gen_mix_mnemonics import disassemble, key_of, layout, mask_of, read_rows, value_of  # noqa: E402

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OUT = os.path.join(ROOT, "sve/decode/sve2_forms.txt")
OBJDUMP = "aarch64-linux-gnu-objdump"
AS = "aarch64-linux-gnu-as"
PLAIN_SVE = "armv8.2-a+sve"
# The extensions, in the order a form is attributed to: the first whose
# architecture accepts it.
EXTENSIONS = [
    ("sve2", "armv8.2-a+sve2"),
    ("sve2-aes", "armv8.2-a+sve2-aes"),
    ("sve2-sha3", "armv8.2-a+sve2-sha3"),
    ("sve2-sm4", "armv8.2-a+sve2-sm4"),
    ("sve2-bitperm", "armv8.2-a+sve2-bitperm"),
    ("bf16", "armv8.2-a+sve+bf16"),
    ("i8mm", "armv8.2-a+sve+i8mm"),
    ("f32mm", "armv8.2-a+sve+f32mm"),
    ("f64mm", "armv8.2-a+sve+f64mm"),
]
ALL = "armv9-a+sve2+sve2-aes+sve2-sha3+sve2-sm4+sve2-bitperm+bf16+i8mm+f32mm+f64mm"
# Bits 9:0 are not enumerated; these patterns reach forms that fix some of them.
LOW_PATTERNS = [0x000, 0x3ff, 0x010, 0x1ef, 0x20f, 0x3e0, 0x01f, 0x155, 0x2aa]
FLIP_SAMPLES = 6


def signature(text):
    """The form a disassembled word belongs to: operands blanked."""
    if not text or text.startswith(".") or text.startswith("udf"):
        return None
    s = re.sub(r"\s+", " ", text)
    s = re.sub(r"\b([zp])\d+\b", r"\1", s)
    s = re.sub(r"\b([xw])(\d+|zr)\b", r"\1", s)
    s = re.sub(r"#-?(0x[0-9a-f]+|[0-9][0-9.e+-]*)", "#", s)
    s = re.sub(r"\[\d+\]", "[#]", s)
    return s


def accepted(texts, march):
    """Which lines the assembler takes for this architecture."""
    with tempfile.TemporaryDirectory() as d:
        src = os.path.join(d, "f.s")
        with open(src, "w") as f:
            f.write("\n".join(texts) + "\n")
        err = subprocess.run([AS, "-march=" + march, "-o", os.path.join(d, "f.o"), src],
                             capture_output=True, text=True).stderr
    bad = {int(m.group(1)) for m in re.finditer(r"f\.s:(\d+): Error", err)}
    return [i + 1 not in bad for i in range(len(texts))]


def ranges_of(mask):
    """0xffe0fc00 -> [(31, 21), (15, 10)]"""
    out, bit = [], 31
    while bit >= 0:
        if mask >> bit & 1:
            hi = bit
            while bit >= 0 and mask >> bit & 1:
                bit -= 1
            out.append((hi, bit + 1))
        else:
            bit -= 1
    return out


def map_name(ranges):
    return "__".join("%d_%d" % r for r in ranges)


def existing_rows():
    """The decode maps and, for every row of forms.inc, its mask, value and name."""
    maps, rows = read_rows()
    return maps, [(mask_of(layout(m)), value_of(k, layout(m)), name) for m, k, name in rows]


def discover():
    words = [hi << 29 | 0b0010 << 25 | mid << 10 | low
             for low in LOW_PATTERNS for hi in range(8) for mid in range(1 << 15)]
    groups = {}
    for word, text in zip(words, disassemble(words)):
        sig = signature(text)
        if sig:
            groups.setdefault(sig, []).append((word, text))
    sigs = sorted(groups)
    texts = [groups[s][0][1] for s in sigs]
    ours = accepted(texts, ALL)
    plain = accepted(texts, PLAIN_SVE)
    sigs = [s for s, a, p in zip(sigs, ours, plain) if a and not p]
    texts = [groups[s][0][1] for s in sigs]
    extension = ["?"] * len(sigs)
    for name, march in EXTENSIONS:
        for i, ok in enumerate(accepted(texts, march)):
            if ok and extension[i] == "?":
                extension[i] = name

    rng = random.Random(20)
    samples = {s: rng.sample(groups[s], min(FLIP_SAMPLES, len(groups[s]))) for s in sigs}
    flips = [(s, w ^ (1 << b), b) for s in sigs for w, _ in samples[s] for b in range(32)]
    operand = {s: 0 for s in sigs}
    for (s, _, b), text in zip(flips, disassemble([w for _, w, _ in flips])):
        if signature(text) == s:
            operand[s] |= 1 << b
    forms = []
    for s, ext in zip(sigs, extension):
        mask = ~operand[s] & 0xFFFFFFFF
        values = sorted({w & mask for w, _ in groups[s]})
        for value in values:
            forms.append((mask, value, ext, s))
    return merge_spellings(forms)


def merge_spellings(forms):
    """One form the disassembler spells several ways (`[x0]` and `[x0, #0]`,
    `sp` for register 31) is found as overlapping forms of one mnemonic: they
    become one, fixed where all of them are fixed and agree."""
    merged = True
    while merged:
        merged = False
        for i in range(len(forms)):
            for j in range(i + 1, len(forms)):
                (m1, v1, e1, s1), (m2, v2, _, s2) = forms[i], forms[j]
                if s1.split()[0] == s2.split()[0] and (v1 ^ v2) & m1 & m2 == 0:
                    mask = m1 & m2 & ~(v1 ^ v2)
                    forms[i] = (mask, v1 & mask, e1, max(s1, s2, key=len))
                    del forms[j]
                    merged = True
                    break
            if merged:
                break
    return forms


def check_disjoint(forms, rows):
    problems = []
    for i, (mask, value, _, sig) in enumerate(forms):
        for omask, ovalue, name in rows:
            if (omask, ovalue) == (mask, value):
                continue  # the form's own row
            if (value ^ ovalue) & mask & omask == 0:
                problems.append("%s overlaps the row %s" % (sig, name))
        for mask2, value2, _, sig2 in forms[i + 1:]:
            if (value ^ value2) & mask & mask2 == 0:
                problems.append("%s overlaps %s" % (sig, sig2))
    return problems


def render(forms, maps):
    lines = ["# SVE2, SVE BF16 and SVE matrix-multiply instruction forms, written by",
             "# scripts/gen_sve2_forms.py from the GNU disassembler and assembler; do not",
             "# edit. One form a line: fixed-bit mask, value, the decode map and key of",
             "# its row (a map marked * is not in decode_maps.inc yet), extension, and",
             "# the form with operands blanked.",
             "# forms %d" % len(forms)]
    for mask, value, ext, sig in sorted(forms, key=lambda f: (f[3], f[1])):
        ranges = ranges_of(mask)
        name = map_name(ranges)
        lines.append("%08x %08x %s%s 0x%x %s %s" % (mask, value, name, "" if name in maps else "*",
                                                   key_of(value, ranges), ext, sig))
    return "\n".join(lines) + "\n"


ROWS = os.path.join(ROOT, "sve/decode/sve2_rows.txt")
FORMS = os.path.join(ROOT, "sve/decode/forms.inc")
BEGIN = "// SVE2 rows: written by scripts/gen_sve2_forms.py from sve2_rows.txt\n"
END = "// end of SVE2 rows\n"


def forms_with_rows(forms_text):
    """forms.inc with its SVE2 section as sve2_rows.txt gives it."""
    head = forms_text.split(BEGIN)[0] if BEGIN in forms_text else \
        forms_text[:forms_text.rindex("\n#undef THIN\n") + 1]
    tail = forms_text[forms_text.rindex("\n#undef THIN\n") + 1:]
    return head + BEGIN + "".join(r + "\n" for r in sve2_rows(ROWS)) + END + "\n" + tail


def sve2_rows(request_file):
    forms = {}
    with open(OUT) as f:
        for line in f:
            if not line.startswith("#"):
                mask, value, name, key, _, sig = line.rstrip("\n").split(" ", 5)
                forms.setdefault(sig, []).append((name.rstrip("*"), key))
    with open(request_file) as f:
        for line in f:
            if not line.strip() or line.startswith("#"):
                continue
            sig, family, decoder, shape, elem = [x.strip() for x in line.split("|")]
            if len(forms.get(sig, [])) != 1:
                sys.exit("gen_sve2_forms: %d forms read `%s`" % (len(forms.get(sig, [])), sig))
            name, key = forms[sig][0]
            yield ("BRIDGE(%s, %s, %s, %s, %s, %s, %s)" % (family, name, key, decoder, shape, elem,
                                                       sig.split()[0]))


def main():
    with open(FORMS) as f:
        forms_text = f.read()
    if forms_with_rows(forms_text) != forms_text:
        if "--check" in sys.argv:
            sys.exit("gen_sve2_forms: the SVE2 rows of forms.inc are not those of sve2_rows.txt")
        with open(FORMS, "w") as f:
            f.write(forms_with_rows(forms_text))
    maps, rows = existing_rows()
    forms = discover()
    problems = check_disjoint(forms, rows)
    if problems:
        sys.exit("gen_sve2_forms: forms overlap:\n  " + "\n  ".join(problems[:40]))
    text = render(forms, maps)
    if "--check" in sys.argv:
        with open(OUT) as f:
            if f.read() != text:
                sys.exit("gen_sve2_forms: %s is out of date; run scripts/gen_sve2_forms.py" % OUT)
        done = {(m, v) for m, v, _ in rows}
        print("gen_sve2_forms: %d forms, current and disjoint; %d have rows" %
              (len(forms), sum((m, v) in done for m, v, _, _ in forms)))
        return
    with open(OUT, "w") as f:
        f.write(text)
    print("gen_sve2_forms: wrote %d forms to %s" % (len(forms), OUT))


if __name__ == "__main__":
    main()
