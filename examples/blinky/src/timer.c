#include "timer.h"

#include "board.h"

static volatile uint32_t ticks;

void timer_init(void) {
  SYSTICK_LOAD = CPU_CLOCK_HZ / TICK_HZ - 1;
  SYSTICK_CTRL = 7; /* core clock, interrupt, enable */
}

/* Called from the vector table in startup.asm. */
void SysTick_Handler(void) { ++ticks; }

uint32_t timer_ticks(void) { return ticks; }

void timer_delay_ms(uint32_t ms) {
  uint32_t start = ticks;
  while ((uint32_t)(ticks - start) < ms * (TICK_HZ / 1000U)) {
  }
}
