#include "led.h"

#include "board.h"

void led_init(void) { gpio_make_output(LED_PORT, LED_PIN); }

void led_toggle(void) { gpio_toggle(LED_PORT, LED_PIN); }
