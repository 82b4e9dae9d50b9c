#ifndef BLINKY_LED_H
#define BLINKY_LED_H

#include "gpio.h"

void led_init(void);
void led_toggle(void);

#endif
