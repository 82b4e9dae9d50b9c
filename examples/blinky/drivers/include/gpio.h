#ifndef DRIVERS_GPIO_H
#define DRIVERS_GPIO_H

#include <stdint.h>

/* port is a base address from mcu_regs.h (GPIOA, GPIOC), pin 0 to 15. */
void gpio_make_output(uint32_t port, unsigned pin);
/* Output driven by a peripheral, such as a serial transmit line. */
void gpio_make_alternate_output(uint32_t port, unsigned pin);
void gpio_write(uint32_t port, unsigned pin, int high);

#endif
