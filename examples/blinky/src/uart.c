#include "uart.h"

#include "board.h"

void uart_init(void) {
  USART1_BRR = (uint32_t)(CPU_CLOCK_HZ / UART_BAUD);
  USART1_CR1 = (1UL << 13) | (1UL << 3); /* enable, transmitter on */
}

void uart_putc(char c) {
  while (!(USART1_SR & USART_SR_TXE)) {
  }
  USART1_DR = (uint32_t)(unsigned char)c;
}

void uart_puts(const char *text) {
  while (*text) uart_putc(*text++);
}
