/* The STM32F103's registers that the board uses. */
#ifndef DRIVERS_MCU_REGS_H
#define DRIVERS_MCU_REGS_H

#include <stdint.h>

#define REG32(addr) (*(volatile uint32_t*)(addr))

/* Reset and clock control: the peripherals' clock enables. */
#define RCC_APB2ENR REG32(0x40021018UL)
#define RCC_APB2ENR_IOPAEN (1UL << 2)
#define RCC_APB2ENR_IOPCEN (1UL << 4)
#define RCC_APB2ENR_USART1EN (1UL << 14)

/* GPIO ports by base address. */
#define GPIOA 0x40010800UL
#define GPIOC 0x40011000UL
#define GPIO_CRL(port) REG32((port) + 0x00)
#define GPIO_CRH(port) REG32((port) + 0x04)
#define GPIO_BSRR(port) REG32((port) + 0x10)

#define USART1_SR REG32(0x40013800UL)
#define USART1_DR REG32(0x40013804UL)
#define USART1_BRR REG32(0x40013808UL)
#define USART1_CR1 REG32(0x4001380CUL)
#define USART_SR_TXE (1UL << 7)
#define USART_CR1_UE (1UL << 13)
#define USART_CR1_TE (1UL << 3)

/* The core's SysTick timer. */
#define SYST_CSR REG32(0xE000E010UL)
#define SYST_RVR REG32(0xE000E014UL)
#define SYST_CVR REG32(0xE000E018UL)
#define SYST_CSR_ENABLE (1UL << 0)
#define SYST_CSR_TICKINT (1UL << 1)
#define SYST_CSR_CLKSOURCE (1UL << 2)

#endif
