/* One of two libraries of the same shape, loaded one after the other at the
 * same address: OP is fmla in one, fmls in the other. */
void kernel(float* acc, const float* b, const float* c) {
  __asm__ volatile("ptrue p0.s\n\tld1w {z0.s}, p0/z, [%0]\n\tld1w {z1.s}, p0/z, [%1]\n\t"
                   "ld1w {z2.s}, p0/z, [%2]\n\t" OP " z0.s, p0/m, z1.s, z2.s\n\t"
                   "st1w {z0.s}, p0, [%0]"
                   :
                   : "r"(acc), "r"(b), "r"(c)
                   : "memory", "v0", "v1", "v2", "p0");
}
