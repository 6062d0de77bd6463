#include "mix.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <unordered_map>
#include <vector>

#include "elf_symbols.h"
#include "forms/forms_table.h"
#include "mix_table.h"

namespace {

struct counted_site {
  uint64_t pc;
  const decode_row* form; // null for a word no row knows
};

// The process's counted sites, in the order of their counters after every
// thread's cpu_state: a fragment serves every thread, so an address has the
// same counter in each.
struct counted_sites {
  std::unordered_map<uint64_t, uint32_t> slot_of_pc;
  std::vector<counted_site> sites;
};

struct mix_state {
  bool enabled = false;
  std::string out_path;
  std::mutex lock; // block builds, thread starts and ends, and the exit
  counted_sites sites;
  std::set<cpu_state*> live;
  std::map<std::pair<uint64_t, const decode_row*>, uint64_t> folded; // (pc, form) -> count
  unsigned threads = 0;
  uint64_t uncounted_sites = 0;
};

mix_state& mix() {
  static mix_state* state = new mix_state; // outlives every thread's exit
  return *state;
}

uint64_t* counters(cpu_state* state) {
  return reinterpret_cast<uint64_t*>(reinterpret_cast<char*>(state) + kMixCountersOffset);
}

// Adds a thread's counters to the process's and sets them back to zero.
void fold(cpu_state* state) {
  uint64_t* c = counters(state);
  const std::vector<counted_site>& sites = mix().sites.sites;
  for (size_t i = 0; i < sites.size(); ++i) {
    if (c[i]) mix().folded[{sites[i].pc, sites[i].form}] += c[i];
    c[i] = 0;
  }
}

mix_summary summarise() {
  mix_summary s;
  s.threads = mix().threads;
  s.uncounted_sites = mix().uncounted_sites;
  s.counters_per_thread = kMixCounters;
  std::map<const decode_row*, uint64_t> by_form;
  std::map<uint64_t, mix_address> by_pc;
  for (const auto& f : mix().folded) {
    const decode_row* row = f.first.second;
    s.total += f.second;
    by_form[row] += f.second;
    mix_address& a = by_pc[f.first.first];
    a.pc = f.first.first;
    a.form = row ? row->name : "?";
    a.mnemonic = row ? row->mnemonic : "?";
    a.count += f.second;
  }
  for (const auto& f : by_form)
    s.forms.push_back({f.first ? f.first->mnemonic : "?", f.first ? f.first->name : "?", f.second});
  std::stable_sort(s.forms.begin(), s.forms.end(),
                   [](const mix_form& a, const mix_form& b) { return a.count > b.count; });
  for (const auto& a : by_pc) s.top.push_back(a.second);
  std::stable_sort(s.top.begin(), s.top.end(),
                   [](const mix_address& a, const mix_address& b) { return a.count > b.count; });
  if (s.top.size() > 20) s.top.resize(20);
  std::vector<uint64_t> pcs;
  for (const mix_address& a : s.top) pcs.push_back(a.pc);
  const std::vector<std::string> names = symbolize(pcs);
  for (size_t i = 0; i < s.top.size(); ++i) s.top[i].symbol = names[i];
  return s;
}

bool ends_with(const std::string& s, const char* suffix) {
  const size_t n = std::strlen(suffix);
  return s.size() >= n && s.compare(s.size() - n, n, suffix) == 0;
}

} // namespace

int take_mix_options(int argc, const char* argv[], std::string* error) {
  int kept = 1; // argv[0] is the client's path
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--") == 0) {
      while (i < argc) argv[kept++] = argv[i++];
      break;
    }
    if (std::strcmp(argv[i], "--mix") == 0) {
      mix().enabled = true;
    } else if (std::strcmp(argv[i], "--mix-out") == 0) {
      if (i + 1 == argc || argv[i + 1][0] == '\0') {
        *error = "--mix-out needs a file name";
        return -1;
      }
      mix().enabled = true;
      mix().out_path = argv[++i];
    } else {
      argv[kept++] = argv[i];
    }
  }
  return kept;
}

bool mix_enabled() { return mix().enabled; }

size_t mix_table_bytes() {
  return mix().enabled ? kMixCountersOffset - sizeof(cpu_state) + 8 * kMixCounters : 0;
}

void mix_thread_start(cpu_state* state) {
  if (!mix().enabled) return;
  std::lock_guard<std::mutex> hold(mix().lock);
  mix().live.insert(state);
  ++mix().threads;
}

void mix_thread_end(cpu_state* state) {
  if (!mix().enabled) return;
  std::lock_guard<std::mutex> hold(mix().lock);
  if (mix().live.erase(state) == 0) return;
  fold(state);
}

void mix_insert_count(void* dc, instrlist_t* bb, instr_t* where, app_pc pc, uint32_t word,
                      reg_id_t record, reg_id_t scratch_reg) {
  if (!mix().enabled) return;
  uint32_t slot;
  {
    std::lock_guard<std::mutex> hold(mix().lock);
    counted_sites& sites = mix().sites;
    const uint64_t key = reinterpret_cast<uint64_t>(pc);
    const auto found = sites.slot_of_pc.find(key);
    if (found != sites.slot_of_pc.end()) {
      slot = found->second;
    } else if (sites.sites.size() < kMixCounters) {
      const decode_row* row = find_decode_row(word);
      slot = static_cast<uint32_t>(sites.sites.size());
      sites.sites.push_back({key, row});
      sites.slot_of_pc.emplace(key, slot);
    } else {
      ++mix().uncounted_sites;
      return;
    }
  }
  const opnd_t counter = opnd_create_base_disp(
      record, DR_REG_NULL, 0, static_cast<int>(kMixCountersOffset + 8 * slot), OPSZ_8);
  const opnd_t scratch = opnd_create_reg(scratch_reg);
  for (instr_t* instr : {INSTR_CREATE_ldr(dc, scratch, counter),
                         INSTR_CREATE_add(dc, scratch, scratch, OPND_CREATE_INT(1)),
                         INSTR_CREATE_str(dc, counter, scratch)})
    instrlist_preinsert(bb, where, instr_set_translation(instr, pc));
}

void mix_report() {
  if (!mix().enabled) return;
  std::lock_guard<std::mutex> hold(mix().lock);
  // Threads still running at exit count what they have counted so far.
  for (cpu_state* t : mix().live) fold(t);
  const mix_summary summary = summarise();
  const std::string text = mix_text(summary);
  dr_write_file(STDERR, text.data(), text.size());
  if (mix().out_path.empty()) return;
  const std::string& path = mix().out_path;
  const std::string data = ends_with(path, ".json") ? mix_json(summary) : mix_csv(summary);
  FILE* f = std::fopen(path.c_str(), "w");
  const bool ok = f && std::fwrite(data.data(), 1, data.size(), f) == data.size();
  if ((f && std::fclose(f) != 0) || !ok)
    dr_fprintf(STDERR, "zorvo: cannot write the instruction mix to %s\n", path.c_str());
}
