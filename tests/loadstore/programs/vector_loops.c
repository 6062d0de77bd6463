// Loops a compiler vectorises for SVE: bytes, halfwords, words and doubles,
// loaded and stored contiguously, with lengths that leave a partial vector
// at the end so the last iteration runs with a partial predicate.
#include <inttypes.h>
#include <stdio.h>

#define N 1003

static uint8_t bytes_a[N], bytes_b[N], bytes_sum[N];
static int16_t halves[N];
static int32_t words_a[N], words_b[N];
static double doubles_x[N], doubles_y[N];

__attribute__((noinline)) static void add_bytes(uint8_t* out, const uint8_t* a, const uint8_t* b,
                                                int n) {
  for (int i = 0; i < n; ++i) out[i] = (uint8_t)(a[i] + b[i]);
}

// Halfwords widened with sign extension into 32-bit sums.
__attribute__((noinline)) static int32_t sum_halves(const int16_t* h, int n) {
  int32_t sum = 0;
  for (int i = 0; i < n; ++i) sum += h[i];
  return sum;
}

// Bytes widened with zero extension.
__attribute__((noinline)) static uint32_t sum_bytes(const uint8_t* b, int n) {
  uint32_t sum = 0;
  for (int i = 0; i < n; ++i) sum += b[i];
  return sum;
}

__attribute__((noinline)) static void scale_words(int32_t* out, const int32_t* a, int n) {
  for (int i = 0; i < n; ++i) out[i] = a[i] + a[i] - 7;
}

// Words narrowed to halfwords on the way out.
__attribute__((noinline)) static void narrow_words(int16_t* out, const int32_t* a, int n) {
  for (int i = 0; i < n; ++i) out[i] = (int16_t)a[i];
}

__attribute__((noinline)) static void axpy(double* y, double a, const double* x, int n) {
  for (int i = 0; i < n; ++i) y[i] = a * x[i] + y[i];
}

static uint64_t checksum(const void* p, int bytes) {
  const uint8_t* q = p;
  uint64_t h = 1469598103934665603ull;
  for (int i = 0; i < bytes; ++i) h = (h ^ q[i]) * 1099511628211ull;
  return h;
}

// Setting up stays scalar, so that the SVE code in the program is the loops'.
__attribute__((optimize("no-tree-vectorize"))) static void fill_inputs(void) {
  for (int i = 0; i < N; ++i) {
    bytes_a[i] = (uint8_t)(i * 7 + 3);
    bytes_b[i] = (uint8_t)(250 - i);
    halves[i] = (int16_t)(i * 977 - 30000);
    words_a[i] = i * 123457 - 60000000;
    doubles_x[i] = i * 0.25 - 100.0;
    doubles_y[i] = 1.0 / (i + 1);
  }
}

__attribute__((optimize("no-tree-vectorize"))) static void fill_bytes(uint8_t* p, uint8_t v) {
  for (int i = 0; i < N; ++i) p[i] = v;
}

int main(void) {
  fill_inputs();
  // Lengths of every remainder modulo the vector's 48 bytes, and 0.
  const int lengths[] = {0, 1, 5, 47, 48, 49, 95, 101, 257, N};
  for (unsigned k = 0; k < sizeof lengths / sizeof lengths[0]; ++k) {
    const int n = lengths[k];
    fill_bytes(bytes_sum, 0xee);
    add_bytes(bytes_sum, bytes_a, bytes_b, n);
    const int32_t hs = sum_halves(halves, n);
    const uint32_t bs = sum_bytes(bytes_a, n);
    printf("n=%d bytes %016" PRIx64 " halves %" PRId32 " byte sum %" PRIu32 "\n", n,
           checksum(bytes_sum, N), hs, bs);
  }
  for (int round = 0; round < 3; ++round) {
    scale_words(words_b, words_a, N - round);
    narrow_words(halves, words_b, N - 2 * round);
    axpy(doubles_y, 1.5 + round, doubles_x, N - 3 * round);
    printf("round %d words %016" PRIx64 " halves %016" PRIx64 " doubles %016" PRIx64 "\n", round,
           checksum(words_b, sizeof words_b), checksum(halves, sizeof halves),
           checksum(doubles_y, sizeof doubles_y));
  }
  printf("y[0]=%.17g y[%d]=%.17g\n", doubles_y[0], N - 1, doubles_y[N - 1]);
  return 0;
}
