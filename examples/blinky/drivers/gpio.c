#include "gpio.h"

#include "mcu_regs.h"

/* Four mode bits a pin, pins 0-7 in CRL and 8-15 in CRH. */
#define MODE_OUTPUT_2MHZ 0x2UL
#define CNF_ALTERNATE_PUSH_PULL 0x8UL

static void configure(uint32_t port, unsigned pin, uint32_t bits) {
  volatile uint32_t* reg = pin < 8 ? &GPIO_CRL(port) : &GPIO_CRH(port);
  unsigned shift = (pin % 8) * 4;
  *reg = (*reg & ~(0xFUL << shift)) | (bits << shift);
}

void gpio_make_output(uint32_t port, unsigned pin) { configure(port, pin, MODE_OUTPUT_2MHZ); }

void gpio_make_alternate_output(uint32_t port, unsigned pin) {
  configure(port, pin, CNF_ALTERNATE_PUSH_PULL | MODE_OUTPUT_2MHZ);
}

/* BSRR sets a pin with its low half and clears it with its high half, so no
   read-modify-write can race an interrupt. */
void gpio_write(uint32_t port, unsigned pin, int high) {
  GPIO_BSRR(port) = high ? 1UL << pin : 1UL << (pin + 16);
}
