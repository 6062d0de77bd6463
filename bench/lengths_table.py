#!/usr/bin/env python3
"""The steady-state cost per emulated SVE instruction at several vector
lengths, side by side, from results files of `bench.py --vl BITS`.

    python3 bench/lengths_table.py bench/results-vl128.md bench/results-vl256.md \\
        bench/results.md bench/results-vl512.md --out bench/results-lengths.md

Each length's figure is also given as a multiple of the figure at 384 bits.
"""
import argparse
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import bench  # noqa: E402


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results", nargs="+", help="results files of bench.py")
    parser.add_argument("--out", required=True)
    args = parser.parse_args()
    runs = sorted((bench.read_previous(path) for path in args.results),
                  key=lambda f: f.get("vector_bits", bench.DEFAULT_VECTOR_BITS))
    bits = [f.get("vector_bits", bench.DEFAULT_VECTOR_BITS) for f in runs]
    if bench.DEFAULT_VECTOR_BITS not in bits:
        sys.exit("lengths_table: no results at %d bits to compare with" % bench.DEFAULT_VECTOR_BITS)
    base = runs[bits.index(bench.DEFAULT_VECTOR_BITS)]
    per_kernel = [{r["kernel"]: bench.steady_per_sve(r) for r in f["rows"]} for f in runs]
    kernels = [r["kernel"] for r in base["rows"]]
    lines = ["# Steady-state cost at each vector length", "",
             "Guest instructions per emulated SVE instruction in the steady state "
             "(bench/README.md), each kernel on the reference of that length and under "
             "`zorvo --vl BITS`; in brackets the multiple of the figure at 384 bits. Runs: %s."
             % ", ".join("%d bits %s" % (b, f["label"]) for b, f in zip(bits, runs)), "",
             "| kernel | " + " | ".join("%d bits" % b for b in bits) + " |",
             "|---|" + "---:|" * len(bits)]
    worst = {b: 0.0 for b in bits}
    for k in kernels:
        at_base = per_kernel[bits.index(bench.DEFAULT_VECTOR_BITS)].get(k)
        cells = []
        for b, figures in zip(bits, per_kernel):
            v = figures.get(k)
            if v is None:
                cells.append("—")
            elif at_base:
                cells.append("%.1f (%.2f)" % (v, v / at_base))
                worst[b] = max(worst[b], v / at_base)
            else:
                cells.append("%.1f" % v)
        lines.append("| %s | %s |" % (k, " | ".join(cells)))
    lines += ["", "Largest multiple of the 384-bit figure: " +
              ", ".join("%d bits %.2f" % (b, worst[b]) for b in bits
                        if b != bench.DEFAULT_VECTOR_BITS) + "."]
    with open(args.out, "w") as f:
        f.write("\n".join(lines) + "\n")
    print("\n".join(lines))


if __name__ == "__main__":
    main()
