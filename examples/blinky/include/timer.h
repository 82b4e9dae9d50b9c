#ifndef BLINKY_TIMER_H
#define BLINKY_TIMER_H

#include <stdint.h>

/* Called by the board's tick interrupt. */
void timer_tick(void);

uint32_t timer_ticks(void);

/* Sleeps until the tick count differs from seen and answers the new count,
   which is more than one tick on when the caller was late. */
uint32_t timer_wait_tick(uint32_t seen);

#endif
