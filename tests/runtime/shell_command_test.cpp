// The command system and popen hand to the C library when the shell starts
// under zorvo, run by a real shell: every word must reach the launcher as
// it was, whatever the user's command holds, and the launcher's status must
// be the shell's.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "shell_command.h"

namespace {

std::string run_and_read(const char* command) {
  FILE* out = popen(command, "r");
  if (out == nullptr) return "popen failed";
  std::string text;
  char buffer[256];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, out)) > 0) text.append(buffer, n);
  pclose(out);
  return text;
}

struct shell_text {
  char* text;
  explicit shell_text(char* t) : text(t) {}
  ~shell_text() { free(text); }
};

// A launcher that prints each word it is given, bracketed.
const char print_words[] = "/usr/bin/printf\x1f[%s]\\n";

TEST(ShellThroughLauncher, EveryWordArrivesAsWritten) {
  const char* commands[] = {
      "echo plain", "it's \"$HOME\" and `date` and $(id) \\ end",
      "''\"'\"'",   "line one\nline two; exit 3",
      "",
  };
  for (const char* command : commands) {
    shell_text through(shell_command::through_launcher(print_words, false, "/bin/sh", command));
    ASSERT_NE(through.text, nullptr);
    EXPECT_EQ(run_and_read(through.text),
              "[--argv0]\n[sh]\n[--]\n[/bin/sh]\n[-c]\n[" + std::string(command) + "]\n")
        << through.text;
  }
}

TEST(ShellThroughLauncher, LauncherOptionsAndInheritedLengthComeFirst) {
  shell_text through(shell_command::through_launcher("/usr/bin/printf\x1f[%s]\\n\x1f--vl\x1f"
                                                     "256\x1f--trace-dir\x1f/tmp/a b",
                                                     true, "/bin/sh", "true"));
  ASSERT_NE(through.text, nullptr);
  EXPECT_EQ(run_and_read(through.text), "[--vl]\n[256]\n[--trace-dir]\n[/tmp/a b]\n"
                                        "[--vl-inherit]\n[--argv0]\n[sh]\n[--]\n[/bin/sh]\n"
                                        "[-c]\n[true]\n");
}

// The shell that system starts becomes the launcher: its status is the
// launcher's, as system reports it.
TEST(ShellThroughLauncher, StatusIsTheLaunchers) {
  shell_text through(shell_command::through_launcher("/bin/sh\x1f-c\x1f"
                                                     "exit 7",
                                                     false, "/bin/sh", "exit 1"));
  ASSERT_NE(through.text, nullptr);
  const int status = system(through.text);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

std::string write_file(const char* name, const std::string& bytes) {
  const std::string path = testing::TempDir() + name;
  FILE* f = fopen(path.c_str(), "wb");
  fwrite(bytes.data(), 1, bytes.size(), f);
  fclose(f);
  return path;
}

// ELF identification and machine, padded to a header's length.
std::string elf_header(unsigned char machine) {
  std::string h = std::string("\x7f"
                              "ELF\x02\x01\x01",
                              7) +
                  std::string(11, '\0');
  h += static_cast<char>(machine);
  h += std::string(64 - h.size(), '\0');
  return h;
}

// Only an AArch64 shell goes through the launcher, and only when there is
// one; every other shell gets the command as it is.
TEST(ShellThroughLauncher, OnlyAnAArch64ShellWithALauncher) {
  const std::string aarch64 = write_file("aarch64_shell", elf_header(183));
  const std::string x86 = write_file("x86_shell", elf_header(62));
  const std::string script = write_file("script_shell", "#!/bin/sh\necho\n");
  const std::string missing = testing::TempDir() + "no_such_shell";
  unlink(missing.c_str());

  shell_text through(shell_command::for_shell(print_words, false, aarch64.c_str(), "true"));
  ASSERT_NE(through.text, nullptr);
  EXPECT_NE(std::string(through.text).find("'--' '" + aarch64 + "' '-c' 'true'"), std::string::npos)
      << through.text;
  for (const std::string& other : {x86, script, missing})
    EXPECT_EQ(shell_command::for_shell(print_words, false, other.c_str(), "true"), nullptr)
        << other;
  EXPECT_EQ(shell_command::for_shell("", false, aarch64.c_str(), "true"), nullptr);
  EXPECT_EQ(shell_command::for_shell(nullptr, false, aarch64.c_str(), "true"), nullptr);
  // system(NULL) asks whether there is a shell: the C library answers.
  EXPECT_EQ(shell_command::for_shell(print_words, false, aarch64.c_str(), nullptr), nullptr);
}

} // namespace
