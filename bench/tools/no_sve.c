/* A program without SVE: what zorvo costs before the first SVE instruction. */
#include <stdio.h>

int main(void) {
  puts("no_sve: ok");
  return 0;
}
