#ifndef BLINKY_LED_H
#define BLINKY_LED_H

#include <stdint.h>

/* Puts the LED into the state the blink pattern gives for this tick. */
void led_update(uint32_t tick);

#endif
