#include "gpio.h"

void gpio_make_output(unsigned port, unsigned pin) {
  GPIO_MODER(port) = (GPIO_MODER(port) & ~(3UL << (2 * pin))) | (1UL << (2 * pin));
}

void gpio_toggle(unsigned port, unsigned pin) { GPIO_ODR(port) ^= 1UL << pin; }
