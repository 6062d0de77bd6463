// The instruction mix's pieces that need no emulation: the mnemonic of every
// decode row, the table, CSV and JSON, and symbols from ELF files.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "elf_symbols.h"
#include "forms/forms_table.h"
#include "mix_table.h"

extern "C" __attribute__((noinline)) int mix_probe_function(int x) { return x * 3 + 1; }

namespace {

int probe_data = 5;

// The disassembler named every row when the mnemonics were written; a row
// added since without running the script again is caught here.
TEST(MixMnemonics, EveryDecodeRowHasOne) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  for (int i = 0; i < count; ++i) EXPECT_GT(std::strlen(rows[i].mnemonic), 1u) << rows[i].name;
  EXPECT_STREQ(find_decode_row(0xa540a000)->mnemonic, "ld1w"); // ld1w {z0.s}, p0/z, [x0]
  EXPECT_STREQ(find_decode_row(0x04e03000)->mnemonic, "bic");  // bic z0.d, z0.d, z0.d
}

mix_summary sample() {
  mix_summary m;
  m.total = 8000;
  m.threads = 2;
  m.forms = {{"ld1w", "VecU32CLoad4LSSZ", 6000}, {"fadd", "VecF32AddVVX", 2000}};
  m.top = {{0x5500000930, "kernel(float*, int)+0x30", "ld1w", "VecU32CLoad4LSSZ", 6000},
           {0x5500000940, "", "fadd", "VecF32AddVVX", 2000}};
  return m;
}

TEST(MixTable, TextHasCountsSharesAndSymbols) {
  mix_summary m = sample();
  std::string text = mix_text(m);
  for (const char* line : {
           "zorvo: instruction mix: 8,000 SVE instructions emulated in 2 threads\n",
           "            6,000  75.00%  ld1w       VecU32CLoad4LSSZ\n",
           "            2,000  25.00%  fadd       VecF32AddVVX\n",
           "zorvo: the 2 addresses that emulated most\n",
           "            6,000  75.00%  0x5500000930       ld1w       kernel(float*, int)+0x30\n",
           "            2,000  25.00%  0x5500000940       fadd       ?\n",
       })
    EXPECT_NE(text.find(line), std::string::npos) << line << "in\n" << text;
  EXPECT_EQ(text.find("not counted"), std::string::npos);
  m.uncounted_sites = 12;
  m.counters_per_thread = 3764;
  EXPECT_NE(mix_text(m).find("12 instruction addresses were not counted: a thread can count "
                             "3,764 addresses"),
            std::string::npos);
  m.threads = 1;
  EXPECT_NE(mix_text(m).find("emulated in 1 thread\n"), std::string::npos);
}

TEST(MixTable, CsvAndJsonQuoteWhatNeedsIt) {
  mix_summary m = sample();
  m.top[1].symbol = "say \"hi\"\\";
  EXPECT_EQ(mix_csv(m),
            "kind,count,share,mnemonic,form,address,symbol\n"
            "form,6000,75.0000,ld1w,VecU32CLoad4LSSZ,,\n"
            "form,2000,25.0000,fadd,VecF32AddVVX,,\n"
            "address,6000,75.0000,ld1w,VecU32CLoad4LSSZ,0x5500000930,"
            "\"kernel(float*, int)+0x30\"\n"
            "address,2000,25.0000,fadd,VecF32AddVVX,0x5500000940,\"say \"\"hi\"\"\\\"\n");
  const std::string json = mix_json(m);
  EXPECT_EQ(json.find("{\"total\": 8000, \"threads\": 2, \"uncounted_addresses\": 0,"), 0u);
  EXPECT_NE(json.find("{\"mnemonic\": \"fadd\", \"form\": \"VecF32AddVVX\", \"count\": 2000, "
                      "\"share\": 25.0000}]"),
            std::string::npos)
      << json;
  EXPECT_NE(json.find("\"symbol\": \"say \\\"hi\\\"\\\\\""), std::string::npos) << json;
}

TEST(ElfSymbols, CodeAddressesGetTheFunctionThatHoldsThem) {
  const auto probe = reinterpret_cast<uint64_t>(&mix_probe_function);
  const auto libc_function = reinterpret_cast<uint64_t>(&std::puts);
  const std::vector<std::string> names =
      symbolize({probe, probe + 4, libc_function, reinterpret_cast<uint64_t>(&probe_data), 16});
  ASSERT_EQ(names.size(), 5u);
  EXPECT_EQ(names[0], "mix_probe_function+0x0");
  EXPECT_EQ(names[1], "mix_probe_function+0x4");
  EXPECT_NE(names[2].find("puts+0x0"), std::string::npos) << names[2]; // puts or _IO_puts
  EXPECT_EQ(names[3], "");                                             // data, not code
  EXPECT_EQ(names[4], "");                                             // nothing is mapped there
  EXPECT_EQ(mix_probe_function(2), 7);
}

TEST(ElfSymbols, FilesThatAreNotElfHaveNoSymbols) {
  char path[] = "/tmp/zorvo-mix-test.XXXXXX";
  const int fd = mkstemp(path);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(write(fd,
                  "\x7f"
                  "ELF but not really, nothing follows",
                  36),
            36);
  close(fd);
  EXPECT_EQ(elf_symbol_at(path, 0x1000), "");
  EXPECT_EQ(elf_symbol_at("/no/such/file", 0x1000), "");
  unlink(path);
}

} // namespace
