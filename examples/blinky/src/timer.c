#include "timer.h"

#include "board.h"

static volatile uint32_t ticks;

void timer_tick(void) { ++ticks; }

uint32_t timer_ticks(void) { return ticks; }

uint32_t timer_wait_tick(uint32_t seen) {
  uint32_t now;
  while ((now = ticks) == seen) board_idle();
  return now;
}
