#include "design_differences.h"

#include <cstring>

#include "state/vector_length.h"
#include "trace/roi_words.h"

namespace {

const design_difference kDifferences[] = {
    {"undefined-encoding", design_effect::skip_case,
     "The reference raises SIGILL for an encoding that the instruction set leaves undefined or "
     "reserves. The emulator carries such a word out at its arithmetic value: there is no "
     "reference result to hold it against."},
    {"region-markers", design_effect::skip_case,
     "0x2520E020 and 0x2520E040 plus a register number are byte ADD (immediate) words with the "
     "shift bit set, an encoding the instruction set reserves. Here they start and stop tracing "
     "in the thread that runs them and leave the register as it was. They are never compared."},
    {"reference-fault", design_effect::skip_case,
     "A case whose reference run takes SIGSEGV or SIGBUS is not run on the emulator: a fault in "
     "an emulated instruction without a guard ends the process, and a first-fault load here "
     "passes over what lies beyond an unreadable page end without a fault, even at its first "
     "active element."},
    {"first-fault-by-page", design_effect::relax_compare,
     "First-fault and non-fault loads find out page by page, not element by element, what they "
     "can read, and a non-fault load clears only the FFR bits of the elements it could not "
     "read. Their FFR may clear other elements than the reference's; it is held only to never "
     "gaining a bit."},
    {"unloaded-elements", design_effect::relax_compare,
     "An element that a first-fault or non-fault load may not have loaded (its FFR bit clear "
     "afterwards on either side) keeps its old value here and is unknown on the reference: such "
     "elements of the destination are not compared."},
    {"aligned-first-fault", design_effect::draw_rule,
     "First-fault and non-fault forms get element-aligned addresses. The emulator probes one "
     "byte at the start of an element, so an element that straddles from a readable page into "
     "an unreadable one takes a real fault here where the reference suppresses it."},
};

const design_difference kReferenceDefects[] = {
    {"reference-inactive-first", design_effect::draw_rule,
     "The reference's contiguous first-fault and non-fault loads go wrong when element 0 is "
     "inactive: a non-fault byte load with only elements 24 and 32 active returns zeros there "
     "while FFR says every element was read, and at other vector lengths an inactive element "
     "may come back non-zero. These forms are drawn with element 0 active; the cases with an "
     "inactive first element are checked by the first-fault unit tests."},
    {"reference-long-unsigned-narrow", design_effect::draw_rule,
     "Above 1024 bits the reference's UQXTNB and UQXTNT from doublewords give 0, not "
     "0xffffffff, for every element that saturates (uqxtnb z7.s, z7.d turns "
     "0x8000000000000001 into 0); up to 1024 bits they are right. At those lengths their source "
     "doublewords are drawn below 2^32, so that they do not saturate; saturation is checked at "
     "the shorter lengths, where the same code runs."},
};

} // namespace

const design_difference* design_differences(int* count) {
  *count = sizeof kDifferences / sizeof kDifferences[0];
  return kDifferences;
}

bool is_region_marker(uint32_t word) { return is_roi_marker_word(word); }

bool decides_by_page(const row_profile& p) { return p.first_fault; }

const design_difference* reference_defects(int* count) {
  *count = sizeof kReferenceDefects / sizeof kReferenceDefects[0];
  return kReferenceDefects;
}

bool needs_unsaturated_narrowing(const row_profile& p) {
  return vector_bytes() > 128 && (std::strcmp(p.row->name, "VecU64QXtnBV") == 0 ||
                                  std::strcmp(p.row->name, "VecU64QXtnTVV") == 0);
}

bool needs_first_element_active(const row_profile& p) {
  return p.first_fault && (p.addr == addressing::scalar_imm || p.addr == addressing::scalar_index);
}
