#ifndef BLINKY_UART_H
#define BLINKY_UART_H

#include <stdint.h>

void uart_puts(const char* text);
void uart_put_uint(uint32_t value);

#endif
