/* The board on a PC: the LED and the serial port become lines on standard
   output, and each board_idle() is one tick, so a run takes no time and
   ends after two seconds of firmware time. */
#include <stdio.h>

#include "board.h"
#include "config.h"
#include "timer.h"

#define RUN_TICKS (2U * TICK_HZ)

/* The serial output is shown a line at a time. */
static char line[80];
static unsigned line_length;

static void print_tick(void) { printf("tick %2lu: ", (unsigned long)timer_ticks()); }

void board_init(void) {
  printf("host board: %u ticks a second, stopping after %u\n", TICK_HZ, RUN_TICKS);
}

void board_led(int on) {
  print_tick();
  printf("LED %s\n", on ? "on" : "off");
}

void board_uart_putc(char c) {
  if (c == '\r') return;
  if (c != '\n' && line_length < sizeof line - 1) {
    line[line_length++] = c;
    return;
  }
  line[line_length] = '\0';
  print_tick();
  printf("uart \"%s\"\n", line);
  line_length = 0;
  if (c != '\n') line[line_length++] = c;
}

/* The tick interrupt, simulated. */
void board_idle(void) { timer_tick(); }

int board_running(void) { return timer_ticks() < RUN_TICKS; }
