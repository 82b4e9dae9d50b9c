/* What the firmware needs from a board. drivers/board_stm32f1.c provides it
   with the microcontroller's registers, drivers/board_host.c on a PC. */
#ifndef BLINKY_BOARD_H
#define BLINKY_BOARD_H

/* Sets up the LED, the serial port and the tick interrupt, which calls
   timer_tick() TICK_HZ times a second. */
void board_init(void);

void board_led(int on);

/* Sends one character on the serial port, waiting while it is busy. */
void board_uart_putc(char c);

/* Sleeps until an interrupt has come; may return early. */
void board_idle(void);

/* Zero once the board wants the firmware to stop; a real board never does. */
int board_running(void);

#endif
