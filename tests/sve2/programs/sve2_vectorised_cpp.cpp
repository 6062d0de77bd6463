// C++ loops over std::vector that a compiler vectorises for SVE2 (smulh,
// eor3, bsl among them), each result printed as a hash.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <vector>

namespace {

template <typename T> uint32_t hash(const std::vector<T>& v) {
  const auto* b = reinterpret_cast<const uint8_t*>(v.data());
  uint32_t h = 2166136261u;
  for (size_t i = 0; i < v.size() * sizeof(T); ++i) h = (h ^ b[i]) * 16777619u;
  return h;
}

template <typename T> std::vector<T> pseudo_random(size_t n, uint32_t seed) {
  std::vector<T> v(n);
  for (auto& x : v) {
    seed = seed * 1103515245u + 12345u;
    x = static_cast<T>(uint64_t(seed) << 32 ^ seed * 2654435761u);
  }
  return v;
}

__attribute__((noinline)) void multiply_high(std::vector<int16_t>& o, const std::vector<int16_t>& a,
                                             const std::vector<int16_t>& b) {
  for (size_t i = 0; i < o.size(); ++i) o[i] = int16_t((int32_t(a[i]) * b[i]) >> 16);
}
__attribute__((noinline)) void select_bits(std::vector<uint64_t>& o, const std::vector<uint64_t>& a,
                                           const std::vector<uint64_t>& b,
                                           const std::vector<uint64_t>& m) {
  for (size_t i = 0; i < o.size(); ++i) o[i] = (a[i] & m[i]) | (b[i] & ~m[i]);
}
__attribute__((noinline)) void exclusive_or3(std::vector<uint64_t>& o,
                                             const std::vector<uint64_t>& a,
                                             const std::vector<uint64_t>& b,
                                             const std::vector<uint64_t>& c) {
  for (size_t i = 0; i < o.size(); ++i) o[i] = a[i] ^ b[i] ^ c[i];
}
__attribute__((noinline)) void absolute_difference_accumulate(std::vector<uint16_t>& o,
                                                              const std::vector<uint8_t>& a,
                                                              const std::vector<uint8_t>& b) {
  for (size_t i = 0; i < o.size(); ++i) o[i] = uint16_t(o[i] + std::abs(a[i] - b[i]));
}

} // namespace

int main() {
  for (const size_t n : {size_t{1}, size_t{17}, size_t{1000}}) {
    auto a16 = pseudo_random<int16_t>(n, 1), b16 = pseudo_random<int16_t>(n, 2);
    std::vector<int16_t> o16(n);
    multiply_high(o16, a16, b16);
    auto a64 = pseudo_random<uint64_t>(n, 3), b64 = pseudo_random<uint64_t>(n, 4),
         m64 = pseudo_random<uint64_t>(n, 5);
    std::vector<uint64_t> s64(n), x64(n);
    select_bits(s64, a64, b64, m64);
    exclusive_or3(x64, a64, b64, m64);
    auto a8 = pseudo_random<uint8_t>(n, 6), b8 = pseudo_random<uint8_t>(n, 7);
    auto acc = pseudo_random<uint16_t>(n, 8);
    absolute_difference_accumulate(acc, a8, b8);
    std::printf("n %zu: smulh %08x bsl %08x eor3 %08x absdiff %08x sum %llu\n", n, hash(o16),
                hash(s64), hash(x64), hash(acc),
                static_cast<unsigned long long>(std::accumulate(acc.begin(), acc.end(), 0ull)));
  }
  return 0;
}
