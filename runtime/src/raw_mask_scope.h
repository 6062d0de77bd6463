// Changes the calling thread's signal mask for the length of a scope, by the
// raw system call: the application's view of its mask is not involved.
#pragma once

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

class raw_mask_scope {
public:
  raw_mask_scope(int how, const sigset_t& set) {
    syscall(SYS_rt_sigprocmask, how, &set, &before_, kKernelSigsetBytes);
  }
  ~raw_mask_scope() {
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, &before_, nullptr, kKernelSigsetBytes);
  }
  raw_mask_scope(const raw_mask_scope&) = delete;
  raw_mask_scope& operator=(const raw_mask_scope&) = delete;

  static sigset_t all_signals() {
    sigset_t all;
    sigfillset(&all);
    return all;
  }

private:
  static constexpr long kKernelSigsetBytes = 8;
  sigset_t before_;
};
