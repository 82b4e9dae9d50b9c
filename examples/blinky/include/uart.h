#ifndef BLINKY_UART_H
#define BLINKY_UART_H

void uart_init(void);
void uart_putc(char c);
void uart_puts(const char *text);

#endif
