#!/usr/bin/env python3
"""Checks of bench.py's reading of runs and its arithmetic, without running kernels."""
import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import bench  # noqa: E402


class Failure(unittest.TestCase):
    def test_a_kernel_that_says_ok_and_exits_0_passes(self):
        self.assertIsNone(bench.failure(0, "copy_u8: ok (checksum 1)\n", ""))

    def test_the_words_the_emulator_reports_are_named_once_each(self):
        err = ("Error: failed to emulate SVE instruction 0x0420e3e3 at PC 0x5500000658\n"
               "Error: failed to emulate SVE instruction 0x0420e3e3 at PC 0x5500000658\n"
               "Unimplemented instruction: [  5500000660:\t 04a0e3e4\t sve_cnt  ]\n")
        # Even a kernel that ends up right failed when a word was not carried out.
        self.assertEqual(bench.failure(0, "k: ok\n", err), "fails: needs cntb, cntw")

    def test_a_wrong_result_a_signal_and_a_stop_are_told_apart(self):
        self.assertEqual(bench.failure(1, "k: WRONG RESULT (checksum 2)\n", ""),
                         "fails: wrong result")
        self.assertEqual(bench.failure(-11, "", ""), "fails: killed by SIGSEGV")
        self.assertEqual(bench.failure(139, "", ""), "fails: killed by SIGSEGV")
        self.assertEqual(bench.failure("timed out after 5 s", "", ""), "fails: timed out after 5 s")
        self.assertEqual(bench.failure(0, "no verdict\n", "zorvo: oops\n"),
                         "fails: status 0 (zorvo: oops)")


class Run(unittest.TestCase):
    def test_a_run_past_its_time_is_stopped(self):
        with tempfile.TemporaryDirectory() as scratch:
            status, _, _, seconds = bench.run(["sleep", "30"], None, 1, scratch)
        self.assertEqual(status, "timed out after 1 s")
        self.assertLess(seconds, 10)

    def test_a_run_that_floods_standard_error_is_stopped(self):
        with tempfile.TemporaryDirectory() as scratch:
            status, _, _, _ = bench.run(["sh", "-c", "yes error >&2"], None, 60, scratch)
        self.assertEqual(status, "stopped after 1 MiB of errors")


ROW = {"kernel": "k", "reference": (1000, 200), "zorvo": (5800, 0),
       "blocks": 10, "signals": 50, "entries": 200, "reference_s": 0.5, "zorvo_s": 2.0}


class Figures(unittest.TestCase):
    def test_instructions_per_emulated_sve_instruction(self):
        # 800 non-SVE instructions run as they are; 5000 are spent on 200 SVE words.
        self.assertEqual(bench.per_sve(ROW), 25.0)
        self.assertEqual(bench.per_sve(ROW, startup=1000), 20.0)
        self.assertIsNone(bench.per_sve(ROW, startup=None))
        self.assertIsNone(bench.per_sve({"kernel": "k", "reference": (1000, 200)}))

    def test_an_earlier_run_is_read_back_and_shown_next_to_this_one(self):
        before = {"label": "before", "startup": 1000, "rows": [ROW]}
        after = {"label": "after", "startup": 0,
                 "rows": [dict(ROW, zorvo=(3800, 0), signals=10, zorvo_s=1.0),
                          {"kernel": "new", "reference": (10, 1), "zorvo_fails": "fails: x"}]}
        with tempfile.NamedTemporaryFile("w", suffix=".md") as f:
            f.write("# table\n\n" + bench.DATA_MARK + bench.json.dumps(before) + " -->\n")
            f.flush()
            read = bench.read_previous(f.name)
        lines = bench.comparison_table(read, after).splitlines()
        self.assertIn("before → after", lines[0])
        self.assertEqual(lines[2], "| k | ok → ok | 25.0 → 15.0 | 20.0 → 15.0 | — → — "
                                   "| 2.000 → 1.000 | 4.0 → 2.0 | 0.25 → 0.05 | 0.2 → 0 |")
        self.assertEqual(lines[3], "| new | not run → fails | — → — | — → — | — → — | — → — "
                                   "| — → — | — → — | — → — |")

    def test_hand_written_sections_outlive_a_new_run(self):
        with tempfile.NamedTemporaryFile("w", suffix=".md") as f:
            f.write("# generated\n\n| table |\n\n## Why\n\nBecause.\n\n"
                    + bench.DATA_MARK + "{} -->\n")
            f.flush()
            self.assertEqual(bench.kept_notes(f.name), ["## Why", "", "Because.", ""])
        self.assertEqual(bench.kept_notes("/nonexistent/results.md"), [])

    def test_the_steady_state_is_the_difference_of_two_run_lengths(self):
        # The longer run adds 100 SVE and 400 native instructions; zorvo spends
        # 400 + 100 * 30. Start-up and translation are in both runs and cancel.
        row = dict(ROW, reference_short=(1000, 200), reference_long=(1500, 300),
                   zorvo_short=(90000, 0), zorvo_long=(93400, 0),
                   qemu_user_short=(500000, 0), qemu_user_long=(506400, 0))
        self.assertEqual(bench.steady_per_sve(row), 30.0)
        self.assertEqual(bench.steady_per_sve(row, "qemu_user"), 60.0)
        self.assertEqual(bench.qemu_user_ratio(row), 0.5)
        self.assertIsNone(bench.steady_per_sve(dict(row, zorvo_long=None)))
        self.assertIsNone(bench.qemu_user_ratio(dict(row, qemu_user_long=None)))
        # A whole run of 12000 less 1000 of start-up, the 800 native
        # instructions and 200 SVE at 30 each leaves 4200 for 10 words.
        self.assertEqual(bench.translation_per_word(dict(row, words=10, zorvo=(12000, 0)), 1000),
                         420.0)
        self.assertIsNone(bench.translation_per_word(dict(row, words=None), 1000))
        # In all it does not depend on how many words there were.
        self.assertEqual(bench.translation_whole(dict(row, words=None, zorvo=(12000, 0)), 1000),
                         4200.0)
        self.assertIsNone(bench.translation_whole(dict(row, zorvo_long=None), 1000))

    def test_signals_after_warm_up_leave_out_one_per_block_built(self):
        self.assertEqual(bench.signals_after_warm_up(ROW), 0.2)
        # Figures from before the block count was read show nothing.
        self.assertIsNone(bench.signals_after_warm_up(dict(ROW, blocks=None)))


RUNTIME, CLIENT = "libzorvo_runtime.so", "libsve_client.so"


class TranslationProfile(unittest.TestCase):
    def kind(self, file, symbol):
        return bench.cost_kind(file, symbol, "sum_i32")

    def test_building_code_is_translation_and_carrying_it_out_is_not(self):
        T, E, O = bench.TRANSLATION, bench.EMULATION, bench.OTHER
        cases = [
            (RUNTIME, "instr_encode_to_copy", T),
            (RUNTIME, "(anonymous namespace)::read_mappings()", T),
            (RUNTIME, "build_fragment(rt_thread*, unsigned char*)", T),
            (CLIENT, "rewrite_runs(void*, _instrlist_t*)", T),
            (CLIENT, "a64::(anonymous namespace)::scaled_access(inline_code&, unsigned int)", T),
            (CLIENT, "(anonymous namespace)::op_of_form(int)", T),
            (CLIENT, "find_form(unsigned int)", T),
            (CLIENT, "fixed_48::thin_decoders()", T),
            (CLIENT, "fixed_48::sve_msb_zpzz(cpu_state*, aarch64_z_reg, aarch64_p_reg)", E),
            (CLIENT, "void bridge<bridge_kinds::ToZ<4u, 0u> >::call<2u>(cpu_state*, unsigned int)",
             E),
            (CLIENT, "aarch64_decode_rc fixed_48::element_wise_access<int>(cpu_state*)", E),
            (CLIENT, "generic::Int(unsigned long, unsigned int, bool)", E),
            (CLIENT, "zorvo_transfer_in", E),
            (CLIENT, "to_pred_v(unsigned char const*)", E),
            ("[anon]", "", E),
            ("sum_i32", "scalar_sum", E),
            (RUNTIME, "attach_thread(rt_thread*)", O),
            (RUNTIME, "run_thread_init_events(void*)", O),
            (RUNTIME, "deliver_handed_over_fault(ucontext_t*)", O),
            (RUNTIME, "code_lock::code_lock()", O),
            ("libtracesink.so", "sve_init", O),
            ("blocks_i32", "main", O),  # another program's code is not this kernel's
        ]
        for file, symbol, kind in cases:
            self.assertEqual(self.kind(file, symbol), kind, (file, symbol))

    def test_names_lose_their_return_type_arguments_and_anonymous_namespace(self):
        self.assertEqual(bench.function_name(
            "void a64::(anonymous namespace)::f<int>(inline_code&)"), "a64::f")
        self.assertEqual(bench.function_name(
            "any_length::nzcv_flags any_length::predicate_test<int>(x)"),
            "any_length::predicate_test")
        self.assertEqual(bench.function_name("memcpy@@GLIBC_2.17"), "memcpy")
        self.assertEqual(bench.function_name("(anonymous namespace)::mix()"), "mix")

    def test_the_c_library_counts_for_its_caller(self):
        encode = (RUNTIME, "instr_encode_to_copy")
        handler = (CLIENT, "fixed_48::sve_ld1w_zpri(cpu_state*)")
        counts = {("libc.so.6", "memcpy", encode): 100, ("libc.so.6", "memcpy", handler): 30,
                  (CLIENT, "_init", encode): 7,  # a PLT stub
                  ("libc.so.6", "start_thread", ("[none]", "")): 5,
                  encode + (None,): 1000, handler + (None,): 400,
                  ("libtracesink.so", "sve_exit", None): 9}
        self.assertEqual(bench.profiled_kinds(counts, "k"),
                         {bench.TRANSLATION: 1107, bench.EMULATION: 430, bench.OTHER: 14})

    def test_what_a_run_does_once_is_two_short_runs_less_a_long_one_less_start_up(self):
        build = (RUNTIME, "build_fragment", None)
        handler = (CLIENT, "fixed_48::sve_add_zzz", None)
        startup = {(RUNTIME, "start_runtime", None): 50, build: 0}

        class FakeRunner:
            def profile(self, program, args=()):
                repeat = int(args[0])
                # 700 to build, 40 of emulated initialisation, then 10 a repeat.
                return None, {build: 700, handler: 40 + 10 * repeat,
                              (RUNTIME, "start_runtime", None): 50}

        kinds = bench.one_off_profile(FakeRunner(), "k", startup)
        self.assertEqual(kinds, {bench.TRANSLATION: 700, bench.EMULATION: 40, bench.OTHER: 0})
        self.assertIsNone(bench.one_off_profile(FakeRunner(), "k", None))
        self.assertEqual(bench.profiled_translation_per_word({"profiled": kinds, "words": 7}),
                         100.0)
        self.assertIsNone(bench.profiled_translation_per_word({"profiled": None, "words": 7}))

    def test_profile_lines_with_a_caller_keep_it(self):
        class FakeObjects:
            def symbol(self, path, offset):
                return "%s+%x" % (path.rsplit("/", 1)[-1], offset)

        with tempfile.NamedTemporaryFile("w") as f:
            f.write("/lib/libc.so.6 10 4 /x/libzorvo_runtime.so 20\n"
                    "/lib/libc.so.6 10 6 /x/libzorvo_runtime.so 20\n"
                    "/lib/libc.so.6 10 2 [none] 0\n[anon] 5500 9\n/x/k 30 1\n")
            f.flush()
            counts = bench.insnprofile.read_by_symbol(f.name, FakeObjects())
        self.assertEqual(counts, {
            ("libc.so.6", "libc.so.6+10", ("libzorvo_runtime.so", "libzorvo_runtime.so+20")): 10,
            ("libc.so.6", "libc.so.6+10", ("[none]", "")): 2,
            ("[anon]", "", None): 9, ("k", "k+30", None): 1})


@unittest.skipUnless(os.environ.get("ZORVO_BENCH_BUILD"),
                     "ZORVO_BENCH_BUILD names no build with the qemu plugins")
class ProfilePlugin(unittest.TestCase):
    def test_each_instruction_counts_once_and_the_c_library_for_its_caller(self):
        bench_dir = os.path.join(os.environ["ZORVO_BENCH_BUILD"], "bench")
        with tempfile.TemporaryDirectory() as scratch:
            outs = []
            for plugin in ("insncount", "insnprofile"):
                outs.append(os.path.join(scratch, plugin))
                subprocess.run(["qemu-aarch64", "-L", bench.SYSROOT, "-cpu", bench.NO_SVE_CPU,
                                "-plugin", "%s/%s.so,out=%s" % (bench_dir, plugin, outs[-1]),
                                os.path.join(bench_dir, "no_sve")],
                               check=True, capture_output=True)
            total = bench.read_counts(outs[0])[0]
            with open(outs[1]) as f:
                lines = [line.split() for line in f]
        self.assertEqual(sum(int(fields[2]) for fields in lines), total)
        in_libc = [fields for fields in lines if "/libc.so" in fields[0]]
        self.assertTrue(in_libc and all(len(fields) == 5 for fields in in_libc))
        # main calls puts.
        self.assertIn("no_sve", {os.path.basename(fields[3]) for fields in in_libc})


class MixCost(unittest.TestCase):
    class FakeRunner:
        """Guest instructions as a run with and without --mix would count them."""
        def count(self, way, program, args=()):
            if program == "mix_loop":
                rounds = int(args[0])
                per_round = 2 * (388 if "--mix" in way else 385)
                return None, (5000000 + 300000 * ("--mix" in way) + per_round * rounds, 0), ""
            return None, (1300, 100), ""

    def test_the_steady_state_is_the_difference_of_two_lengths(self):
        rows = [{"kernel": "k", "zorvo": (1000, 1), "reference": (500, 100)},
                {"kernel": "broken", "zorvo_fails": "fails: wrong result"}]
        cost = bench.mix_cost(self.FakeRunner(), rows)
        # The one-time 300,000 of the mix and the 5,000,000 of start-up drop out.
        self.assertAlmostEqual(cost["steady_with"], 388)
        self.assertAlmostEqual(cost["steady_without"], 385)
        self.assertEqual(cost["kernels"], [["k", 1300, 3.0]])
        self.assertIn("with 3.00 guest instructions in steady state",
                      bench.mix_cost_text(cost)[0])


if __name__ == "__main__":
    unittest.main()
