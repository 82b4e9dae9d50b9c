#ifndef BLINKY_TIMER_H
#define BLINKY_TIMER_H

#include <stdint.h>

void timer_init(void);
uint32_t timer_ticks(void);
void timer_delay_ms(uint32_t ms);

#endif
