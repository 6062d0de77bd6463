// system and popen from an SVE program: the shell's output, the statuses
// they return, popen's pipe in both directions, and system's signal
// handling (SIGINT and SIGQUIT sent to the caller while it waits leave it
// running; its own dispositions come back afterwards).
#include <arm_sve.h>
#include <errno.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>

static void print_status(const char* what, int status) {
  if (status == -1)
    printf("%s: failed\n", what);
  else if (WIFEXITED(status))
    printf("%s: exit %d\n", what, WEXITSTATUS(status));
  else if (WIFSIGNALED(status))
    printf("%s: signal %d\n", what, WTERMSIG(status));
  fflush(stdout);
}

static int sve_sum(void) {
  static int32_t values[64];
  for (int i = 0; i < 64; ++i) values[i] = i - 5;
  return (int)svaddv_s32(svptrue_b32(), svld1_s32(svptrue_b32(), values));
}

int main(void) {
  printf("sve: %d lanes, sum %d\n", (int)svcntw(), sve_sum());
  printf("shell available: %s\n", system(NULL) ? "yes" : "no");
  fflush(stdout);
  print_status("system", system("echo \"from system: $0\" 'it'\\''s $HOME'; exit 3"));
  print_status("system killed", system("kill -TERM $$"));
  print_status("system interrupted",
               system("kill -INT $PPID; kill -QUIT $PPID; echo caller still waits; exit 5"));
  struct sigaction now;
  sigaction(SIGINT, NULL, &now);
  printf("SIGINT afterwards: %s\n", now.sa_handler == SIG_DFL ? "default" : "changed");

  FILE* in = popen("printf 'line one\\nline two\\n'; exit 4", "r");
  char line[128];
  while (in && fgets(line, sizeof line, in)) printf("read: %s", line);
  print_status("pclose reading", in ? pclose(in) : -1);

  FILE* out = popen("tr a-z A-Z; exit 2", "w");
  if (out) fputs("written through the pipe\n", out);
  print_status("pclose writing", out ? pclose(out) : -1);

  errno = 0;
  FILE* bad = popen("true", "x");
  printf("popen with mode x: %s, %s\n", bad ? "stream" : "null", errno == EINVAL ? "EINVAL" : "?");
  printf("sve again: sum %d\n", sve_sum());
  return 0;
}
