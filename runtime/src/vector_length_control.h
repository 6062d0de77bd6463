// prctl(PR_SVE_GET_VL) and prctl(PR_SVE_SET_VL) as a kernel whose processor
// offers exactly one vector length answers them: any valid request gets
// that length. Shared by the interposer (dynamic programs) and the runtime's
// system call traps (static programs).
#pragma once

#include <sys/prctl.h>

#include <cerrno>

namespace vector_length_control {

constexpr unsigned long kVlMask = 0xffff;
constexpr unsigned long kSetVlFlags = PR_SVE_VL_INHERIT | PR_SVE_SET_VL_ONEXEC;
constexpr unsigned long kMaxVectorBytes = 8192;

inline bool is_vl_option(long option) { return option == PR_SVE_GET_VL || option == PR_SVE_SET_VL; }

// The result, or -EINVAL; inherit is the calling thread's PR_SVE_VL_INHERIT
// flag, which every valid PR_SVE_SET_VL sets or clears.
inline long answer(long option, unsigned long arg, unsigned long vector_bytes, bool* inherit) {
  const auto status = [&](unsigned long length) {
    return static_cast<long>(length | (*inherit ? PR_SVE_VL_INHERIT : 0));
  };
  if (option == PR_SVE_GET_VL) return status(vector_bytes);
  const unsigned long requested = arg & kVlMask, flags = arg & ~kVlMask;
  if ((flags & ~kSetVlFlags) != 0 || requested < 16 || requested > kMaxVectorBytes ||
      requested % 16 != 0)
    return -EINVAL;
  *inherit = (flags & PR_SVE_VL_INHERIT) != 0;
  return status(vector_bytes);
}

} // namespace vector_length_control
