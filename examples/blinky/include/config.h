/* Board-wide settings: clock and pin choices. */
#ifndef BLINKY_CONFIG_H
#define BLINKY_CONFIG_H

#define CPU_CLOCK_HZ 16000000UL
#define LED_PORT 1
#define LED_PIN 5
#define UART_BAUD 115200UL
#define TICK_HZ 1000U

#endif
