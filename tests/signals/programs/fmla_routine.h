/* A routine of SVE words that programs write at run time: acc += b * c on
 * one vector of floats, through fmla at word kOpWord, which they turn into
 * fmls and back. */
#pragma once

typedef void kernel_fn(float*, const float*, const float*);

enum { kOpWord = 4 };
static const unsigned kFmla = 0x65a20020, kFmls = 0x65a22020;
static const unsigned kRoutine[] = {
    0x2598e3e0, /* ptrue p0.s */
    0xa540a000, /* ld1w {z0.s}, p0/z, [x0] */
    0xa540a021, /* ld1w {z1.s}, p0/z, [x1] */
    0xa540a042, /* ld1w {z2.s}, p0/z, [x2] */
    0x65a20020, /* fmla z0.s, p0/m, z1.s, z2.s */
    0xe540e000, /* st1w {z0.s}, p0, [x0] */
    0xd65f03c0, /* ret */
};
