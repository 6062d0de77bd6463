// run_plain_words(uint64_t *out): blocks where plain data-processing words
// sit between SVE words, and loops whose closing branch joins the block. The
// plain words use SP, XZR, W forms, flag-setting forms and forms that keep
// part of their destination; out gets X0-X27, X29, NZCV, the SP offset the
// words computed and the loop counts.
        .arch armv8.2-a+sve
        .text
        .globl run_plain_words
        .type run_plain_words, %function
run_plain_words:
        sub     sp, sp, #128
        stp     x19, x20, [sp, #0]
        stp     x21, x22, [sp, #16]
        stp     x23, x24, [sp, #32]
        stp     x25, x26, [sp, #48]
        stp     x27, x28, [sp, #64]
        stp     x29, x30, [sp, #80]
        str     x0, [sp, #96]

        .irp r, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 29
        movz    x\r, #(0x0555 * \r)
        movk    x\r, #(0x0f0f + \r), lsl #32
        .endr
        mov     x0, #-7

        // One block: SVE words with plain words of every class between them.
        ptrue   p0.s
        add     x1, x1, #0x123                  // add (immediate)
        index   z0.s, w1, #3
        sub     w2, w3, w4                      // W form: the upper half clears
        cntw    x10
        adds    x5, x5, x0                      // sets the flags
        incw    x11
        ands    x12, x12, #0xff00               // logical (immediate), flags
        decw    x12
        orr     x13, xzr, x14                   // XZR as an operand
        incd    x13
        eor     w15, w15, w16, ror #3           // logical (shifted register)
        cntd    x16
        movk    x17, #0xbeef, lsl #16           // keeps the rest of Rd
        incb    x17
        bfi     x18, x19, #8, #12               // bitfield, keeps the rest of Rd
        cnth    x19
        ubfx    x20, x21, #4, #20
        incw    x20
        add     x21, sp, #32                    // SP as a source
        cntb    x22
        mov     x30, sp                         // add (immediate) from SP
        sub     x21, x21, x30                   // 32
        incw    x21
        add     x23, x24, w25, sxtw #2          // extended register
        cntw    x24
        cmp     x26, x27                        // subs into XZR: the flags only
        incd    x26
        mov     x27, sp
        incb    x25
        add     sp, sp, #16                     // SP as the destination
        cntd    x9
        sub     sp, sp, #16
        incw    x9
        sub     x27, sp, x27                    // extended, from SP: 0 when it came back
        cntp    x8, p0, p0.s
        mrs     x7, nzcv
        str     x7, [sp, #120]

        // A loop inside one block: SVE words, a counter and the branch back.
        mov     x3, #0
        mov     x4, #40
        mov     x6, #0
1:      whilelo p1.s, x3, x4
        cntp    x7, p0, p1.s
        add     x6, x6, x7
        incw    x3
        subs    x4, x4, #1
        b.ne    1b

        // A loop that ends on flags an SVE word set: while elements remain.
        mov     x14, #0
        mov     x29, #0
2:      whilelo p2.s, x14, x22
        incp    x29, p2.s
        incw    x14
        add     x29, x29, #1
        b.mi    2b

        // A loop with ways out in its middle: one never taken, one taken on
        // the fifth iteration, when X15 reaches 60 (12 words a vector).
        mov     x15, #0
        mov     x16, #100
3:      cntw    x7
        add     x15, x15, x7
        cmp     x15, #60
        b.vs    4f
        b.hs    4f
        subs    x16, x16, #1
        b.ne    3b
4:
        ldr     x28, [sp, #96]
        stp     x0, x1, [x28, #0]
        stp     x2, x3, [x28, #16]
        stp     x4, x5, [x28, #32]
        stp     x6, x7, [x28, #48]
        stp     x8, x9, [x28, #64]
        stp     x10, x11, [x28, #80]
        stp     x12, x13, [x28, #96]
        stp     x14, x15, [x28, #112]
        stp     x16, x17, [x28, #128]
        stp     x18, x19, [x28, #144]
        stp     x20, x21, [x28, #160]
        stp     x22, x23, [x28, #176]
        stp     x24, x25, [x28, #192]
        stp     x26, x27, [x28, #208]
        str     x29, [x28, #224]
        ldr     x7, [sp, #120]
        str     x7, [x28, #232]
        mrs     x7, nzcv
        str     x7, [x28, #240]

        ldp     x19, x20, [sp, #0]
        ldp     x21, x22, [sp, #16]
        ldp     x23, x24, [sp, #32]
        ldp     x25, x26, [sp, #48]
        ldp     x27, x28, [sp, #64]
        ldp     x29, x30, [sp, #80]
        add     sp, sp, #128
        ret
        .size run_plain_words, . - run_plain_words
