// zorvo-reference: every decode row against the processor's own SVE unit.
// Runs under qemu-aarch64 -cpu max,sve384=on, whose vector length is ours.
#include <fnmatch.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "check_row.h"
#include "client/inline_forms.h"
#include "design_differences.h"
#include "native_run.h"

namespace {

const char kUsage[] =
    "usage: zorvo-reference [--rows PATTERN] [--cases N] [--seed N] [--reports N]\n"
    "                       [--markdown FILE] [--list-differences]\n"
    "  --rows PATTERN    decoders whose name matches the glob, or contains the text\n"
    "                    (several patterns separated by commas)\n"
    "  --cases N         cases drawn per row (default 200)\n"
    "  --seed N          seed of the draw (default 1); a row's cases do not depend on\n"
    "                    which other rows run\n"
    "  --reports N       failure reports shown per row (default 3)\n"
    "  --markdown FILE   also write the per-row table and the summary to FILE\n"
    "  --list-differences  print the deliberate differences from the architecture\n"
    "Exit status: 0 when no implemented row fails, 1 when one does, 2 on bad usage.\n";

struct options {
  std::vector<std::string> patterns;
  check_options check;
  const char* markdown = nullptr;
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
    if (a == "--rows") {
      std::string list = value();
      for (size_t start = 0; start <= list.size();) {
        const size_t comma = list.find(',', start);
        const size_t end = comma == std::string::npos ? list.size() : comma;
        if (end > start) o.patterns.push_back(list.substr(start, end - start));
        start = end + 1;
      }
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

std::string summary(const std::vector<checked_row>& rows) {
  unsigned count[4] = {};
  for (const checked_row& c : rows) ++count[static_cast<int>(c.outcome.status())];
  char buf[200];
  std::snprintf(
      buf, sizeof buf,
      "reference: %u pass, %u fail, %u not implemented, %u differ by design (of %zu rows)",
      count[static_cast<int>(row_status::pass)], count[static_cast<int>(row_status::fail)],
      count[static_cast<int>(row_status::not_implemented)],
      count[static_cast<int>(row_status::differs_by_design)], rows.size());
  return buf;
}

bool write_markdown(const char* path, const options& o, const std::vector<checked_row>& rows) {
  FILE* f = std::fopen(path, "w");
  if (!f) return false;
  std::fprintf(f,
               "# Reference check\n\n"
               "Every decode row run on random instruction words and machine states, once on a\n"
               "processor's own SVE unit at our vector length of 48 bytes and once through the\n"
               "emulator, with everything the instruction may change compared. Written by\n"
               "`make reference` (%u cases per row, seed %llu); do not edit by hand.\n\n"
               "To check some rows yourself, with a report on each failure (the word, its\n"
               "operands, every register, element or byte that differs, expected and actual):\n\n"
               "    qemu-aarch64 -L /usr/aarch64-linux-gnu -cpu max,sve384=on \\\n"
               "        build/tests/reference/zorvo-reference --rows 'VecU16*' --cases 2000\n\n"
               "Status: *pass*, every compared case equal; *fail*, some case differs;\n"
               "*not implemented*, the decoder says so; *differs by design*, equal only\n"
               "through one of the deliberate differences below. Skipped cases are those\n"
               "that list sets aside.\n\n"
               "%s\n\n"
               "## Deliberate differences from the architecture\n\n",
               o.check.cases, static_cast<unsigned long long>(o.check.seed), summary(rows).c_str());
  list_differences(f, "- ", "**");
  std::fprintf(f, "\n## Where the reference processor is wrong\n\n");
  list_differences(f, "- ", "**", reference_defects);
  std::fprintf(
      f, "\n## Rows\n\nTier: *inline*, the row's words are translated into code in the fragment\n"
         "(every case of such a row runs that code as well as the call path, and both\n"
         "are compared); then the fast handler the call path takes, or the generic tier.\n\n"
         "| Decoder | Tier | Cases | Passed | Failed | Skipped | Inline cases | Status |\n"
         "|---|---|---:|---:|---:|---:|---:|---|\n");
  for (const checked_row& c : rows)
    std::fprintf(f, "| `%s` | %s | %u | %u | %u | %u | %u | %s |\n", c.row->name,
                 tier(*c.row).c_str(), c.outcome.cases, c.outcome.passed, c.outcome.failed,
                 c.outcome.skipped, c.outcome.inline_cases, status_name(c.outcome.status()));
  return std::fclose(f) == 0;
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
  const std::string line = summary(checked);
  std::printf("%s\n", line.c_str());
  if (o.markdown && !write_markdown(o.markdown, o, checked)) {
    std::fprintf(stderr, "zorvo-reference: cannot write %s\n", o.markdown);
    std::fflush(stderr);
    return 2;
  }
  for (const checked_row& c : checked)
    if (c.outcome.status() == row_status::fail) return 1;
  return 0;
}
