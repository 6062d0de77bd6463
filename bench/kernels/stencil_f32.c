/* A five-point 2-D stencil on a grid whose rows are not a multiple of the
 * vector, vectorised by the compiler. */
#include "bench_check.h"

#define ROWS 40
#define COLS 203
#define DEFAULT_REPEAT 10

static float grid[2][ROWS][COLS];

__attribute__((noinline)) static void step(float (*restrict out)[COLS],
                                           float (*restrict in)[COLS]) {
  for (int r = 1; r < ROWS - 1; ++r)
    for (int c = 1; c < COLS - 1; ++c)
      out[r][c] =
          0.5f * in[r][c] + 0.125f * (in[r - 1][c] + in[r + 1][c] + in[r][c - 1] + in[r][c + 1]);
}

SCALAR static void scalar_step(float (*out)[COLS], float (*in)[COLS]) {
  for (int r = 1; r < ROWS - 1; ++r)
    for (int c = 1; c < COLS - 1; ++c)
      out[r][c] =
          0.5f * in[r][c] + 0.125f * (in[r - 1][c] + in[r + 1][c] + in[r][c - 1] + in[r][c + 1]);
}

static float want[2][ROWS][COLS];

SCALAR static void fill(float (*g)[2][ROWS][COLS]) {
  for (int r = 0; r < ROWS; ++r)
    for (int c = 0; c < COLS; ++c) (*g)[0][r][c] = (*g)[1][r][c] = (float)((r * 7 + c * 3) % 16);
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  fill(&grid);
  fill(&want);
  for (int s = 0; s < repeat; ++s) {
    step(grid[(s + 1) % 2], grid[s % 2]);
    scalar_step(want[(s + 1) % 2], want[s % 2]);
  }
  int ok = 1;
  double sum = 0;
  for (int r = 0; r < ROWS; ++r)
    for (int c = 0; c < COLS; ++c) {
      ok &= grid[repeat % 2][r][c] == want[repeat % 2][r][c];
      sum += grid[repeat % 2][r][c];
    }
  return bench_report("stencil_f32", ok, sum);
}
