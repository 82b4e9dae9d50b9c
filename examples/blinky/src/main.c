/* Blinks the LED in its pattern and reports the uptime on the serial port
   once a second. The same logic runs on the microcontroller and on a PC. */
#include "board.h"
#include "config.h"
#include "led.h"
#include "timer.h"
#include "uart.h"

static void report_uptime(uint32_t tick) {
  uart_puts("uptime ");
  uart_put_uint(tick / TICK_HZ);
  uart_puts(" s\r\n");
}

int main(void) {
  uint32_t tick = 0;
  board_init();
  uart_puts("blinky up\r\n");
  led_update(tick);
  while (board_running()) {
    uint32_t now = timer_wait_tick(tick);
    /* Every tick once, also those a late wake-up skipped. */
    while (tick != now) {
      ++tick;
      led_update(tick);
      if (tick % REPORT_EVERY_TICKS == 0) report_uptime(tick);
    }
  }
  return 0;
}
