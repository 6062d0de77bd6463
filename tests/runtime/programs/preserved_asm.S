// run_with_patterns(uint64_t *out): puts a distinct value into every general
// register X0-X30, sets the flags, FPSR and FPCR, runs SVE instructions, and
// writes what is left into out: X0-X30, then NZCV, FPSR, FPCR and whether SP
// came back unchanged (1).
        .arch armv8.2-a+sve
        .macro store_pair a, b
        stp     x\a, x\b, [sp, #(8 * \a)]
        .endm

        .text
        .globl run_with_patterns
        .type run_with_patterns, %function
run_with_patterns:
        sub     sp, sp, #432
        stp     x19, x20, [sp, #256]
        stp     x21, x22, [sp, #272]
        stp     x23, x24, [sp, #288]
        stp     x25, x26, [sp, #304]
        stp     x27, x28, [sp, #320]
        stp     x29, x30, [sp, #336]
        str     x0, [sp, #400]
        mrs     x1, fpcr
        str     x1, [sp, #392]
        mov     x1, sp
        str     x1, [sp, #384]

        mov     x1, #0x00c00000          // round towards zero
        msr     fpcr, x1
        mov     x1, #0x11                // IOC and IXC
        msr     fpsr, x1
        mov     x1, #-1
        adds    x1, x1, #1               // Z and C
        .irp    n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30
        movz    x\n, #(0xa000 + \n), lsl #48
        movk    x\n, #(0x100 * \n + 0x5a)
        .endr

        add     z1.d, z2.d, z3.d
        sub     z4.b, z4.b, #1
        add     z5.h, z5.h, #2, lsl #8
        sub     z31.s, z30.s, z29.s

        stp     x0, x1, [sp, #0]
        .irp    pair, "2,3", "4,5", "6,7", "8,9", "10,11", "12,13", "14,15", "16,17", "18,19", "20,21", "22,23", "24,25", "26,27", "28,29"
        store_pair \pair
        .endr
        str     x30, [sp, #240]
        mrs     x0, nzcv
        str     x0, [sp, #248]
        mrs     x0, fpsr
        str     x0, [sp, #352]
        mrs     x0, fpcr
        str     x0, [sp, #360]
        mov     x0, sp
        ldr     x1, [sp, #384]
        cmp     x0, x1
        cset    x0, eq
        str     x0, [sp, #368]

        ldr     x1, [sp, #400]
        mov     x2, #0
1:      ldr     x3, [sp, x2, lsl #3]
        str     x3, [x1, x2, lsl #3]
        add     x2, x2, #1
        cmp     x2, #32
        b.ne    1b
        ldr     x3, [sp, #352]
        str     x3, [x1, #256]
        ldr     x3, [sp, #360]
        str     x3, [x1, #264]
        ldr     x3, [sp, #368]
        str     x3, [x1, #272]

        ldr     x1, [sp, #392]
        msr     fpcr, x1
        ldp     x19, x20, [sp, #256]
        ldp     x21, x22, [sp, #272]
        ldp     x23, x24, [sp, #288]
        ldp     x25, x26, [sp, #304]
        ldp     x27, x28, [sp, #320]
        ldp     x29, x30, [sp, #336]
        add     sp, sp, #432
        ret
        .size run_with_patterns, .-run_with_patterns
        .section .note.GNU-stack,"",%progbits
