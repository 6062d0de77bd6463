/* First-fault loads and replicating quadword loads that reach the end of a
 * readable page followed by an unmapped one. Each search looks for a key
 * and, where it starts behind the key, reads on into the unmapped page,
 * where its first-fault loads stop short without a fault. Prints what every
 * search finds. */
#include <arm_sve.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

/* A search over the elements from element 0 of p up to the first that
 * holds kKey or cannot be read: returns their sum and sets *count to their
 * number. LOAD(i) is the first-fault load of the elements from element i on;
 * the loop goes on from the first element that a load did not reach, and
 * ends when a load stopped short. T is the element type, S the intrinsics'
 * suffix and B the predicate's element bits. */
/* The filling below never holds it: every byte there is odd. */
enum { kKey = 2 };

#define FIRST_FAULT_SEARCH(name, T, S, B, LOAD)                                                    \
  __attribute__((noinline)) static int64_t name(const void* p, uint64_t* count) {                  \
    svbool_t all = svptrue_b##B();                                                                 \
    int64_t sum = 0;                                                                               \
    for (uint64_t i = 0;;) {                                                                       \
      svsetffr();                                                                                  \
      sv##T v = LOAD;                                                                              \
      svbool_t loaded = svrdffr_z(all);                                                            \
      svbool_t key = svcmpeq_n_##S(loaded, v, kKey);                                               \
      if (svptest_any(loaded, key)) {                                                              \
        svbool_t before = svbrkb_z(loaded, key);                                                   \
        *count = i + svcntp_b##B(all, before);                                                     \
        return sum + (int64_t)svaddv_##S(before, v);                                               \
      }                                                                                            \
      sum += (int64_t)svaddv_##S(loaded, v);                                                       \
      i += svcntp_b##B(all, loaded);                                                               \
      if (!svptest_last(all, loaded)) {                                                            \
        *count = i;                                                                                \
        return sum;                                                                                \
      }                                                                                            \
    }                                                                                              \
  }

/* Halfwords, contiguous. */
FIRST_FAULT_SEARCH(sum_halfwords, int32_t, s32, 32, svldff1sh_s32(all, (const int16_t*)p + i))
/* Every second halfword, by a gather of sign-extended 32-bit indices. */
FIRST_FAULT_SEARCH(sum_every_second, int32_t, s32, 32,
                   svldff1sh_gather_s32index_s32(all, p, svindex_s32(2 * (int32_t)i, 2)))
/* Doublewords, by a gather of 64-bit indices. */
FIRST_FAULT_SEARCH(sum_doublewords, uint64_t, u64, 64,
                   svldff1_gather_u64index_u64(all, p, svindex_u64(i, 1)))
/* Bytes, by a gather of unsigned 32-bit byte offsets. */
FIRST_FAULT_SEARCH(sum_bytes, uint32_t, u32, 32,
                   svldff1ub_gather_u32offset_u32(all, p, svindex_u32((uint32_t)i, 1)))
/* Doublewords, each 8 bytes past one of a vector of addresses. */
FIRST_FAULT_SEARCH(sum_after_addresses, uint64_t, u64, 64,
                   svldff1_gather_u64base_offset_u64(all, svindex_u64((uint64_t)p - 8 + 8 * i, 8),
                                                     8))

/* The quadword at p, its first n halfwords only, in every segment, summed
 * with a weight for each lane so that a misplaced element shows. */
__attribute__((noinline)) static int64_t quad_weighted(const int16_t* p, uint64_t n) {
  svbool_t first = svwhilelt_b16_u64(0, n);
  svint16_t q = svld1rq_s16(first, p);
  svint16_t w = svindex_s16(1, 3);
  return svaddv_s64(svptrue_b64(), svreinterpret_s64_s16(svmul_s16_x(svptrue_b16(), q, w)));
}

__attribute__((noinline)) static uint64_t quad_bytes_at(const uint8_t* p, int64_t k) {
  svuint8_t q = svld1rq_u8(svptrue_b8(), p + k);
  return svaddv_u8(svptrue_b8(), svmul_n_u8_x(svptrue_b8(), q, 7));
}

/* Ends the program with a status of its own, which neither run has. */
static void on_segv(int sig) {
  (void)sig;
  _exit(3);
}

static void fill(uint8_t* page_start, size_t page) {
  for (size_t i = 0; i < page; ++i) page_start[i] = (uint8_t)(i * 37 + 0x85) | 1;
}

/* Searches from `starts` places, element 1 to `starts` before the page end,
 * with the key `key_at` elements before it; one checksum of all they find.
 * A search reads `per_vector` elements `stride` apart at a time. It leaves
 * out the starts from which a load would end right at the page end: the
 * next load would begin there, and a first-fault load faults on its first
 * element. */
#define SEARCHES(search, T, stride, per_vector, starts, key_at)                                    \
  do {                                                                                             \
    fill(map, page);                                                                               \
    T* stop = (T*)end;                                                                             \
    stop[-(key_at)] = kKey;                                                                        \
    uint64_t total = 0, count;                                                                     \
    for (unsigned len = 1; len <= (starts); ++len)                                                 \
      if ((len + (stride)-1) / (stride) % (per_vector) != 0)                                       \
        total += (uint64_t)search(stop - len, &count) * len + count * 1000003;                     \
    printf("%s: %llu\n", #search, (unsigned long long)total);                                      \
  } while (0)

int main(void) {
  const size_t page = (size_t)sysconf(_SC_PAGESIZE);
  uint8_t* map = mmap(NULL, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (map == MAP_FAILED || munmap(map + page, page) != 0) return 2;
  uint8_t* end = map + page;

  for (int round = 0; round < 3; ++round) {
    if (round == 1) {
      /* A SIGSEGV handler of the program's own is not asked about the
       * loads' faults. */
      struct sigaction sa;
      memset(&sa, 0, sizeof sa);
      sa.sa_handler = on_segv;
      sigaction(SIGSEGV, &sa, NULL);
    }
    if (round == 2) {
      /* Nor do blocked signals change the loads. */
      sigset_t all;
      sigfillset(&all);
      sigprocmask(SIG_BLOCK, &all, NULL);
    }
    printf("round %d\n", round);
    SEARCHES(sum_halfwords, int16_t, 1, svcntw(), 120, 50);
    SEARCHES(sum_every_second, int16_t, 2, svcntw(), 240, 100); /* starts of both parities */
    SEARCHES(sum_doublewords, uint64_t, 1, svcntd(), 60, 25);
    SEARCHES(sum_after_addresses, uint64_t, 1, svcntd(), 60, 24);
    SEARCHES(sum_bytes, uint8_t, 1, svcntw(), 150, 70);
  }

  fill(map, page);
  int16_t* h_end = (int16_t*)end;
  int64_t quads = 0;
  for (unsigned k = 0; k <= 8; ++k)
    for (uint64_t n = 0; n <= 8; ++n) quads += quad_weighted(h_end - 8 - k, n) * (int64_t)(k + 1);
  printf("ld1rqh: %lld\n", (long long)quads);
  uint64_t total = 0;
  for (int64_t k = -64; k <= 64; k += 16) total += quad_bytes_at(end - 80, k) * (uint64_t)(k + 100);
  printf("ld1rqb: %llu\n", (unsigned long long)total);
  return 0;
}
