/* The board: the MCU's registers plus our configuration. */
#ifndef BLINKY_BOARD_H
#define BLINKY_BOARD_H

#include "config.h"
#include "mcu_regs.h"

void board_init(void);

#endif
