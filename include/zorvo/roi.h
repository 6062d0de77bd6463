/* Region-of-interest markers for programs run under zorvo.
 *
 *   #include <zorvo/roi.h>
 *   ZORVO_ROI_START();   // this thread's SVE memory accesses are traced ...
 *   kernel();
 *   ZORVO_ROI_STOP();    // ... until here
 *
 * Each marker is one instruction word that zorvo recognises; it changes no
 * register and no memory. Markers act on the thread that runs them: a new
 * thread starts untraced, and nothing counts nesting (the first stop ends the
 * region). The words are emitted as raw data, so a file that includes this
 * header compiles without SVE support in the compiler or assembler.
 *
 * The words are encodings the Arm architecture reserves: a processor with
 * SVE, or any run outside zorvo, stops the program with SIGILL at the first
 * marker. Define ZORVO_ROI_DISABLE to compile the markers away. On other
 * architectures they are always empty. Usable from C and C++. */
#ifndef ZORVO_ROI_H
#define ZORVO_ROI_H

#if defined(__aarch64__) && !defined(ZORVO_ROI_DISABLE)
/* ADD Z0.B, Z0.B, #1, LSL #8 and #2, LSL #8. The memory clobber keeps the
 * compiler from moving loads and stores across a marker. */
#define ZORVO_ROI_START() __asm__ __volatile__(".inst 0x2520E020" ::: "memory")
#define ZORVO_ROI_STOP() __asm__ __volatile__(".inst 0x2520E040" ::: "memory")
#else
#define ZORVO_ROI_START() ((void)0)
#define ZORVO_ROI_STOP() ((void)0)
#endif

#endif
