/* The board on an STM32F103 (a "blue pill"): LED on PC13, lit when the pin
   is low; serial output on USART1, transmitting on PA9; the tick from
   SysTick. It runs on the 8 MHz internal oscillator the chip starts on. */
#include "board.h"
#include "config.h"
#include "gpio.h"
#include "mcu_regs.h"
#include "timer.h"

#define CPU_CLOCK_HZ 8000000UL
#define LED_PIN 13
#define UART_TX_PIN 9

void board_init(void) {
  RCC_APB2ENR |= RCC_APB2ENR_IOPAEN | RCC_APB2ENR_IOPCEN | RCC_APB2ENR_USART1EN;

  board_led(0);
  gpio_make_output(GPIOC, LED_PIN);

  gpio_make_alternate_output(GPIOA, UART_TX_PIN);
  USART1_BRR = (CPU_CLOCK_HZ + UART_BAUD / 2) / UART_BAUD;
  USART1_CR1 = USART_CR1_UE | USART_CR1_TE;

  SYST_RVR = CPU_CLOCK_HZ / TICK_HZ - 1;
  SYST_CVR = 0;
  SYST_CSR = SYST_CSR_CLKSOURCE | SYST_CSR_TICKINT | SYST_CSR_ENABLE;
}

void board_led(int on) { gpio_write(GPIOC, LED_PIN, !on); }

void board_uart_putc(char c) {
  while (!(USART1_SR & USART_SR_TXE)) {
  }
  USART1_DR = (uint32_t)(unsigned char)c;
}

/* WFE rather than WFI: a tick that comes between the caller's look at the
   count and this instruction sets the event register, so the sleep ends at
   once instead of lasting until the next tick. */
void board_idle(void) { __asm volatile("wfe"); }

int board_running(void) { return 1; }

/* Named in the vector table in startup/startup.S. */
void SysTick_Handler(void) { timer_tick(); }
