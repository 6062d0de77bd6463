// zorvo-decode WORD...: what the emulator makes of SVE instruction words.
// For each word: the decode map and key that match, the decoder, its fast
// handler, and the operands the decoder passes to it.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "decode/line_writer.h"
#include "forms/describe.h"
#include "forms/forms_table.h"

namespace {

const char kHelp[] = "usage: zorvo-decode WORD...\n"
                     "\n"
                     "Shows what the SVE emulator does with each 32-bit instruction word, given\n"
                     "in hexadecimal with or without 0x: the decode map and key that match it,\n"
                     "the decoder, the fast handler it calls (\"generic\" when the generic tier\n"
                     "carries it out, \"none\" for a prefetch, which does nothing), and the\n"
                     "operands the decoder passes to the handler: register descriptors with all\n"
                     "their words, and immediates with their kind and value.\n"
                     "\n"
                     "A word that no decode row matches is not taken over by the emulator and\n"
                     "runs natively. Exit status: 0, or 2 when an argument is not a hexadecimal\n"
                     "word.\n"
                     "\n"
                     "The program is built for AArch64. On another machine run zorvo-decode.sh,\n"
                     "next to it in the build tree, which starts it under qemu-aarch64.\n";

bool parse_word(const char* text, uint32_t* word) {
  if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) text += 2;
  const size_t digits = std::strlen(text);
  if (digits == 0 || digits > 8 || std::strspn(text, "0123456789abcdefABCDEF") != digits)
    return false;
  *word = static_cast<uint32_t>(std::strtoul(text, nullptr, 16));
  return true;
}

void show_word(uint32_t word) {
  const decode_row* row = find_decode_row(word);
  if (!row) {
    std::printf("0x%08x: no decode row matches; the emulator leaves it to run natively\n\n", word);
    return;
  }
  const decode_map_info& map = decode_maps()[row->map];
  std::printf("0x%08x: %s\n", word, row->name);
  std::printf("  map       %s, key 0x%x\n", map.name, static_cast<unsigned>(row->key));
  char text[512];
  switch (row->kind) {
  case DECODER_THIN: {
    std::printf("  handler   %s\n", row->handler);
    line_writer fields(text, sizeof text);
    row->operands->notation(fields);
    std::printf("  fields    %s\n", text);
    break;
  }
  case DECODER_BRIDGE:
    std::printf("  handler   generic (the generic tier's %s)\n", row->name);
    if (row->operands->notation) {
      line_writer fields(text, sizeof text);
      row->operands->notation(fields);
      std::printf("  fields    %s\n", text);
    }
    break;
  case DECODER_EMPTY:
    std::printf("  handler   none (a prefetch: nothing to do)\n");
    break;
  }
  describe_operands(word, text, sizeof text);
  std::printf("  operands  %s\n\n", text);
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs(kHelp, stderr);
    return 2;
  }
  for (int i = 1; i < argc; ++i) {
    if (!std::strcmp(argv[i], "-h") || !std::strcmp(argv[i], "--help")) {
      std::fputs(kHelp, stdout);
      return 0;
    }
  }
  uint32_t word;
  for (int i = 1; i < argc; ++i) {
    if (!parse_word(argv[i], &word)) {
      std::fprintf(stderr, "zorvo-decode: not a hexadecimal instruction word: '%s'\n", argv[i]);
      return 2;
    }
  }
  for (int i = 1; i < argc; ++i) {
    parse_word(argv[i], &word);
    show_word(word);
  }
  return 0;
}
