#include "cli/command_groups.h"

namespace quillon::qpm {

// Defined by the commands_*.cpp files, one group each.
void AddProjectCommands(Cli& cli);  // new, show
void AddTargetCommands(Cli& cli);
void AddGroupCommands(Cli& cli);
void AddFileCommands(Cli& cli);
void AddOptionCommands(Cli& cli);
void AddStoreCommands(Cli& cli);
void AddDepsCommands(Cli& cli);    // deps, why
void AddBuildCommands(Cli& cli);   // make, build, compile, link, compdb
void AddExportCommands(Cli& cli);  // export-xml

void AddCommandGroups(Cli& cli) {
  // In the order `qpm --help` lists them.
  for (auto add :
       {AddProjectCommands, AddTargetCommands, AddGroupCommands, AddFileCommands, AddOptionCommands,
        AddBuildCommands, AddDepsCommands, AddExportCommands, AddStoreCommands}) {
    add(cli);
  }
}

}  // namespace quillon::qpm
