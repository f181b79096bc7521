# start.S - the first instructions after reset.
# SPDX-License-Identifier: Apache-2.0
    .section .start, "ax"
    .globl _start
_start:
    la sp, stack_top
    la t0, bss_start
    la t1, bss_end
1:  bgeu t0, t1, 2f
    sw zero, 0(t0)
    addi t0, t0, 4
    j 1b
2:  call main
3:  j 3b
