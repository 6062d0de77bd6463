// zorvo-reference: every decode row against the processor's own SVE unit,
// at that processor's vector length (qemu-aarch64 -cpu max,sveN=on), which
// the emulator takes on for the run.
#include <fnmatch.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "check_row.h"
#include "client/inline_forms.h"
#include "design_differences.h"
#include "native_run.h"

namespace {

const char kUsage[] =
    "usage: zorvo-reference [--rows PATTERN] [--cases N] [--seed N] [--reports N]\n"
    "                       [--results FILE] [--markdown FILE] [--list-differences]\n"
    "       zorvo-reference --combine FILE,FILE... --markdown FILE [--seed N]\n"
    "  --rows PATTERN    decoders whose name matches the glob, or contains the text\n"
    "                    (several patterns separated by commas)\n"
    "  --cases N         cases drawn per row (default 200)\n"
    "  --seed N          seed of the draw (default 1); a row's cases do not depend on\n"
    "                    which other rows run\n"
    "  --reports N       failure reports shown per row (default 3)\n"
    "  --results FILE    also write each row's outcome at this vector length to FILE\n"
    "  --combine FILES   read the --results files of runs at several vector lengths\n"
    "                    (no rows run) and write their table to the --markdown FILE\n"
    "  --list-differences  print the deliberate differences from the architecture\n"
    "Exit status: 0 when no implemented row fails, 1 when one does, 2 on bad usage.\n";

struct options {
  std::vector<std::string> patterns;
  check_options check;
  const char* markdown = nullptr;
  const char* results = nullptr;
  std::vector<std::string> combine;
  bool list_differences = false;
};

[[noreturn]] void usage_error(const char* what, const char* arg) {
  std::fprintf(stderr, "zorvo-reference: %s%s%s\n%s", what, arg ? ": " : "", arg ? arg : "",
               kUsage);
  std::fflush(stderr);
  std::exit(2);
}

unsigned long long number(const char* s, const char* option) {
  char* end = nullptr;
  const unsigned long long v = std::strtoull(s, &end, 0);
  if (!*s || *end) usage_error("not a number", option);
  return v;
}

options parse(int argc, char** argv) {
  options o;
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    auto value = [&]() -> const char* {
      if (i + 1 >= argc) usage_error("missing value for", argv[i]);
      return argv[++i];
    };
    const auto split = [](const std::string& list, std::vector<std::string>* out) {
      for (size_t start = 0; start <= list.size();) {
        const size_t comma = list.find(',', start);
        const size_t end = comma == std::string::npos ? list.size() : comma;
        if (end > start) out->push_back(list.substr(start, end - start));
        start = end + 1;
      }
    };
    if (a == "--rows") {
      split(value(), &o.patterns);
    } else if (a == "--combine") {
      split(value(), &o.combine);
    } else if (a == "--results") {
      o.results = value();
    } else if (a == "--cases") {
      o.check.cases = static_cast<unsigned>(number(value(), "--cases"));
    } else if (a == "--seed") {
      o.check.seed = number(value(), "--seed");
    } else if (a == "--reports") {
      o.check.reports = static_cast<unsigned>(number(value(), "--reports"));
    } else if (a == "--markdown") {
      o.markdown = value();
    } else if (a == "--list-differences") {
      o.list_differences = true;
    } else if (a == "--help" || a == "-h") {
      std::fputs(kUsage, stdout);
      std::exit(0);
    } else {
      usage_error("unknown option", argv[i]);
    }
  }
  return o;
}

bool selected(const options& o, const char* name) {
  if (o.patterns.empty()) return true;
  for (const std::string& pat : o.patterns) {
    const bool glob = pat.find_first_of("*?[") != std::string::npos;
    if (glob ? fnmatch(pat.c_str(), name, 0) == 0 : std::strstr(name, pat.c_str()) != nullptr)
      return true;
  }
  return false;
}

const char* effect_name(design_effect e) {
  switch (e) {
  case design_effect::skip_case:
    return "case skipped";
  case design_effect::relax_compare:
    return "comparison relaxed";
  case design_effect::draw_rule:
    return "never drawn";
  }
  return "?";
}

void list_differences(FILE* out, const char* bullet, const char* markup,
                      const design_difference* (*list)(int*) = design_differences) {
  int n = 0;
  const design_difference* d = list(&n);
  for (int i = 0; i < n; ++i)
    std::fprintf(out, "%s%s%s%s (%s): %s\n", bullet, markup, d[i].tag, markup,
                 effect_name(d[i].effect), d[i].why);
}

struct checked_row {
  const decode_row* row;
  row_outcome outcome;
};

// The inline code first when the row has some: the call path stays for the
// encodings it does not cover and for `--no-inline`.
std::string tier(const decode_row& r) {
  int count = 0;
  const std::string call = r.kind == DECODER_THIN     ? r.handler
                           : r.kind == DECODER_BRIDGE ? "(generic tier)"
                                                      : "(none)";
  return form_is_inline(static_cast<int>(&r - decode_rows(&count))) ? "inline; " + call : call;
}

// One row's outcome at one vector length, as the --results file keeps it.
struct row_result {
  std::string handler;
  unsigned cases = 0, passed = 0, failed = 0, skipped = 0;
  std::string status;
  unsigned inline_cases = 0;
};

// One run's results: its vector length and its rows, in table order.
struct length_results {
  unsigned vector_bytes = 0;
  std::vector<std::string> order;
  std::map<std::string, row_result> rows;
};

std::string summary(const length_results& r) {
  std::map<std::string, unsigned> count;
  for (const auto& [name, row] : r.rows) ++count[row.status];
  char buf[200];
  std::snprintf(buf, sizeof buf,
                "%u pass, %u fail, %u not implemented, %u differ by design (of %zu rows)",
                count["pass"], count["fail"], count["not implemented"], count["differs by design"],
                r.rows.size());
  return buf;
}

length_results results_of(const std::vector<checked_row>& rows) {
  length_results r;
  r.vector_bytes = vector_bytes();
  for (const checked_row& c : rows) {
    r.order.push_back(c.row->name);
    r.rows[c.row->name] = {tier(*c.row),          c.outcome.cases,
                           c.outcome.passed,      c.outcome.failed,
                           c.outcome.skipped,     status_name(c.outcome.status()),
                           c.outcome.inline_cases};
  }
  return r;
}

// Tab-separated: a line with the vector length in bytes, then one line per
// row: name, tier, cases, passed, failed, skipped, status, inline cases.
bool write_results(const char* path, const length_results& r) {
  FILE* f = std::fopen(path, "w");
  if (!f) return false;
  std::fprintf(f, "vector_bytes\t%u\n", r.vector_bytes);
  for (const std::string& name : r.order) {
    const row_result& x = r.rows.at(name);
    std::fprintf(f, "%s\t%s\t%u\t%u\t%u\t%u\t%s\t%u\n", name.c_str(), x.handler.c_str(), x.cases,
                 x.passed, x.failed, x.skipped, x.status.c_str(), x.inline_cases);
  }
  return std::fclose(f) == 0;
}

bool read_results(const std::string& path, length_results* r) {
  std::ifstream in(path);
  std::string line, key;
  if (!std::getline(in, line)) return false;
  std::istringstream head(line);
  if (!std::getline(head, key, '\t') || key != "vector_bytes" || !(head >> r->vector_bytes))
    return false;
  while (std::getline(in, line)) {
    std::vector<std::string> f;
    std::istringstream fields(line);
    for (std::string x; std::getline(fields, x, '\t');) f.push_back(x);
    if (f.size() != 8) return false;
    row_result x{f[1],
                 static_cast<unsigned>(std::stoul(f[2])),
                 static_cast<unsigned>(std::stoul(f[3])),
                 static_cast<unsigned>(std::stoul(f[4])),
                 static_cast<unsigned>(std::stoul(f[5])),
                 f[6],
                 static_cast<unsigned>(std::stoul(f[7]))};
    r->order.push_back(f[0]);
    r->rows[f[0]] = x;
  }
  return true;
}

// A table cell: the status, with the failed or skipped cases when there are any.
std::string cell(const row_result* x) {
  if (!x) return "not run";
  std::string s = x->status;
  if (x->failed)
    s += ", " + std::to_string(x->failed) + " of " + std::to_string(x->cases) + " failed";
  if (x->skipped) s += ", " + std::to_string(x->skipped) + " skipped";
  if (x->inline_cases) s += ", " + std::to_string(x->inline_cases) + " inline";
  return s;
}

bool write_markdown(const char* path, const options& o, const std::vector<length_results>& runs) {
  FILE* f = std::fopen(path, "w");
  if (!f) return false;
  std::fprintf(f,
               "# Reference check\n\n"
               "Every decode row run on random instruction words and machine states, once on a\n"
               "processor's own SVE unit and once through the emulator at the same vector\n"
               "length, with everything the instruction may change compared. Written by\n"
               "`make reference` (seed %llu), one column per vector length; do not edit by\n"
               "hand.\n\n"
               "To check some rows yourself at one length, with a report on each failure (the\n"
               "word, its operands, every register, element or byte that differs, expected and\n"
               "actual):\n\n"
               "    qemu-aarch64 -L /usr/aarch64-linux-gnu -cpu max,sve256=on \\\n"
               "        build/tests/reference/zorvo-reference --rows 'VecU16*' --cases 2000\n\n"
               "Status: *pass*, every compared case equal; *fail*, some case differs;\n"
               "*not implemented*, the decoder says so; *differs by design*, equal only\n"
               "through one of the deliberate differences below. Skipped cases are those\n"
               "that list sets aside.\n\n",
               static_cast<unsigned long long>(o.check.seed));
  for (const length_results& r : runs) {
    const unsigned cases = r.rows.empty() ? 0 : r.rows.begin()->second.cases;
    std::fprintf(f, "- %u bits (%u cases per row): %s\n", 8 * r.vector_bytes, cases,
                 summary(r).c_str());
  }
  std::fprintf(f, "\n## Deliberate differences from the architecture\n\n");
  list_differences(f, "- ", "**");
  std::fprintf(f, "\n## Where the reference processor is wrong\n\n");
  list_differences(f, "- ", "**", reference_defects);
  std::fprintf(
      f, "\n## Rows\n\nTier: *inline*, the row's words are translated into code in the fragment\n"
         "(every case of such a row runs that code as well as the call path, and both\n"
         "are compared; the cell counts those cases); then the fast handler the call\n"
         "path takes, or the generic tier.\n\n| Decoder | Tier |");
  for (const length_results& r : runs) std::fprintf(f, " %u bits |", 8 * r.vector_bytes);
  std::fprintf(f, "\n|---|---|");
  for (size_t k = 0; k < runs.size(); ++k) std::fprintf(f, "---|");
  std::fprintf(f, "\n");
  for (const std::string& name : runs.front().order) {
    std::fprintf(f, "| `%s` | %s |", name.c_str(), runs.front().rows.at(name).handler.c_str());
    for (const length_results& r : runs) {
      const auto it = r.rows.find(name);
      std::fprintf(f, " %s |", cell(it == r.rows.end() ? nullptr : &it->second).c_str());
    }
    std::fprintf(f, "\n");
  }
  return std::fclose(f) == 0;
}

[[noreturn]] void fail_on(const char* what, const std::string& path) {
  std::fprintf(stderr, "zorvo-reference: %s %s\n", what, path.c_str());
  std::fflush(stderr);
  std::exit(2);
}

} // namespace

int main(int argc, char** argv) {
  check_init();
  const options o = parse(argc, argv);
  if (o.list_differences) {
    list_differences(stdout, "", "");
    std::printf("\nwhere the reference processor is wrong:\n");
    list_differences(stdout, "", "", reference_defects);
    return 0;
  }
  if (!o.combine.empty()) {
    if (!o.markdown) usage_error("--combine needs --markdown", nullptr);
    std::vector<length_results> runs(o.combine.size());
    for (size_t k = 0; k < runs.size(); ++k)
      if (!read_results(o.combine[k], &runs[k])) fail_on("cannot read results from", o.combine[k]);
    if (!write_markdown(o.markdown, o, runs)) fail_on("cannot write", o.markdown);
    return 0;
  }
  if (const char* why = native_init()) {
    std::fprintf(stderr, "zorvo-reference: %s\n", why);
    std::fflush(stderr);
    return 2;
  }

  int count = 0;
  const decode_row* rows = decode_rows(&count);
  std::vector<checked_row> checked;
  std::printf("%-28s %7s %7s %7s %7s %7s  %s\n", "decoder", "cases", "passed", "failed", "skipped",
              "inline", "status");
  for (int i = 0; i < count; ++i) {
    if (!selected(o, rows[i].name)) continue;
    const row_outcome r = check_row(profile_of(rows[i]), o.check);
    std::printf("%-28s %7u %7u %7u %7u %7u  %s\n", rows[i].name, r.cases, r.passed, r.failed,
                r.skipped, r.inline_cases, status_name(r.status()));
    std::fflush(stdout);
    checked.push_back({&rows[i], r});
  }
  if (checked.empty()) usage_error("no decoder matches", nullptr);
  const length_results results = results_of(checked);
  std::printf("reference at %u bits: %s\n", 8 * results.vector_bytes, summary(results).c_str());
  if (o.results && !write_results(o.results, results)) fail_on("cannot write", o.results);
  if (o.markdown && !write_markdown(o.markdown, o, {results})) fail_on("cannot write", o.markdown);
  for (const checked_row& c : checked)
    if (c.outcome.status() == row_status::fail) return 1;
  return 0;
}
