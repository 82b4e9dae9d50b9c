/* Vector table and reset handler of the Cortex-M3 image. The reset handler
   copies the initialised data from flash to RAM, zeroes .bss and calls main.
   Symbols starting with _s and _e come from startup/stm32f103c8.ld. */
        .syntax unified
        .cpu    cortex-m3
        .thumb

/* The core reads the stack pointer and the reset address from the first two
   words of flash; the linker script puts this section there. */
        .section .isr_vector, "a", %progbits
        .align  2
        .global vector_table
        .type   vector_table, %object
vector_table:
        .word   _estack
        .word   Reset_Handler
        .word   NMI_Handler
        .word   HardFault_Handler
        .word   MemManage_Handler
        .word   BusFault_Handler
        .word   UsageFault_Handler
        .word   0, 0, 0, 0
        .word   SVC_Handler
        .word   DebugMon_Handler
        .word   0
        .word   PendSV_Handler
        .word   SysTick_Handler
/* The 60 peripheral interrupts of the STM32F103; none is enabled. */
        .rept   60
        .word   Default_Handler
        .endr
        .size   vector_table, . - vector_table

        .text
        .global Reset_Handler
        .thumb_func
        .type   Reset_Handler, %function
Reset_Handler:
        ldr     r0, =_sdata
        ldr     r1, =_edata
        ldr     r2, =_sidata
.Lcopy_data:
        cmp     r0, r1
        bhs     .Lzero_bss
        ldr     r3, [r2], #4
        str     r3, [r0], #4
        b       .Lcopy_data
.Lzero_bss:
        ldr     r0, =_sbss
        ldr     r1, =_ebss
        movs    r2, #0
.Lzero_word:
        cmp     r0, r1
        bhs     .Lcall_main
        str     r2, [r0], #4
        b       .Lzero_word
.Lcall_main:
        bl      main
/* main does not return on this board; should it, stay here. */
        b       .
        .size   Reset_Handler, . - Reset_Handler

/* Any exception without a handler of its own stops here, where a debugger
   finds it. */
        .thumb_func
        .type   Default_Handler, %function
Default_Handler:
        b       .
        .size   Default_Handler, . - Default_Handler

        .macro  default_handler name
        .weak   \name
        .thumb_set \name, Default_Handler
        .endm

        default_handler NMI_Handler
        default_handler HardFault_Handler
        default_handler MemManage_Handler
        default_handler BusFault_Handler
        default_handler UsageFault_Handler
        default_handler SVC_Handler
        default_handler DebugMon_Handler
        default_handler PendSV_Handler
        default_handler SysTick_Handler
