// A statically linked program, which zorvo does not run yet.
#include <stdio.h>

int main(void) {
  printf("hello\n");
  return 0;
}
