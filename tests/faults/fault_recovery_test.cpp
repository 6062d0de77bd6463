// The probe, the guarded read and the fatal path, on pages that are mapped,
// unmapped, or mapped without access.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "decode/sve_utils.h"
#include "memory/sve_fault.h"

namespace {

const size_t kPage = static_cast<size_t>(sysconf(_SC_PAGESIZE));

// Three pages: readable, no access, then unmapped.
struct pages {
  char* readable;
  char* no_access;
  char* unmapped;
};

pages map_pages() {
  void* p = mmap(nullptr, 3 * kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) std::abort();
  char* base = static_cast<char*>(p);
  std::memset(base, 0x11, kPage);
  if (mprotect(base + kPage, kPage, PROT_NONE) != 0 || munmap(base + 2 * kPage, kPage) != 0)
    std::abort();
  return {base, base + kPage, base + 2 * kPage};
}

void (*installed(int sig))(int, siginfo_t*, void*) {
  struct sigaction now;
  sigaction(sig, nullptr, &now);
  return now.sa_sigaction;
}

bool ignored(int sig) {
  struct sigaction now;
  sigaction(sig, nullptr, &now);
  return now.sa_handler == SIG_IGN;
}

// Loading the decode maps installs the handlers, after reading the page size.
TEST(FaultHandlers, InstalledAtLoadForBothSignalsAndNotAgain) {
  EXPECT_EQ(page_size, kPage);
  EXPECT_EQ(SVELibInitialized, 1u);
  EXPECT_EQ(installed(SIGSEGV), &SVESigHandler);
  EXPECT_EQ(installed(SIGBUS), &SVESigHandler);
  struct sigaction now;
  sigaction(SIGBUS, nullptr, &now);
  EXPECT_EQ(now.sa_flags & kFaultActionFlags, kFaultActionFlags);

  struct sigaction other, saved;
  std::memset(&other, 0, sizeof other);
  other.sa_handler = SIG_IGN;
  sigaction(SIGBUS, &other, &saved);
  EXPECT_EQ(SVEInitialize(), 1);
  EXPECT_TRUE(ignored(SIGBUS));
  sigaction(SIGBUS, &saved, nullptr);
}

TEST(Probe, TellsReadablePagesFromOthersAndRestoresTheAction) {
  const pages m = map_pages();
  EXPECT_TRUE(addr_is_readable<char>(m.readable));
  EXPECT_TRUE(addr_is_readable<char>(m.readable + kPage - 1));
  EXPECT_FALSE(addr_is_readable<char>(m.no_access));
  EXPECT_FALSE(addr_is_readable<char>(m.unmapped + 17));
  EXPECT_FALSE(addr_is_readable<char>(nullptr));
  // A failed probe leaves nothing behind: the next one on a good page passes.
  EXPECT_TRUE(addr_is_readable<char>(m.readable + 100));
  EXPECT_EQ(installed(SIGSEGV), &SVESigHandler);
  EXPECT_EQ(m.readable[0], 0x11);
  munmap(m.readable, 2 * kPage);
}

TEST(Probe, KeepsAnActionThatWasNotOurs) {
  const pages m = map_pages();
  struct sigaction other, saved;
  std::memset(&other, 0, sizeof other);
  other.sa_handler = SIG_IGN;
  sigaction(SIGSEGV, &other, &saved);
  EXPECT_FALSE(addr_is_readable<char>(m.unmapped));
  EXPECT_TRUE(ignored(SIGSEGV));
  sigaction(SIGSEGV, &saved, nullptr);
  munmap(m.readable, 2 * kPage);
}

TEST(GuardedRead, ReportsAFaultThroughTheFlagAndWorksAgainAfterwards) {
  const pages m = map_pages();
  const uint64_t bad = reinterpret_cast<uint64_t>(m.unmapped);
  for (int bytes : {1, 2, 4, 8}) {
    bool fault = false;
    EXPECT_EQ(guarded_read(bad, bytes, 1, &fault), 0u) << bytes;
    EXPECT_TRUE(fault) << bytes;
    EXPECT_EQ(SVEFaultRegion, 0u);
    EXPECT_EQ(installed(SIGSEGV), &SVESigHandler);
  }
  bool fault = false;
  EXPECT_EQ(guarded_read(reinterpret_cast<uint64_t>(m.no_access), 4, 1, &fault), 0u);
  EXPECT_TRUE(fault);

  // Success neither sets nor clears the flag; values are zero-extended, and
  // an unaligned element reads as the host reads it.
  std::memcpy(m.readable + 1, "\x81\x82\x83\x84\x85\x86\x87\x88", 8);
  fault = true;
  EXPECT_EQ(guarded_read(reinterpret_cast<uint64_t>(m.readable + 1), 2, 1, &fault), 0x8281u);
  EXPECT_TRUE(fault);
  fault = false;
  EXPECT_EQ(guarded_read(reinterpret_cast<uint64_t>(m.readable + 1), 8, 1, &fault),
            0x8887868584838281u);
  EXPECT_EQ(guarded_read(reinterpret_cast<uint64_t>(m.readable + 1), 1, 0, nullptr), 0x81u);
  EXPECT_EQ(guarded_read(reinterpret_cast<uint64_t>(m.readable + 3), 4, 1, nullptr), 0x86858483u);
  EXPECT_FALSE(fault);
  munmap(m.readable, 2 * kPage);
}

// The message comes once, then the default action; qemu may add its own
// line for the signal.
TEST(FatalFault, UnguardedReadEndsTheProcessBySigsegvWithOneMessage) {
  const pages m = map_pages();
  const char* message = "^zorvo's SVESigHandler caught signal SIGSEGV from the process being "
                        "emulated, passing it to the default signal handler\\.\n(qemu: .*\n)?$";
  EXPECT_EXIT(guarded_read(reinterpret_cast<uint64_t>(m.unmapped), 8, 0, nullptr),
              ::testing::KilledBySignal(SIGSEGV), message);
  // Suppression without a flag to report to is no guard.
  EXPECT_EXIT(guarded_read(reinterpret_cast<uint64_t>(m.no_access), 8, 1, nullptr),
              ::testing::KilledBySignal(SIGSEGV), message);
  munmap(m.readable, 2 * kPage);
}

// A file mapping beyond the file's end raises SIGBUS, which the probe does
// not catch.
TEST(FatalFault, SigbusIsNamedAndIsNotCaughtByTheProbe) {
  char path[] = "/tmp/zorvo-sigbus-XXXXXX";
  const int fd = mkstemp(path);
  ASSERT_GE(fd, 0);
  unlink(path);
  ASSERT_EQ(ftruncate(fd, 1), 0);
  void* p = mmap(nullptr, 2 * kPage, PROT_READ, MAP_SHARED, fd, 0);
  ASSERT_NE(p, MAP_FAILED);
  char* beyond_end = static_cast<char*>(p) + kPage;
  const char* message = "^zorvo's SVESigHandler caught signal SIGBUS from the process being "
                        "emulated, passing it to the default signal handler\\.\n(qemu: .*\n)?$";
  EXPECT_EXIT(guarded_read(reinterpret_cast<uint64_t>(beyond_end), 4, 0, nullptr),
              ::testing::KilledBySignal(SIGBUS), message);
  EXPECT_EXIT(addr_is_readable<char>(beyond_end), ::testing::KilledBySignal(SIGBUS), message);
  // Under a guard it is caught like SIGSEGV.
  bool fault = false;
  EXPECT_EQ(guarded_read(reinterpret_cast<uint64_t>(beyond_end), 4, 1, &fault), 0u);
  EXPECT_TRUE(fault);
  munmap(p, 2 * kPage);
  close(fd);
}

} // namespace
