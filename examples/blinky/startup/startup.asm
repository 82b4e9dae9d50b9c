; Reset and interrupt vectors, then the jump into C.
        .syntax unified
        .cpu cortex-m4
        .thumb

        .section .isr_vector, "a"
        .word   _estack
        .word   Reset_Handler
        .rept   13
        .word   Default_Handler
        .endr
        .word   SysTick_Handler

        .text
        .thumb_func
        .global Reset_Handler
Reset_Handler:
        bl      main
        b       .

        .thumb_func
Default_Handler:
        b       .
