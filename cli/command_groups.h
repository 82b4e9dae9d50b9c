// Every command group of qpm. A group lives in a file of its own and is
// registered by adding its function to the table in command_groups.cpp.
#ifndef QUILLON_CLI_COMMAND_GROUPS_H
#define QUILLON_CLI_COMMAND_GROUPS_H

#include "cli/cli.h"

namespace quillon::qpm {

void AddCommandGroups(Cli& cli);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_COMMAND_GROUPS_H
