#!/usr/bin/env python3
"""make bench: what an emulated SVE instruction costs.

Each kernel in BUILD/bench/kernels.txt runs, at two repeat counts (its first
argument), each with the instruction-count plugin:
  on the reference  (qemu-aarch64 -cpu max,sve384=on): guest instructions and
                    SVE instructions executed;
  under zorvo       on the processor without SVE, with --stats: guest
                    instructions, signals, fragment entries, words translated,
                    code bytes;
  under QEMU-user   the arm64 qemu-aarch64-static, run by the processor without
                    SVE, emulating the reference processor: guest instructions
                    of the outer processor;
  under zorvo with the profiling plugin (tools/insnprofile.c), unless
                    --no-profile: guest instructions by function, of which
                    COST_RULES picks those that build code;
and then --runs more times on the reference and under zorvo, alternating,
without the plugin, for the wall-clock medians. Guest instructions per
emulated SVE instruction = (zorvo total - (reference total - reference SVE)) /
reference SVE: what the same run costs on a processor without SVE, apart from
the signals themselves. The steady state is the same ratio of the differences
between the long and the short run, where start-up and translation cancel.
Translation per SVE word, profiled: the functions that build code in twice the
short run less the long run less the program without SVE, per SVE word
translated.

The table goes to standard output and to --out (bench/results.md), whose last
line keeps the figures so that a later run, for instance with a changed
runtime, can show itself next to them: --compare bench/results.md.
"""
import argparse
import collections
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
import threading
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "tools"))
import insnprofile  # noqa: E402

SYSROOT = "/usr/aarch64-linux-gnu"
SHORT_REPEAT, LONG_REPEAT = 5, 10
QEMU_USER = os.path.join("bench", "qemu-user", "usr", "bin", "qemu-aarch64-static")
DEFAULT_VECTOR_BITS = 384


def reference_cpu(bits):
    """The reference processor at a vector length: above 512 bits qemu starts
    a program at its longest length only when told to."""
    cpu = "max,sve%d=on" % bits
    return cpu if bits <= 512 else cpu + ",sve-default-vector-length=%d" % (bits // 8)


REFERENCE_CPU = reference_cpu(DEFAULT_VECTOR_BITS)  # --vl changes it
NO_SVE_CPU = "max,sve=off"
DATA_MARK = "<!-- bench figures: "
STDERR_LIMIT = 1 << 20  # a kernel that loops on a failing word says so endlessly


TRANSLATION, EMULATION, OTHER = "translation", "emulation", "other"
# What the functions left in a profile do, by file and function name (regular
# expressions matched at their start; the first rule that matches wins).
# Translation is what builds code; "program" stands for the kernel's own file.
# The C library, the loader and PLT stubs are not here: each of their
# instructions counts for the function that called them (insnprofile.c).
COST_RULES = (
    (r"\[anon\]$", "", EMULATION),  # generated code: fragments, stubs
    (r"program$", "", EMULATION),
    # The runtime builds blocks, but also starts and ends threads and the
    # process, and passes signals and system calls on to the application.
    (r"libzorvo_runtime\.so$",
     r"((attach|detach|register|unregister)_thread|run_thread_|run_exit_events|process_ending"
     r"|start_runtime|drmgr_init|resolve_libc_functions|take_static_system_call|fault_signal"
     r"|deliver_handed_over_fault|run_handler|call_application_handler|zorvo_call_handler"
     r"|(pthread_)?sig(action|procmask)$|signal$"
     # Waiting while another thread builds (it spins on the code lock) builds
     # nothing, and how long it lasts depends on how the threads are scheduled.
     r"|code_lock::code_lock|__aarch64_swp1_acq$)", OTHER),
    (r"libzorvo_runtime\.so$", "", TRANSLATION),  # scan, IR, encoding, fragments, patching
    # The client's rewriting and inline code, and the form lookup it asks.
    (r"libsve_client\.so$",
     r"(event_instruction_change|rewrite_runs|close_run|insert_inline|call_routine"
     r"|load_trace_gate|mix_insert_count|mix$|translate_inline|op_of_form|predicate_op_of"
     r"|form_is_inline|emit_|branch_unless|pattern_elements|lane_ones|inline_code::|a64::"
     r"|find_form|get_sve_handler|plan_record_word|\w+::thin_decoders"
     r"|thin_decoders_now)", TRANSLATION),
    (r"libsve_client\.so$", "", EMULATION),  # handlers, generic tier, fp, transfer
    (r"", "", OTHER),  # the loader, the preloaded library, the trace sink
)


def function_name(symbol):
    """A demangled symbol without return type, arguments or template
    arguments: "void a64::(anonymous namespace)::f<int>(x)" is "a64::f"."""
    name = symbol.split("@")[0].replace("(anonymous namespace)::", "")
    name = re.split(r"[(<]", name, 1)[0]
    return name.split()[-1] if name.split() else name


def cost_kind(file, symbol, program):
    """TRANSLATION, EMULATION or OTHER for a function of the profile."""
    file = "program" if file == program else file
    for file_rule, symbol_rule, kind in COST_RULES:
        if re.match(file_rule, file) and re.match(symbol_rule, function_name(symbol)):
            return kind
    return OTHER


def profiled_kinds(counts, program):
    """Instructions by kind; a block counted for its caller takes the
    caller's kind, and one with none (a thread's first) is OTHER."""
    kinds = dict.fromkeys((TRANSLATION, EMULATION, OTHER), 0)
    for (file, symbol, caller), n in counts.items():
        if caller is not None:
            file, symbol = caller
        kinds[cost_kind(file, symbol, program) if file != "[none]" else OTHER] += n
    return kinds


def run(cmd, env, timeout, scratch):
    """Runs cmd; returns (status or a reason it was stopped, stdout, stderr, seconds)."""
    out_path, err_path = os.path.join(scratch, "stdout"), os.path.join(scratch, "stderr")
    stopped, done = [], threading.Event()

    def watch(proc, start):
        # Off the waiting thread, so that the time measured ends when the program does.
        while not done.wait(0.1):
            if time.perf_counter() - start > timeout:
                stopped.append("timed out after %d s" % timeout)
            elif os.path.getsize(err_path) > STDERR_LIMIT:
                stopped.append("stopped after 1 MiB of errors")
            if stopped:
                try:
                    os.killpg(proc.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                return

    with open(out_path, "wb") as out, open(err_path, "wb") as err:
        start = time.perf_counter()
        proc = subprocess.Popen(cmd, env=env, stdout=out, stderr=err, start_new_session=True)
        watcher = threading.Thread(target=watch, args=(proc, start))
        watcher.start()
        status = proc.wait()
        seconds = time.perf_counter() - start
        done.set()
        watcher.join()
    with open(out_path, errors="replace") as out, open(err_path, errors="replace") as err:
        return (stopped[0] if stopped else status), out.read(), err.read(), seconds


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


class Runner:
    """Runs programs on the reference and under zorvo, with or without counting."""

    def __init__(self, build, timeout, scratch, zorvo_options=(), qemu_user=None):
        self.build, self.timeout, self.scratch = build, timeout, scratch
        self.counts_file = os.path.join(scratch, "counts")
        plugin = os.path.abspath(os.path.join(build, "bench", "insncount.so"))
        with_plugin = ["-plugin", plugin + ",out=" + self.counts_file]
        qemu = ["qemu-aarch64", "-L", SYSROOT]
        no_sve = " ".join(qemu + ["-cpu", NO_SVE_CPU])
        zorvo = os.path.join(build, "tools", "zorvo")
        # Both sides see the same environment, which the guest's start-up reads.
        env = dict(os.environ, ZORVO_QEMU=no_sve)
        counted_env = dict(os.environ, ZORVO_QEMU=" ".join([no_sve] + with_plugin))
        reference = qemu + ["-cpu", REFERENCE_CPU]
        self.ways = {
            "reference": (reference, env),
            "counted reference": (reference + with_plugin, counted_env),
            "zorvo": ([zorvo, *zorvo_options, "--"], env),
            "counted zorvo": ([zorvo, "--stats", *zorvo_options, "--"], counted_env),
            "counted zorvo --mix": ([zorvo, "--stats", "--mix", *zorvo_options, "--"],
                                    counted_env),
        }
        self.profile_file = os.path.join(scratch, "profile")
        profiler = os.path.abspath(os.path.join(build, "bench", "insnprofile.so"))
        self.ways["profiled zorvo"] = ([zorvo, *zorvo_options, "--"], dict(
            os.environ, ZORVO_QEMU=" ".join([no_sve, "-plugin",
                                             profiler + ",out=" + self.profile_file])))
        self.objects = insnprofile.Objects()
        if qemu_user:
            # The outer processor counts; the inner emulator is the user's.
            inner = [qemu_user, "-L", SYSROOT, "-cpu", REFERENCE_CPU]
            self.ways["counted qemu-user"] = (
                qemu + ["-cpu", NO_SVE_CPU] + with_plugin + inner, env)
            self.ways["qemu-user"] = (qemu + ["-cpu", NO_SVE_CPU] + inner, env)

    def run(self, way, program, args=()):
        """(why it failed or None, stderr, seconds)"""
        prefix, env = self.ways[way]
        path = os.path.join(self.build, "bench", program)
        status, out, err, seconds = run(prefix + [path, *args], env, self.timeout, self.scratch)
        return failure(status, out, err), err, seconds

    def count(self, way, program, args=()):
        """(why it failed or None, (instructions, SVE instructions), stderr)"""
        if os.path.exists(self.counts_file):
            os.remove(self.counts_file)
        failed, err, _ = self.run(way, program, args)
        return failed, read_counts(self.counts_file), err

    def profile(self, program, args=()):
        """(why it failed or None, instructions by (file, symbol, caller))"""
        if os.path.exists(self.profile_file):
            os.remove(self.profile_file)
        failed, _, _ = self.run("profiled zorvo", program, args)
        if failed or not os.path.exists(self.profile_file):
            return failed or "fails: no profile written", None
        return None, insnprofile.read_by_symbol(self.profile_file, self.objects)


def one_off_profile(runner, kernel, startup_profile):
    """Instructions by kind that a run spends once: twice the short run less
    the long one (the steady state cancels) less the program without SVE
    (start-up cancels); None when a run failed."""
    if startup_profile is None:
        return None
    combined = collections.Counter()
    for factor, repeat in ((2, SHORT_REPEAT), (-1, LONG_REPEAT)):
        failed, counts = runner.profile(kernel, [str(repeat)])
        if failed:
            return None
        for key, n in counts.items():
            combined[key] += factor * n
    for key, n in startup_profile.items():
        combined[key] -= n
    return profiled_kinds(combined, kernel)


def measure(kernel, runner, runs, startup_profile=None):
    row = {"kernel": kernel, "repeats": [SHORT_REPEAT, LONG_REPEAT]}
    short, long = [str(SHORT_REPEAT)], [str(LONG_REPEAT)]
    row["reference_fails"], row["reference"], _ = runner.count("counted reference", kernel)
    if row["reference_fails"]:
        return row
    for key, args in (("reference_short", short), ("reference_long", long)):
        failed, row[key], _ = runner.count("counted reference", kernel, args)
        row["reference_fails"] = row["reference_fails"] or failed
    if row["reference_fails"]:
        return row
    if "counted qemu-user" in runner.ways:
        for key, args in (("qemu_user_short", short), ("qemu_user_long", long)):
            failed, row[key], _ = runner.count("counted qemu-user", kernel, args)
            if failed:
                row[key] = None
    # The instructions of a failed run measure nothing.
    row["zorvo_fails"], counts, err = runner.count("counted zorvo", kernel)
    if row["zorvo_fails"]:
        return row
    row["zorvo"] = counts
    stats = re.search(r"(\d+) blocks built, \d+ fragments, (\d+) signals taken, "
                      r"(\d+) fragment entries(?:\nzorvo: (\d+) SVE words translated, "
                      r"(\d+) bytes of code)?", err)
    (row["blocks"], row["signals"], row["entries"], row["words"],
     row["code_bytes"]) = ([None if g is None else int(g) for g in stats.groups()] if stats
                           else (None,) * 5)
    for key, args in (("zorvo_short", short), ("zorvo_long", long)):
        row["zorvo_fails"], row[key], _ = runner.count("counted zorvo", kernel, args)
        if row["zorvo_fails"]:
            return row

    row["profiled"] = one_off_profile(runner, kernel, startup_profile)

    times = {"reference": [], "zorvo": []}
    if "qemu-user" in runner.ways:
        times["qemu-user"] = []
    for _ in range(runs):
        for way in times:
            failed, _, seconds = runner.run(way, kernel)
            if failed and way == "qemu-user":
                continue  # its column stays empty; the kernel's own result stands
            if failed:
                row[way + "_fails"] = failed + " (in a timed run)"
                return row
            times[way].append(seconds)
    row["reference_s"] = statistics.median(times["reference"])
    row["zorvo_s"] = statistics.median(times["zorvo"])
    if times.get("qemu-user"):
        row["qemu_user_s"] = statistics.median(times["qemu-user"])
    return row


def startup_cost(runner):
    """Guest instructions zorvo adds to a program without SVE, or None."""
    ref_failed, ref, _ = runner.count("counted reference", "no_sve")
    zorvo_failed, zorvo, _ = runner.count("counted zorvo", "no_sve")
    if ref_failed or zorvo_failed or not ref or not zorvo:
        return None
    return zorvo[0] - ref[0]


def mix_cost(runner, kernels_rows):
    """Guest instructions that --mix adds: per emulated instruction in steady
    state (mix_loop at two lengths: the difference of the differences), and
    over each whole kernel run, exit report included."""
    short, long_ = 1000, 11000
    counts = {}
    for way in ("counted zorvo", "counted zorvo --mix"):
        for rounds in (short, long_):
            failed, c, _ = runner.count(way, "mix_loop", [str(rounds)])
            if failed or not c:
                return None
            counts[way, rounds] = c[0]
    emulated = 2 * (long_ - short)
    plain = counts["counted zorvo", long_] - counts["counted zorvo", short]
    mixed = counts["counted zorvo --mix", long_] - counts["counted zorvo --mix", short]
    cost = {"steady_without": plain / emulated, "steady_with": mixed / emulated, "kernels": []}
    for row in kernels_rows:
        if row.get("zorvo_fails") or row.get("reference_fails") or not row.get("zorvo"):
            continue
        failed, c, _ = runner.count("counted zorvo --mix", row["kernel"])
        if failed or not c:
            continue
        cost["kernels"].append([row["kernel"], c[0], (c[0] - row["zorvo"][0]) / row["reference"][1]])
    return cost


def mix_cost_text(cost):
    if cost is None:
        return ["Instruction mix: mix_loop did not run under zorvo."]
    lines = ["Instruction mix: `zorvo --mix` counts each emulated instruction with "
             "%.2f guest instructions in steady state (bench/tools/mix_loop.c at 1,000 and 11,000 "
             "rounds of two SVE instructions: %.2f guest instructions per emulated instruction "
             "with --mix, %.2f without); without --mix the rewriter inserts nothing. Over whole "
             "runs --mix adds more, most of it once, at exit: reading the symbol tables of the "
             "program and its libraries, and printing the table:" % (cost["steady_with"] - cost["steady_without"],
                                    cost["steady_with"], cost["steady_without"]), "",
             "| kernel | zorvo --mix instructions | added per emulated SVE instruction |",
             "|---|---:|---:|"]
    for kernel, total, added in cost["kernels"]:
        lines.append("| %s | %s | %.1f |" % (kernel, fmt(total, ","), added))
    return lines


def report_run(build, records, scratch):
    """Writes a synthetic trace of `records` records and reports it with the
    build machine's zorvo-trace: (seconds, peak resident bytes of the report)."""
    trace = os.path.join(scratch, "synthetic.trace")
    subprocess.run([os.path.join(build, "host", "synthetic_trace"), str(records), trace],
                   check=True)
    start = time.monotonic()
    proc = subprocess.Popen([os.path.join(build, "host", "zorvo-trace"), "report", trace, "-o",
                             os.path.join(scratch, "report.html")])
    _, status, usage = os.wait4(proc.pid, 0)
    seconds = time.monotonic() - start
    os.remove(trace)
    if status != 0:
        sys.exit("bench: zorvo-trace report failed on %d records" % records)
    return seconds, usage.ru_maxrss * 1024


def trace_report_cost(build, scratch):
    """The report of 1 and of 10 million records; the difference is the
    steady-state cost per record, without start-up and page writing."""
    small, large = 1000000, 10000000
    s_small, rss_small = report_run(build, small, scratch)
    s_large, rss_large = report_run(build, large, scratch)
    return {"records": large, "seconds": s_large, "peak_rss": rss_large,
            "small_records": small, "small_seconds": s_small, "small_peak_rss": rss_small,
            "ns_per_record": (s_large - s_small) * 1e9 / (large - small)}


def report_cost_text(cost):
    return ("Trace report: `zorvo-trace report` built for the build machine reads a synthetic "
            "trace of %s records (%s MB; tests/trace/synthetic_trace.cpp) in %.2f s with at most "
            "%.1f MiB resident (%s records: %.2f s, %.1f MiB): the memory does not grow with "
            "the trace. Steady state, from the difference of the two: %.0f ns per record."
            % (fmt(cost["records"], ","), fmt(cost["records"] * 48 // 1000000, ","),
               cost["seconds"], cost["peak_rss"] / 2**20, fmt(cost["small_records"], ","),
               cost["small_seconds"], cost["small_peak_rss"] / 2**20, cost["ns_per_record"]))


def per_sve(row, startup=0):
    """Guest instructions per emulated SVE instruction, or None; without
    zorvo's start-up when that is given."""
    if not row.get("zorvo") or not row.get("reference") or not row["reference"][1]:
        return None
    if startup is None:
        return None
    total, sve = row["reference"]
    return (row["zorvo"][0] - startup - (total - sve)) / sve


def steady_per_sve(row, way="zorvo"):
    """Guest instructions per emulated SVE instruction in the steady state:
    per_sve of the difference between the long and the short run."""
    ref_short, ref_long = row.get("reference_short"), row.get("reference_long")
    short, long = row.get(way + "_short"), row.get(way + "_long")
    if not (ref_short and ref_long and short and long) or ref_long[1] == ref_short[1]:
        return None
    sve = ref_long[1] - ref_short[1]
    native = (ref_long[0] - ref_long[1]) - (ref_short[0] - ref_short[1])
    return (long[0] - short[0] - native) / sve


def translation_whole(row, startup):
    """What the whole run spent beyond start-up and beyond what the steady
    state explains: building blocks, the signal by which a thread meets a
    block before its site is patched, and the first runs of code that runs
    once (a kernel's initialisation)."""
    steady = steady_per_sve(row)
    if steady is None or startup is None or not row.get("zorvo"):
        return None
    total, sve = row["reference"]
    return row["zorvo"][0] - startup - (total - sve) - steady * sve


def translation_per_word(row, startup):
    """translation_whole per SVE word translated."""
    whole = translation_whole(row, startup)
    return whole / row["words"] if whole is not None and row.get("words") else None


def profiled_translation_per_word(row):
    """Guest instructions of the functions that build code, from the
    profile, per SVE word translated."""
    kinds = row.get("profiled")
    return kinds[TRANSLATION] / row["words"] if kinds and row.get("words") else None


def code_bytes_per_word(row):
    return row["code_bytes"] / row["words"] if row.get("words") else None


def qemu_user_ratio(row):
    zorvo, qemu_user = steady_per_sve(row), steady_per_sve(row, "qemu_user")
    return zorvo / qemu_user if zorvo is not None and qemu_user else None


def time_ratio(row):
    return row["zorvo_s"] / row["reference_s"] if row.get("reference_s") else None


def qemu_user_time_ratio(row):
    return row["zorvo_s"] / row["qemu_user_s"] if row.get("qemu_user_s") else None


def signals_per_entry(row):
    return row["signals"] / row["entries"] if row.get("entries") else None


def signals_after_warm_up(row):
    """Signals beyond the one that builds each block's fragment, per block
    execution."""
    if not row.get("entries") or row.get("blocks") is None:
        return None
    return (row["signals"] - row["blocks"]) / row["entries"]


def fmt(value, spec):
    return "—" if value is None else format(value, spec)


def result(row):
    if row.get("reference_fails"):
        return "reference " + row["reference_fails"]
    return row.get("zorvo_fails") or "ok"


def short_result(row):
    return "not run" if "reference" not in row else result(row).split(":")[0]


def results_table(figures):
    lines = [
        "| kernel | under zorvo | reference instructions | reference SVE | zorvo instructions "
        "| instructions per emulated SVE | the same without start-up | reference s | zorvo s "
        "| time ratio | QEMU-user s | zorvo / QEMU-user time "
        "| signals per block execution | the same after warm-up |",
        "|---|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|",
    ]
    rows = figures["rows"]
    for r in rows:
        ref = r.get("reference") or (None, None)
        lines.append("| %s |" % " | ".join([
            r["kernel"], result(r), fmt(ref[0], ","), fmt(ref[1], ","),
            fmt((r.get("zorvo") or (None,))[0], ","), fmt(per_sve(r), ",.1f"),
            fmt(per_sve(r, figures["startup"]), ",.1f"), fmt(r.get("reference_s"), ".3f"),
            fmt(r.get("zorvo_s"), ".3f"), fmt(time_ratio(r), ".1f"),
            fmt(r.get("qemu_user_s"), ".3f"), fmt(qemu_user_time_ratio(r), ".2f"),
            fmt(signals_per_entry(r), ".3g"), fmt(signals_after_warm_up(r), ".3g")]))
    return "\n".join(lines)


def steady_table(figures):
    lines = [
        "| kernel | SVE instructions per repeat | zorvo per SVE, steady state "
        "| zorvo per SVE, whole run without start-up | QEMU-user per SVE, steady state "
        "| zorvo / QEMU-user | translation per SVE word, profiled "
        "| beyond steady state per SVE word | beyond steady state in all "
        "| code bytes per SVE word | SVE words translated | blocks built |",
        "|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|",
    ]
    for r in figures["rows"]:
        ref_short, ref_long = r.get("reference_short"), r.get("reference_long")
        per_repeat = ((ref_long[1] - ref_short[1]) / (LONG_REPEAT - SHORT_REPEAT)
                      if ref_short and ref_long else None)
        lines.append("| %s |" % " | ".join([
            r["kernel"], fmt(per_repeat, ",.0f"), fmt(steady_per_sve(r), ",.1f"),
            fmt(per_sve(r, figures["startup"]), ",.1f"),
            fmt(steady_per_sve(r, "qemu_user"), ",.1f"), fmt(qemu_user_ratio(r), ".2f"),
            fmt(profiled_translation_per_word(r), ",.0f"),
            fmt(translation_per_word(r, figures["startup"]), ",.0f"),
            fmt(translation_whole(r, figures["startup"]), ",.0f"),
            fmt(code_bytes_per_word(r), ",.0f"), fmt(r.get("words"), ","),
            fmt(r.get("blocks"), ",")]))
    return "\n".join(lines)


def comparison_table(before, after):
    """This run next to an earlier one, kernel by kernel."""
    old = {r["kernel"]: r for r in before["rows"]}
    head = "%s → %s" % (before["label"], after["label"])
    lines = [
        "| kernel (%s) | under zorvo | instructions per emulated SVE | the same without start-up "
        "| steady state | zorvo s | time ratio | signals per block execution "
        "| the same after warm-up |" % head,
        "|---|---|---:|---:|---:|---:|---:|---:|---:|",
    ]

    def pair(then, now, spec):
        return "%s → %s" % (fmt(then, spec), fmt(now, spec))

    for r in after["rows"]:
        o = old.get(r["kernel"], {"kernel": r["kernel"]})
        lines.append("| %s |" % " | ".join([
            r["kernel"], "%s → %s" % (short_result(o), short_result(r)),
            pair(per_sve(o), per_sve(r), ",.1f"),
            pair(per_sve(o, before["startup"]), per_sve(r, after["startup"]), ",.1f"),
            pair(steady_per_sve(o), steady_per_sve(r), ",.1f"),
            pair(o.get("zorvo_s"), r.get("zorvo_s"), ".3f"),
            pair(time_ratio(o), time_ratio(r), ".1f"),
            pair(signals_per_entry(o), signals_per_entry(r), ".3g"),
            pair(signals_after_warm_up(o), signals_after_warm_up(r), ".3g")]))
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


def kept_notes(path):
    """The hand-written sections of an earlier results file: from its first
    '## ' heading to the figures."""
    try:
        with open(path) as f:
            lines = f.read().split("\n")
    except OSError:
        return []
    notes = []
    for line in lines:
        if line.startswith(DATA_MARK):
            break
        if notes or line.startswith("## "):
            notes.append(line)
    return notes


def default_label():
    git = ["git", "-C", os.path.dirname(os.path.abspath(__file__))]
    head = subprocess.run(git + ["rev-parse", "--short", "HEAD"], capture_output=True, text=True)
    if head.returncode != 0:
        return "this run"
    changed = subprocess.run(git + ["diff", "--quiet", "HEAD", "--", ":/runtime", ":/sve"])
    return "commit " + head.stdout.strip() + (" with uncommitted changes" if changed.returncode
                                              else "")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", default="build", help="build directory (default: build)")
    parser.add_argument("--runs", type=int, default=5, help="timed runs of each (default: 5)")
    parser.add_argument("--timeout", type=int, default=120, help="seconds allowed per run")
    parser.add_argument("--kernels", help="comma-separated subset of the kernels")
    parser.add_argument("--label", default=None, help="names this run (default: the commit)")
    parser.add_argument("--compare", metavar="FILE", help="an earlier results file to show next to")
    parser.add_argument("--zorvo-option", action="append", default=[], metavar="OPTION",
                        help="passed to zorvo in each run (repeatable), "
                             "e.g. --zorvo-option=--entry-by-signal")
    parser.add_argument("--no-qemu-user", action="store_true",
                        help="leave out the QEMU-user column (no download)")
    parser.add_argument("--no-profile", action="store_true",
                        help="leave out the profiled translation column (two runs fewer "
                             "per kernel)")
    parser.add_argument("--vl", type=int, default=DEFAULT_VECTOR_BITS, metavar="BITS",
                        help="vector length of the reference and of zorvo --vl, in bits "
                             "(default: 384)")
    parser.add_argument("--out", help="results file (default: bench/results.md at 384 bits, "
                                      "bench/results-vlBITS.md at another length)")
    args = parser.parse_args()
    if args.vl % 128 or not 128 <= args.vl <= 2048:
        parser.error("--vl needs a multiple of 128 from 128 to 2048")
    global REFERENCE_CPU
    REFERENCE_CPU = reference_cpu(args.vl)
    if args.vl != DEFAULT_VECTOR_BITS:
        args.zorvo_option = ["--vl", str(args.vl)] + args.zorvo_option
    if not args.out:
        name = "results.md" if args.vl == DEFAULT_VECTOR_BITS else "results-vl%d.md" % args.vl
        args.out = os.path.join(os.path.dirname(__file__), name)

    qemu_user = None
    if not args.no_qemu_user:
        qemu_user = os.path.abspath(os.path.join(args.build, QEMU_USER))
        fetch = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "scripts",
                             "fetch-qemu-user-arm64.sh")
        if subprocess.run(["bash", fetch, qemu_user.rsplit("/usr/bin/", 1)[0]]).returncode:
            print("bench: no QEMU-user column: the arm64 emulator could not be fetched",
                  file=sys.stderr)
            qemu_user = None

    with open(os.path.join(args.build, "bench", "kernels.txt")) as f:
        kernels = f.read().split()
    if args.kernels:
        kernels = [k for k in kernels if k in args.kernels.split(",")]
    before = read_previous(args.compare) if args.compare else None

    started = datetime.datetime.now()
    load = os.getloadavg()[0]
    figures = {"label": args.label or default_label(), "rows": [], "vector_bits": args.vl}
    with tempfile.TemporaryDirectory(prefix="zorvo-bench-") as scratch:
        runner = Runner(args.build, args.timeout, scratch, args.zorvo_option, qemu_user)
        figures["startup"] = startup_cost(runner)
        startup_profile = None
        if not args.no_profile:
            failed, startup_profile = runner.profile("no_sve", [str(SHORT_REPEAT)])
            if failed:
                print("bench: no profiled column: no_sve %s" % failed, file=sys.stderr)
        print("bench: trace report ...", file=sys.stderr, flush=True)
        figures["trace_report"] = trace_report_cost(args.build, scratch)
        for kernel in kernels:
            print("bench: %s ..." % kernel, file=sys.stderr, flush=True)
            figures["rows"].append(measure(kernel, runner, args.runs, startup_profile))
        print("bench: instruction mix ...", file=sys.stderr, flush=True)
        figures["mix"] = mix_cost(runner, figures["rows"])

    text = ["# Benchmarks: what an emulated SVE instruction costs", "",
            "`make bench` on %s, runtime: %s." % (started.strftime("%Y-%m-%d %H:%M"),
                                                  figures["label"]),
            "Host: %s. Load average at the start: %.1f." % (host(), load), "",
            "Vector length: %d bits, on the reference (`-cpu %s`) and under zorvo."
            % (args.vl, REFERENCE_CPU), "",
            "Instructions are guest instructions counted by bench/tools/insncount.c; "
            "instructions per emulated SVE = (zorvo − (reference − reference SVE)) / reference "
            "SVE. Times are the median wall-clock of %d runs of each under qemu, alternating; "
            "the ratio is zorvo / reference; QEMU-user s is the same program run by QEMU-user "
            "(below) on the processor without SVE, and zorvo / QEMU-user time the ratio of the "
            "two medians. Signals per block execution: `zorvo --stats` "
            "signals taken / fragment entries; after warm-up, without the signal by which a "
            "thread builds a block's fragment: (signals taken − blocks built) / fragment "
            "entries. Start-up: zorvo adds %s guest instructions to a "
            "program without SVE (bench/tools/no_sve.c) before its first SVE instruction."
            % (args.runs, fmt(figures["startup"], ",")), "",
            results_table(figures), "",
            "Steady state: each kernel run again with %d and %d repeats (its first argument); "
            "per SVE = (Δzorvo − (Δreference − Δreference SVE)) / Δreference SVE over the "
            "difference Δ of the two runs, so that start-up and translation cancel. QEMU-user: "
            "Debian's arm64 qemu-aarch64-static emulating `-cpu %s`, itself run by "
            "`qemu-aarch64 -cpu %s` with the counting plugin, the same differences. "
            "Translation per SVE word, profiled: the guest instructions of the functions that "
            "build code (bench/tools/insnprofile.c; bench.py's COST_RULES: the runtime's "
            "block scan, IR, encoding, fragments and patching, the client's rewriting, inline "
            "code and form lookup, and the C library, loader and PLT stubs they call; not the "
            "wait for the code lock while another thread builds) in twice "
            "the short run less the long run less the program without SVE, over the SVE words "
            "in the fragments built (`--stats`). Beyond steady state: the whole run (%s) less "
            "start-up, less the native instructions, less the steady-state cost of its SVE "
            "instructions (translation, and one-off work such as a kernel's initialisation "
            "loops), per SVE word and in all; code bytes per word. "
            "Blocks built: for the whole process (`--stats`), whatever the number of threads."
            % (SHORT_REPEAT, LONG_REPEAT, REFERENCE_CPU, NO_SVE_CPU,
               "the kernel's own repeat count"), "",
            steady_table(figures), "", *mix_cost_text(figures["mix"]), "",
            report_cost_text(figures["trace_report"]), ""]
    if before:
        text += ["Compared with the earlier run:", "", comparison_table(before, figures), ""]
    text += kept_notes(args.out)
    text.append(DATA_MARK + json.dumps(figures) + " -->")
    print("\n".join(text[:-1]))
    with open(args.out, "w") as f:
        f.write("\n".join(text) + "\n")
    print("bench: wrote %s in %.0f s" % (args.out, (datetime.datetime.now() - started)
                                         .total_seconds()), file=sys.stderr)


if __name__ == "__main__":
    main()
