/* Settings the firmware logic and both boards share. Changing one rebuilds
   exactly the sources that include this header. */
#ifndef BLINKY_CONFIG_H
#define BLINKY_CONFIG_H

/* One tick every 100 ms. */
#define TICK_HZ 10U

/* The LED, one character a tick, '#' lit: a double blink once a second. */
#define BLINK_PATTERN "#.#......."

/* The uptime line goes out once a second. */
#define REPORT_EVERY_TICKS TICK_HZ

#define UART_BAUD 115200UL

#endif
