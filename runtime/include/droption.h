// Option parsing for clients. The runtime offers no option types yet, so the
// list of registered options, allops(), stays empty and the one word a
// client's command line may hold before its end is the separator "--".
#ifndef _DROPTION_H_
#define _DROPTION_H_ 1

#include <cstring>
#include <string>
#include <vector>

enum droption_scope_t {
  DROPTION_SCOPE_CLIENT = 0x0001,
  DROPTION_SCOPE_FRONTEND = 0x0002,
  DROPTION_SCOPE_ALL = DROPTION_SCOPE_CLIENT | DROPTION_SCOPE_FRONTEND,
};

class droption_parser_t {
public:
  // Returns true when the command line parsed; last_index then tells where
  // the words after "--" start. On failure error_msg says why and last_index
  // points at the offending word.
  static bool parse_argv(unsigned int /*scope*/, int argc, const char* argv[],
                         std::string* error_msg, int* last_index) {
    int i = 1; // argv[0] is the client's path
    bool ok = true;
    for (; i < argc; ++i) {
      if (std::strcmp(argv[i], "--") == 0) {
        ++i;
        break;
      }
      // No registered option can match the word.
      if (error_msg != nullptr) *error_msg = std::string("Unknown option: ") + argv[i];
      ok = false;
      break;
    }
    if (last_index != nullptr) *last_index = i;
    return ok;
  }

  static std::vector<droption_parser_t*>& allops() {
    static std::vector<droption_parser_t*> options;
    return options;
  }
};

#endif
