/* Memory-mapped registers of the microcontroller. */
#ifndef DRIVERS_MCU_REGS_H
#define DRIVERS_MCU_REGS_H

#include <stdint.h>

#define REG32(addr) (*(volatile uint32_t *)(addr))

#define GPIO_BASE(port) (0x40020000UL + 0x400UL * (port))
#define GPIO_MODER(port) REG32(GPIO_BASE(port) + 0x00)
#define GPIO_ODR(port) REG32(GPIO_BASE(port) + 0x14)

#define USART1_SR REG32(0x40011000UL)
#define USART1_DR REG32(0x40011004UL)
#define USART1_BRR REG32(0x40011008UL)
#define USART1_CR1 REG32(0x4001100CUL)
#define USART_SR_TXE (1UL << 7)

#define SYSTICK_CTRL REG32(0xE000E010UL)
#define SYSTICK_LOAD REG32(0xE000E014UL)

#endif
