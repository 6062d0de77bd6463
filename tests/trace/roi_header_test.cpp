// The user's marker macros emit exactly the two marker words.
#include <gtest/gtest.h>

#include <cstring>

#include <zorvo/roi.h>

extern "C" void zorvo_probe_start(void);
extern "C" void zorvo_probe_stop(void);

namespace {

// The marker words found in the first instructions of a function.
std::vector<uint32_t> markers_in(void (*fn)(void)) {
  std::vector<uint32_t> out;
  for (unsigned i = 0; i < 8; ++i) {
    uint32_t word;
    std::memcpy(&word, reinterpret_cast<const char*>(fn) + 4 * i, 4);
    if ((word & ~31u) == 0x2520e020 || (word & ~31u) == 0x2520e040) out.push_back(word);
    if (word == 0xd65f03c0) break; // ret
  }
  return out;
}

void cxx_probe() { ZORVO_ROI_START(); }

TEST(RoiHeader, MacrosEmitTheMarkerWordsFromCAndCxx) {
  EXPECT_EQ(markers_in(zorvo_probe_start), std::vector<uint32_t>{0x2520e020});
  EXPECT_EQ(markers_in(zorvo_probe_stop), std::vector<uint32_t>{0x2520e040});
  EXPECT_EQ(markers_in(cxx_probe), std::vector<uint32_t>{0x2520e020});
}

} // namespace
