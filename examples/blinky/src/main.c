/* Blinks the board's LED once a second and says so on the serial port. */
#include "board.h"
#include "led.h"
#include "timer.h"
#include "uart.h"

void board_init(void) {
  led_init();
  timer_init();
  uart_init();
}

int main(void) {
  board_init();
  uart_puts("blinky up\r\n");
  for (;;) {
    led_toggle();
    timer_delay_ms(500);
  }
}
