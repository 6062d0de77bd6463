#include "mask_call_stub.h"

#include <sys/mman.h>

#include "code_patch.h"
#include "fragments.h"
#include "runtime.h"

namespace mask_call_stub {
namespace {

constexpr int kMaxSites = 1024;
constexpr size_t kStubBytes = kWords * 4;

struct site_and_stub {
  uintptr_t site;
  uint32_t* stub; // null: the site keeps its trap
};
site_and_stub sites[kMaxSites];
int site_count;
uint32_t* stubs;

} // namespace

void note_site(uintptr_t site) {
  if (site_count < kMaxSites) sites[site_count++].site = site;
}

void make_stubs(const uint32_t* view_flag) {
  if (site_count == 0) return;
  const size_t used = size_t(site_count) * kStubBytes;
  const size_t bytes = (used + 4095) & ~size_t(4095);
  auto* words =
      reinterpret_cast<uint32_t*>(map_code_near(bytes, reinterpret_cast<app_pc>(sites[0].site)));
  if (words == nullptr) return;
  for (int i = 0; i < site_count; ++i) write(words + i * kWords, sites[i].site, view_flag);
  if (mprotect(words, bytes, PROT_READ | PROT_EXEC) != 0) {
    unmap_pages(words, bytes);
    return;
  }
  __builtin___clear_cache(reinterpret_cast<char*>(words), reinterpret_cast<char*>(words) + used);
  stubs = words;
  for (int i = 0; i < site_count; ++i) {
    uint32_t* stub = words + i * kWords;
    const auto site = reinterpret_cast<app_pc>(sites[i].site);
    if (within_branch_reach(reinterpret_cast<byte*>(stub), kStubBytes, site) &&
        replace_code_word(site, branch(sites[i].site, reinterpret_cast<uintptr_t>(stub))))
      sites[i].stub = stub;
  }
}

uintptr_t site_of_trap(uintptr_t pc) {
  if (stubs == nullptr) return 0;
  const uintptr_t offset = pc - reinterpret_cast<uintptr_t>(stubs);
  if (offset >= site_count * kStubBytes || offset % kStubBytes != kTrapWord * 4) return 0;
  const site_and_stub& s = sites[offset / kStubBytes];
  return s.stub != nullptr ? s.site : 0;
}

} // namespace mask_call_stub
