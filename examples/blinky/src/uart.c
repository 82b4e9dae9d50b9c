#include "uart.h"

#include "board.h"

void uart_puts(const char* text) {
  while (*text) board_uart_putc(*text++);
}

/* Decimal, without printf: the firmware links no formatting code. */
void uart_put_uint(uint32_t value) {
  char digits[10];
  int count = 0;
  do {
    digits[count++] = (char)('0' + value % 10);
    value /= 10;
  } while (value != 0);
  while (count > 0) board_uart_putc(digits[--count]);
}
