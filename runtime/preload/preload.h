// What exec.cpp needs of the interposer's state.
#pragma once

namespace zorvo_preload {
// The calling thread's PR_SVE_VL_INHERIT flag.
bool vector_length_inherited();
} // namespace zorvo_preload
