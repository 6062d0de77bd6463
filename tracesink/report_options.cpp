#include "report_options.h"

#include <cerrno>
#include <cstdlib>

namespace {

// "65536", "64K", "64k", "1M": a size in bytes.
bool parse_bytes(const std::string& text, uint64_t* out) {
  if (text.empty() || text[0] < '0' || text[0] > '9') return false;
  char* end = nullptr;
  errno = 0;
  const unsigned long long v = std::strtoull(text.c_str(), &end, 10);
  if (errno) return false;
  uint64_t scale = 1;
  const std::string suffix = end;
  if (suffix == "K" || suffix == "k" || suffix == "KiB")
    scale = 1024;
  else if (suffix == "M" || suffix == "m" || suffix == "MiB")
    scale = 1024 * 1024;
  else if (!suffix.empty())
    return false;
  if (v > (uint64_t{1} << 40)) return false;
  *out = v * scale;
  return true;
}

} // namespace

bool parse_report_arguments(int count, char* const* words, report_arguments* out,
                            std::string* error) {
  cache_config& cache = out->analysis.cache;
  for (int i = 0; i < count; ++i) {
    const std::string word = words[i];
    const bool takes_value =
        word == "-o" || word == "--cache-size" || word == "--cache-ways" || word == "--cache-line";
    if (takes_value) {
      if (i + 1 == count) {
        *error = word + " needs a value";
        return false;
      }
      const std::string value = words[++i];
      uint64_t number = 0;
      if (word == "-o") {
        out->output = value;
      } else if (!parse_bytes(value, &number) || (word != "--cache-size" && number > 1u << 20)) {
        *error = "bad value '" + value + "' for " + word;
        return false;
      } else if (word == "--cache-size") {
        cache.size_bytes = number;
      } else if (word == "--cache-ways") {
        cache.ways = static_cast<uint32_t>(number);
      } else {
        cache.line_bytes = static_cast<uint32_t>(number);
      }
    } else if (!word.empty() && word[0] == '-' && word != "-") {
      *error = "unknown option '" + word + "'";
      return false;
    } else if (out->trace.empty()) {
      out->trace = word;
    } else {
      *error = "more than one trace file";
      return false;
    }
  }
  if (out->trace.empty())
    *error = "no trace file";
  else if (out->output.empty())
    *error = "no output file (-o FILE.html)";
  else
    *error = cache_config_problem(cache);
  return error->empty();
}
