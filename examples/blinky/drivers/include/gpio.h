#ifndef DRIVERS_GPIO_H
#define DRIVERS_GPIO_H

#include "mcu_regs.h"

void gpio_make_output(unsigned port, unsigned pin);
void gpio_toggle(unsigned port, unsigned pin);

#endif
