#include "led.h"

#include "board.h"
#include "config.h"

static const char pattern[] = BLINK_PATTERN;

/* Neither on nor off before the first update, so that one always reaches the
   board. */
static int lit = -1;

void led_update(uint32_t tick) {
  int on = pattern[tick % (sizeof pattern - 1)] == '#';
  if (on != lit) {
    board_led(on);
    lit = on;
  }
}
