// A shared library whose start-up runs SVE: a compiler-vectorised static
// initialiser, a constructor with SVE intrinsics, and an ifunc resolver that
// asks the vector length (resolvers run while the dynamic loader relocates,
// before any constructor).
#include <arm_sve.h>
#include <pthread.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<int32_t> make_table() {
  std::vector<int32_t> v(1000);
  for (int i = 0; i < 1000; ++i) v[i] = i * i - 5 * i;
  return v;
}

const std::vector<int32_t> table = make_table();
int64_t constructor_sum;
int64_t constructor_thread_sum;

int64_t sve_sum(const int32_t* numbers, int n) {
  int64_t total = 0;
  for (int i = 0; i < n; i += static_cast<int>(svcntw())) {
    const svbool_t pg = svwhilelt_b32(i, n);
    total += svaddv_s32(pg, svld1_s32(pg, numbers + i));
  }
  return total;
}

void* sum_in_thread(void* numbers) {
  constructor_thread_sum = sve_sum(static_cast<const int32_t*>(numbers), 500);
  return nullptr;
}

// Runs in no fixed order with the static initialiser above, so it works on
// its own numbers.
__attribute__((constructor)) void run_sve_at_load() {
  int32_t numbers[500];
  for (int i = 0; i < 500; ++i) numbers[i] = 3 * i + 1;
  constructor_sum = sve_sum(numbers, 500);
  // A thread started before the program's own start-up has run.
  pthread_t t;
  pthread_create(&t, nullptr, sum_in_thread, numbers);
  pthread_join(t, nullptr);
}

int narrow_vectors() { return 1; }
int wide_vectors() { return 2; }

} // namespace

extern "C" {

int64_t ctor_lib_sum() { return constructor_sum; }
int64_t ctor_lib_thread_sum() { return constructor_thread_sum; }
int64_t ctor_lib_table_sum() {
  int64_t s = 0;
  for (int32_t x : table) s += x;
  return s;
}

// The program's C++ library (the shared one) unwinds through SVE code while
// zorvo's own copy lives in the client.
int64_t ctor_lib_sum_or_throw(int n) {
  try {
    int32_t numbers[64];
    for (int i = 0; i < 64; ++i) numbers[i] = i;
    const int64_t total = sve_sum(numbers, n < 64 ? n : 64);
    if (n > 64) throw std::out_of_range("more than 64");
    return total;
  } catch (const std::out_of_range& e) {
    return -static_cast<int64_t>(std::string(e.what()).size());
  }
}

using choice = int (*)();
choice resolve_vector_kind() { return svcntb() > 16 ? wide_vectors : narrow_vectors; }
int ctor_lib_vector_kind() __attribute__((ifunc("resolve_vector_kind")));

} // extern "C"
