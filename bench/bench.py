#!/usr/bin/env python3
"""make bench: what an emulated SVE instruction costs.

Each kernel in BUILD/bench/kernels.txt runs
  on the reference  (qemu-aarch64 -cpu max,sve384=on) with the instruction-count
                    plugin: guest instructions and SVE instructions executed;
  under zorvo       on the processor without SVE, with the same plugin and
                    --stats: guest instructions, signals, fragment entries;
and then --runs more times each, alternating, without the plugin, for the
wall-clock medians. Guest instructions per emulated SVE instruction =
(zorvo total - (reference total - reference SVE)) / reference SVE: what the
same run costs on a processor without SVE, apart from the signals themselves.

The table goes to standard output and to --out (bench/results.md), whose last
line keeps the figures so that a later run, for instance with a changed
runtime, can show itself next to them: --compare bench/results.md.
"""
import argparse
import datetime
import json
import os
import platform
import re
import signal
import statistics
import subprocess
import sys
import tempfile
import time

SYSROOT = "/usr/aarch64-linux-gnu"
REFERENCE_CPU = "max,sve384=on"
NO_SVE_CPU = "max,sve=off"
DATA_MARK = "<!-- bench figures: "
STDERR_LIMIT = 1 << 20  # a kernel that loops on a failing word says so endlessly


def run(cmd, env, timeout, scratch):
    """Runs cmd; returns (status or a reason it was stopped, stdout, stderr, seconds)."""
    out_path, err_path = os.path.join(scratch, "stdout"), os.path.join(scratch, "stderr")
    with open(out_path, "wb") as out, open(err_path, "wb") as err:
        start = time.perf_counter()
        proc = subprocess.Popen(cmd, env=env, stdout=out, stderr=err, start_new_session=True)
        status = None
        while status is None:
            try:
                status = proc.wait(timeout=0.05)
            except subprocess.TimeoutExpired:
                if time.perf_counter() - start > timeout:
                    status = "timed out after %d s" % timeout
                elif os.path.getsize(err_path) > STDERR_LIMIT:
                    status = "stopped after 1 MiB of errors"
                if status is not None:
                    os.killpg(proc.pid, signal.SIGKILL)
                    proc.wait()
        seconds = time.perf_counter() - start
    with open(out_path, errors="replace") as out, open(err_path, errors="replace") as err:
        return status, out.read(), err.read(), seconds


def read_counts(path):
    try:
        with open(path) as f:
            m = re.match(r"insns (\d+) sve (\d+)", f.read())
    except OSError:
        return None
    return (int(m.group(1)), int(m.group(2))) if m else None


def mnemonics(words):
    """The disassembled mnemonic of each 32-bit word, as objdump names it."""
    if not words:
        return []
    with tempfile.NamedTemporaryFile(suffix=".bin") as f:
        f.write(b"".join(int(w, 16).to_bytes(4, "little") for w in words))
        f.flush()
        listing = subprocess.run(
            ["aarch64-linux-gnu-objdump", "-D", "-b", "binary", "-m", "aarch64", f.name],
            capture_output=True, text=True).stdout
    names = re.findall(r"^\s*[0-9a-f]+:\s+[0-9a-f]{8}\s+(\S+)", listing, re.M)
    return names if len(names) == len(words) else words


def failure(status, out, err):
    """None when the kernel ran and said its result is right, else why not."""
    words = re.findall(r"failed to emulate SVE instruction 0x([0-9a-f]{8})", err)
    words += re.findall(r"Unimplemented instruction: \[\s*[0-9a-f]+:\s*([0-9a-f]{8})", err)
    if words:
        return "fails: needs " + ", ".join(sorted(set(mnemonics(sorted(set(words))))))
    if status == 0 and re.search(r": ok\b", out):
        return None
    if isinstance(status, str):
        return "fails: " + status
    if "WRONG RESULT" in out:
        return "fails: wrong result"
    if status < 0 or status > 128:
        sig = -status if status < 0 else status - 128
        return "fails: killed by %s" % signal.Signals(sig).name
    last = (err.strip().splitlines() or ["no message"])[-1]
    return "fails: status %s (%s)" % (status, last[:80])


def measure(kernel, args, scratch):
    path = os.path.join(args.build, "bench", kernel)
    plugin = os.path.abspath(os.path.join(args.build, "bench", "insncount.so"))
    zorvo = os.path.join(args.build, "tools", "zorvo")
    counts_file = os.path.join(scratch, "counts")
    qemu = ["qemu-aarch64", "-L", SYSROOT]
    with_plugin = ["-plugin", plugin + ",out=" + counts_file]
    reference = qemu + ["-cpu", REFERENCE_CPU]
    no_sve = " ".join(qemu + ["-cpu", NO_SVE_CPU])
    plain_env = dict(os.environ, ZORVO_QEMU=no_sve)
    counted_env = dict(os.environ, ZORVO_QEMU=" ".join([no_sve] + with_plugin))
    under_zorvo = [zorvo, "--", path]
    row = {"kernel": kernel}

    status, out, err, _ = run(reference + with_plugin + [path], counted_env, args.timeout, scratch)
    row["reference_fails"] = failure(status, out, err)
    row["reference"] = read_counts(counts_file)
    if row["reference_fails"]:
        return row

    if os.path.exists(counts_file):
        os.remove(counts_file)
    status, out, err, _ = run([zorvo, "--stats", "--", path], counted_env, args.timeout, scratch)
    row["zorvo_fails"] = failure(status, out, err)
    if row["zorvo_fails"]:
        return row
    row["zorvo"] = read_counts(counts_file)
    stats = re.search(r"(\d+) signals taken, (\d+) fragment entries", err)
    row["signals"], row["entries"] = map(int, stats.groups()) if stats else (None, None)

    times = {"reference": [], "zorvo": []}
    for _ in range(args.runs):
        status, out, err, seconds = run(reference + [path], plain_env, args.timeout, scratch)
        times["reference"].append(seconds)
        status, out, err, seconds = run(under_zorvo, plain_env, args.timeout, scratch)
        row["zorvo_fails"] = failure(status, out, err)
        if row["zorvo_fails"]:
            row["zorvo_fails"] += " (in a timed run)"
            return row
        times["zorvo"].append(seconds)
    row["reference_s"] = statistics.median(times["reference"])
    row["zorvo_s"] = statistics.median(times["zorvo"])
    return row


def per_sve(row):
    """Guest instructions per emulated SVE instruction, or None."""
    if not row.get("zorvo") or not row.get("reference") or not row["reference"][1]:
        return None
    total, sve = row["reference"]
    return (row["zorvo"][0] - (total - sve)) / sve


def signals_per_entry(row):
    return row["signals"] / row["entries"] if row.get("entries") else None


def fmt(value, spec):
    return "—" if value is None else format(value, spec)


def results_table(rows):
    lines = [
        "| kernel | under zorvo | reference instructions | reference SVE | zorvo instructions "
        "| instructions per emulated SVE | reference s | zorvo s | time ratio "
        "| signals per block execution |",
        "|---|---|---:|---:|---:|---:|---:|---:|---:|---:|",
    ]
    for r in rows:
        ref = r.get("reference") or (None, None)
        result = r.get("reference_fails") and "reference " + r["reference_fails"]
        result = result or r.get("zorvo_fails") or "ok"
        ratio = r["zorvo_s"] / r["reference_s"] if r.get("reference_s") else None
        lines.append("| %s |" % " | ".join([
            r["kernel"], result, fmt(ref[0], ","), fmt(ref[1], ","),
            fmt((r.get("zorvo") or (None,))[0], ","), fmt(per_sve(r), ",.1f"),
            fmt(r.get("reference_s"), ".3f"), fmt(r.get("zorvo_s"), ".3f"),
            fmt(ratio, ".1f"), fmt(signals_per_entry(r), ".3f")]))
    return "\n".join(lines)


def comparison_table(before, after):
    """This run next to an earlier one, kernel by kernel."""
    old = {r["kernel"]: r for r in before["rows"]}
    head = "%s → %s" % (before["label"], after["label"])
    lines = [
        "| kernel (%s) | instructions per emulated SVE | zorvo s | signals per block execution |"
        % head,
        "|---|---:|---:|---:|",
    ]

    def pair(then, now, spec):
        return "%s → %s" % (fmt(then, spec), fmt(now, spec))

    for r in after["rows"]:
        o = old.get(r["kernel"], {"kernel": r["kernel"]})
        lines.append("| %s | %s | %s | %s |" % (
            r["kernel"], pair(per_sve(o), per_sve(r), ",.1f"),
            pair(o.get("zorvo_s"), r.get("zorvo_s"), ".3f"),
            pair(signals_per_entry(o), signals_per_entry(r), ".3f")))
    return "\n".join(lines)


def host():
    model = "unknown processor"
    try:
        with open("/proc/cpuinfo") as f:
            m = re.search(r"^model name\s*:\s*(.+)$", f.read(), re.M)
            model = m.group(1).strip() if m else model
    except OSError:
        pass
    qemu = subprocess.run(["qemu-aarch64", "--version"], capture_output=True,
                          text=True).stdout.splitlines()
    return "%s, %s, %d cores; %s" % (platform.machine(), model, os.cpu_count(),
                                     qemu[0] if qemu else "qemu-aarch64 version unknown")


def read_previous(path):
    with open(path) as f:
        for line in f:
            if line.startswith(DATA_MARK):
                return json.loads(line[len(DATA_MARK):].rsplit("-->", 1)[0])
    sys.exit("bench: %s holds no figures to compare with" % path)


def default_label():
    head = subprocess.run(["git", "rev-parse", "--short", "HEAD"], capture_output=True, text=True)
    return "commit " + head.stdout.strip() if head.returncode == 0 else "this run"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", default="build", help="build directory (default: build)")
    parser.add_argument("--runs", type=int, default=5, help="timed runs of each (default: 5)")
    parser.add_argument("--timeout", type=int, default=120, help="seconds allowed per run")
    parser.add_argument("--kernels", help="comma-separated subset of the kernels")
    parser.add_argument("--label", default=None, help="names this run (default: the commit)")
    parser.add_argument("--compare", metavar="FILE", help="an earlier results file to show next to")
    parser.add_argument("--out", default=os.path.join(os.path.dirname(__file__), "results.md"))
    args = parser.parse_args()

    with open(os.path.join(args.build, "bench", "kernels.txt")) as f:
        kernels = f.read().split()
    if args.kernels:
        kernels = [k for k in kernels if k in args.kernels.split(",")]
    before = read_previous(args.compare) if args.compare else None

    started = datetime.datetime.now()
    load = os.getloadavg()[0]
    rows = []
    with tempfile.TemporaryDirectory(prefix="zorvo-bench-") as scratch:
        for kernel in kernels:
            print("bench: %s ..." % kernel, file=sys.stderr, flush=True)
            rows.append(measure(kernel, args, scratch))
    figures = {"label": args.label or default_label(), "rows": rows}

    text = ["# Benchmarks: what an emulated SVE instruction costs", "",
            "`make bench` on %s, runtime: %s." % (started.strftime("%Y-%m-%d %H:%M"),
                                                  figures["label"]),
            "Host: %s. Load average at the start: %.1f." % (host(), load), "",
            "Instructions are guest instructions counted by bench/tools/insncount.c; "
            "instructions per emulated SVE = (zorvo − (reference − reference SVE)) / reference "
            "SVE. Times are the median wall-clock of %d runs of each under qemu, alternating; "
            "the ratio is zorvo / reference. Signals per block execution: `zorvo --stats` "
            "signals taken / fragment entries." % args.runs, "",
            results_table(rows), ""]
    if before:
        text += ["Compared with the earlier run:", "", comparison_table(before, figures), ""]
    text.append(DATA_MARK + json.dumps(figures) + " -->")
    print("\n".join(text[:-1]))
    with open(args.out, "w") as f:
        f.write("\n".join(text) + "\n")
    print("bench: wrote %s in %.0f s" % (args.out, (datetime.datetime.now() - started)
                                         .total_seconds()), file=sys.stderr)


if __name__ == "__main__":
    main()
