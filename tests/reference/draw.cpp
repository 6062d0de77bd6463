#include "draw.h"

#include <algorithm>
#include <cstring>

#include "decode/fields.h"
#include "design_differences.h"

namespace {

uint64_t width_mask(unsigned bytes) { return bytes >= 8 ? ~0ull : (1ull << (8 * bytes)) - 1; }

unsigned pick(rng_t& rng, unsigned n) { return static_cast<unsigned>(rng() % n); }

uint64_t edge_integer(rng_t& rng, unsigned bytes) {
  const uint64_t all = width_mask(bytes);
  const uint64_t sign = 1ull << (8 * bytes - 1);
  const unsigned bits = 8 * bytes;
  switch (pick(rng, 13)) {
  case 0:
    return 0;
  case 1:
    return 1;
  case 2:
    return all; // -1
  case 3:
    return sign; // most negative
  case 4:
    return sign - 1; // most positive
  case 5:
    return sign + 1;
  case 6:
    return pick(rng, 17); // small counts and shifts
  case 7:
    return (all - pick(rng, 16)) & all;
  case 8:
    return 1ull << pick(rng, bits);
  case 9:
    return ((1ull << pick(rng, bits)) - 1) & all;
  case 10:
    return rng() & 0xff;
  case 12:
    return bits - 1 + pick(rng, 3); // shift counts just below, at and above the width
  default:
    return rng() & all;
  }
}

struct fp_format {
  unsigned exp_bits, mant_bits;
};

fp_format format_of(unsigned bytes) {
  return bytes == 2 ? fp_format{5, 10} : bytes == 4 ? fp_format{8, 23} : fp_format{11, 52};
}

// Just below, at or just above 2^15, 2^16, 2^31, 2^32, 2^63 or 2^64, the
// edges of the integer conversions, where the format reaches them.
uint64_t integer_limit(rng_t& rng, fp_format f, uint64_t sign) {
  static const unsigned kPowers[] = {15, 16, 31, 32, 63, 64};
  const uint64_t exp_max = (1ull << f.exp_bits) - 1, bias = exp_max >> 1;
  const uint64_t mant_all = (1ull << f.mant_bits) - 1;
  uint64_t exp = bias + kPowers[pick(rng, 6)];
  uint64_t mant = pick(rng, 2) ? pick(rng, 4) : mant_all - pick(rng, 4);
  if (mant > mant_all / 2) --exp; // the ones just below the power
  if (exp >= exp_max) exp = exp_max - 1;
  return sign | exp << f.mant_bits | mant;
}

uint64_t edge_float(rng_t& rng, unsigned bytes) {
  const fp_format f = format_of(bytes);
  const uint64_t sign = (rng() & 1) ? 1ull << (f.exp_bits + f.mant_bits) : 0;
  const uint64_t exp_max = (1ull << f.exp_bits) - 1, bias = exp_max >> 1;
  const uint64_t mant_all = (1ull << f.mant_bits) - 1, quiet = 1ull << (f.mant_bits - 1);
  auto make = [&](uint64_t exp, uint64_t mant) { return sign | exp << f.mant_bits | mant; };
  switch (pick(rng, 15)) {
  case 0:
    return make(0, 0); // zero
  case 1:
    return make(exp_max, 0); // infinity
  case 2:
    return make(exp_max, quiet); // default NaN
  case 3:
    return make(exp_max, quiet | (rng() & mant_all)); // quiet NaN with payload
  case 4:
    return make(exp_max, 1 + (rng() & (quiet - 2))); // signalling NaN
  case 5:
    return make(0, 1); // smallest subnormal
  case 6:
    return make(0, rng() & mant_all); // subnormal
  case 7:
    return make(1, pick(rng, 2) ? 0 : rng() & mant_all); // smallest normals
  case 8:
    return make(exp_max - 1, mant_all); // largest finite
  case 9:
    return make(bias + pick(rng, 3) - 1, 0); // 0.5, 1.0, 2.0
  case 10:
    return make(exp_max - 1 - pick(rng, 2), rng() & mant_all); // near overflow
  case 11:
    return make(1 + pick(rng, 2), rng() & mant_all); // near underflow
  case 12:
    return integer_limit(rng, f, sign); // where conversions to integers saturate
  default:
    return make(bias - 4 + pick(rng, 9), rng() & mant_all); // ordinary values
  }
}

// Sizes the compiler can see, so that the copies stay inline.
void put_element(uint8_t* base, unsigned i, unsigned bytes, uint64_t v) {
  uint8_t* at = base + i * bytes;
  switch (bytes) {
  case 1:
    *at = static_cast<uint8_t>(v);
    break;
  case 2:
    std::memcpy(at, &v, 2);
    break;
  case 4:
    std::memcpy(at, &v, 4);
    break;
  default:
    std::memcpy(at, &v, 8);
    break;
  }
}

unsigned element_bytes_for(const row_profile& p) { return p.elem_bytes > 8 ? 8 : p.elem_bytes; }

void draw_vector(rng_t& rng, const row_profile& p, uint8_t* z) {
  unsigned bytes = element_bytes_for(p);
  if (pick(rng, 10) < 3) bytes = 1u << pick(rng, 4);
  const unsigned n = vector_bytes() / bytes;
  switch (pick(rng, 10)) {
  case 0:
  case 1:
    for (unsigned i = 0; i < vector_bytes(); ++i) z[i] = static_cast<uint8_t>(rng());
    break;
  case 2: {
    const uint64_t v = draw_element(rng, bytes, p.floating);
    for (unsigned i = 0; i < n; ++i) put_element(z, i, bytes, v);
    break;
  }
  case 3: {
    const unsigned style = pick(rng, 3);
    for (unsigned i = 0; i < n; ++i)
      put_element(z, i, bytes, style == 0 ? 0 : style == 1 ? ~0ull : i);
    break;
  }
  default:
    for (unsigned i = 0; i < n; ++i) {
      uint64_t v = draw_element(rng, bytes, p.floating);
      // A narrower floating source gets its own hard cases in the low bits.
      if (bytes == element_bytes_for(p) && p.source_bytes < bytes)
        v = (v & ~width_mask(p.source_bytes)) | draw_element(rng, p.source_bytes, true);
      put_element(z, i, bytes, v);
    }
  }
}

void draw_predicate(rng_t& rng, unsigned bytes, uint8_t* packed) {
  if (pick(rng, 10) < 2) bytes = 1u << pick(rng, 4);
  const unsigned n = vector_bytes() / bytes;
  const unsigned style = pick(rng, 10), first = pick(rng, n + 1);
  uint64_t bits[kMaxVectorBytes / 64];
  for (uint64_t& b : bits) b = rng();
  const auto bit = [&](unsigned i) { return (bits[i / 64] >> (i % 64)) & 1; };
  std::memset(packed, 0, kMaxPredicateBytes);
  for (unsigned i = 0; i < n; ++i) {
    bool on;
    if (style < 3)
      on = true;
    else if (style == 3)
      on = false;
    else if (style < 6)
      on = bit(i);
    else
      on = i < first;
    set_predicate_bit(packed, i * bytes, on);
  }
  if (style == 6 || style == 7) // any bits at all, also between elements
    for (unsigned i = 0; i < vector_bytes(); ++i) set_predicate_bit(packed, i, bit(i));
}

uint64_t draw_scalar(rng_t& rng) {
  switch (pick(rng, 8)) {
  case 0:
    return edge_integer(rng, 8);
  case 1:
    return edge_integer(rng, 4);
  case 2:
    return static_cast<uint64_t>(static_cast<int64_t>(static_cast<int32_t>(edge_integer(rng, 4))));
  case 3:
    return pick(rng, 65);
  case 4:
    return static_cast<uint64_t>(-static_cast<int64_t>(pick(rng, 65)));
  default:
    return rng();
  }
}

// FPCR: rounding mode (23:22), FZ (24), DN (25), AHP (26) and FZ16 (19).
// The trap enables are left clear: the reference does not trap.
uint64_t draw_fpcr(rng_t& rng) {
  if (pick(rng, 10) < 3) return 0;
  return (rng() & (3ull << 22 | 1ull << 24 | 1ull << 25 | 1ull << 26 | 1ull << 19));
}

// FPSR: the cumulative flags IOC, DZC, OFC, UFC, IXC, IDC and QC.
uint64_t draw_fpsr(rng_t& rng) { return pick(rng, 2) ? 0 : rng() & 0x0800009full; }

uint64_t small_signed(rng_t& rng, unsigned range) {
  return static_cast<uint64_t>(static_cast<int64_t>(pick(rng, 2 * range + 1)) - range);
}

// An address for a memory form: near the middle of the area, where every
// immediate of every form stays inside it, or for first-fault forms often
// just below the unreadable page. First-fault addresses are element-aligned.
uint64_t draw_address(rng_t& rng, const row_profile& p, const test_area& area, bool near_end) {
  uint64_t a;
  if (near_end)
    a = reinterpret_cast<uint64_t>(area.unreadable) - pick(rng, 512);
  else
    a = reinterpret_cast<uint64_t>(area.begin + area.bytes / 2) - 1024 + pick(rng, 2048);
  if (p.first_fault) a &= ~static_cast<uint64_t>(p.msize - 1);
  return a;
}

void set_base(machine_state* m, unsigned n, uint64_t address) {
  if (n == 31)
    m->sp = address & ~15ull; // SP stays 16-byte aligned
  else
    m->x[n] = address;
}

// Where contiguous first-fault forms start: so close to the unreadable page
// that they mostly run into it.
uint64_t first_fault_start(rng_t& rng, const row_profile& p, const test_area& area) {
  const unsigned span = vector_bytes() / p.elem_bytes * p.msize; // bytes of memory one vector takes
  const uint64_t a = reinterpret_cast<uint64_t>(area.unreadable) - pick(rng, span * 3 / 2 + 1);
  return a & ~static_cast<uint64_t>(p.msize - 1);
}

// A large part shared by every offset of one gather or scatter: the offsets
// then sit near the ends of their range (where zero and sign extension part
// ways) and the base is moved back by as much, so the addresses stay where
// they were drawn. The part leaves room for the small per-element spread.
int64_t offset_bias(rng_t& rng, const row_profile& p) {
  const int64_t room = 128;
  const bool wide = !p.offset_32, sign = p.offset_signed;
  switch (pick(rng, 4)) {
  case 0:
    return 0;
  case 1: // just below the top of the range
    return wide ? INT64_MAX - room : sign ? INT32_MAX - room : UINT32_MAX - room;
  case 2: // just above the bottom of a signed range, the middle of an unsigned one
    return wide ? INT64_MIN + room : sign ? INT32_MIN + room : INT32_MAX - room;
  default:
    return wide   ? static_cast<int64_t>(rng()) / 2
           : sign ? static_cast<int32_t>(rng()) / 2
                  : static_cast<int64_t>(rng() % (UINT32_MAX - room));
  }
}

void place_addresses(rng_t& rng, const row_profile& p, uint32_t word, const test_area& area,
                     machine_state* m) {
  const unsigned n = field(word, 9, 5), mreg = field(word, 20, 16);
  // Plain contiguous forms meet the page too, a quarter of the time: under a
  // partial predicate only the active elements may fault. Not an index of
  // XZR, which the architecture leaves undefined and the emulator carries
  // out with the address as drawn.
  const bool undefined_index = p.addr == addressing::scalar_index && mreg == 31;
  const bool near_end =
      (p.first_fault && pick(rng, 2)) || (p.contiguous && !undefined_index && pick(rng, 4) == 0);
  switch (p.addr) {
  case addressing::none:
    return;
  case addressing::scalar_imm: {
    uint64_t base = draw_address(rng, p, area, false);
    if (near_end) {
      // The non-fault loads add imm4 (19:16) times the bytes one vector
      // of elements takes in memory.
      const int64_t imm = static_cast<int32_t>(word << 12) >> 28;
      const int64_t stride = static_cast<int64_t>(vector_bytes() / p.elem_bytes * p.msize);
      base = first_fault_start(rng, p, area) - static_cast<uint64_t>(imm * stride);
    }
    set_base(m, n, base);
    return;
  }
  case addressing::scalar_index: {
    const uint64_t index = small_signed(rng, near_end ? 8 : 64);
    uint64_t base = draw_address(rng, p, area, false);
    if (near_end) base = first_fault_start(rng, p, area) - index * p.msize;
    set_base(m, n, base);
    if (mreg != 31) m->x[mreg] = index;
    return;
  }
  case addressing::vector_imm:
    for (unsigned i = 0; i < vector_bytes() / p.lane_bytes; ++i)
      put_element(m->z[n], i, p.lane_bytes,
                  draw_address(rng, p, area, p.first_fault && pick(rng, 4) == 0));
    return;
  case addressing::vector_scalar: {
    // One offset for every element, taken back off each drawn address.
    const uint64_t offset = mreg == 31 ? 0 : static_cast<uint64_t>(small_signed(rng, 256));
    if (mreg != 31) m->x[mreg] = offset;
    for (unsigned i = 0; i < vector_bytes() / p.lane_bytes; ++i)
      put_element(m->z[n], i, p.lane_bytes, draw_address(rng, p, area, false) - offset);
    return;
  }
  case addressing::scalar_vector: {
    int64_t bias = offset_bias(rng, p);
    if (n == 31) bias &= ~int64_t{15}; // so that SP's alignment moves no address
    const unsigned shift = p.offset_scaled ? __builtin_ctz(p.msize) : 0;
    set_base(m, n, draw_address(rng, p, area, near_end) - (static_cast<uint64_t>(bias) << shift));
    for (unsigned i = 0; i < vector_bytes() / p.lane_bytes; ++i) {
      uint64_t off =
          static_cast<uint64_t>(bias) + (p.offset_signed ? small_signed(rng, 64) : pick(rng, 129));
      if (p.offset_32) off &= 0xffffffffull;
      if (p.offset_32 && p.lane_bytes == 8) off |= rng() << 32; // bits the form ignores
      put_element(m->z[mreg], i, p.lane_bytes, off);
    }
    return;
  }
  }
}

// Sets every bit of [lo, hi] of the word to `ones`.
uint32_t fill_bits(uint32_t w, unsigned lo, unsigned hi, bool ones) {
  const uint32_t m = static_cast<uint32_t>(((2ull << hi) - 1) & ~((1ull << lo) - 1));
  return ones ? w | m : w & ~m;
}

uint32_t copy_field(uint32_t w, uint32_t mask, unsigned from_lo, unsigned to_lo) {
  const uint32_t from = 0x1fu << from_lo, to = 0x1fu << to_lo;
  if ((mask & (from | to)) != 0) return w; // both must be free
  return (w & ~to) | (((w >> from_lo) & 0x1f) << to_lo);
}

} // namespace

uint64_t draw_element(rng_t& rng, unsigned bytes, bool floating) {
  const unsigned r = pick(rng, 10);
  if (bytes >= 2 && (floating ? r < 7 : r == 0)) return edge_float(rng, bytes);
  if (r < 8) return edge_integer(rng, bytes);
  return rng() & width_mask(bytes);
}

uint32_t draw_word(rng_t& rng, const row_profile& p) {
  for (;;) {
    uint32_t w = p.value | (static_cast<uint32_t>(rng()) & ~p.mask);
    // Runs of free bits now and then all zeros or all ones: the immediates
    // and register numbers at the ends of their ranges.
    for (unsigned lo = 0; lo < 32;) {
      if (p.mask >> lo & 1) {
        ++lo;
        continue;
      }
      unsigned hi = lo;
      while (hi + 1 < 32 && !(p.mask >> (hi + 1) & 1)) ++hi;
      if (pick(rng, 4) == 0) {
        const unsigned a = lo + pick(rng, hi - lo + 1), b = a + pick(rng, hi - a + 1);
        w = fill_bits(w, a, b, pick(rng, 2));
      }
      lo = hi + 1;
    }
    // The same register in several operand fields.
    if (pick(rng, 4) == 0) w = copy_field(w, p.mask, 5, 0);
    if (pick(rng, 4) == 0) w = copy_field(w, p.mask, 16, pick(rng, 2) ? 5 : 0);
    // An index register that is also the base cannot be both an address
    // and a small index.
    const unsigned n = field(w, 9, 5), m = field(w, 20, 16);
    if (p.addr == addressing::scalar_index && n == m && n != 31) continue;
    return w;
  }
}

void draw_state(rng_t& rng, const row_profile& p, uint32_t word, const test_area& area,
                machine_state* m) {
  for (uint64_t& x : m->x) x = draw_scalar(rng);
  for (auto& z : m->z) draw_vector(rng, p, z);
  const unsigned pbytes = element_bytes_for(p);
  for (auto& pr : m->p) draw_predicate(rng, pbytes, pr);
  if (pick(rng, 2))
    std::memset(m->ffr, 0xff, sizeof m->ffr);
  else
    draw_predicate(rng, pbytes, m->ffr);
  m->nzcv = (rng() & 0xf) << 28;
  m->fpsr = draw_fpsr(rng);
  m->fpcr = draw_fpcr(rng);
  m->sp = draw_address(rng, p, area, false) & ~15ull;
  place_addresses(rng, p, word, area, m);
  if (needs_first_element_active(p)) set_predicate_bit(m->p[field(word, 12, 10)], 0, true);
  if (needs_unsaturated_narrowing(p))
    for (auto& z : m->z)
      for (unsigned i = 0; i < vector_bytes() / 8; ++i) std::memset(z + 8 * i + 4, 0, 4);
}

void draw_memory(rng_t& rng, const row_profile& p, const test_area& area) {
  const size_t window = 4096;
  // A structured form's immediate moves its address by up to eight lists of
  // N vectors either way, and its data spans one more list.
  const size_t list_reach = 8 * p.registers * vector_bytes();
  const size_t middle_window = p.registers > 1 ? std::max(window, 2 * (1024 + list_reach)) : window;
  uint8_t* const middle = area.begin + area.bytes / 2 - middle_window / 2;
  uint8_t* const top = area.unreadable - window / 4;
  for (uint8_t* start : {middle, top}) {
    uint8_t* const end = start == middle ? middle + middle_window : area.unreadable;
    for (uint8_t* q = start; q < end; q += 8) {
      const uint64_t v = rng();
      std::memcpy(q, &v, 8);
    }
    const unsigned bytes = p.msize >= 2 ? p.msize : 1;
    for (int k = 0; k < 64; ++k) {
      const size_t slots = static_cast<size_t>(end - start) / bytes;
      put_element(start, static_cast<unsigned>(rng() % slots), bytes,
                  draw_element(rng, bytes, p.floating));
    }
  }
}
