// qpm target add|delete|default|rename.
#include <memory>

#include "cli/cli.h"
#include "cli/lookup.h"
#include "cli/project_command.h"
#include "interface/host_api.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

struct TargetArgs {
  std::string file;
  std::string name;
  std::string new_name;
  std::string copy_from;
  CLI::Option* copy_from_option = nullptr;
};

Status AddTarget(const TargetArgs& args) {
  Status status = CheckNewTargetName(args.name);
  if (!status.ok()) return status;
  if (args.copy_from_option->count() == 0) {
    // Groups and files of the first target, default options.
    _AddTarget(args.name.c_str());
    return Status::OK();
  }
  // Options too: no export takes a source target.
  status = FindTarget(args.copy_from);
  if (status.ok()) host::CopyTarget(args.name, args.copy_from);
  return status;
}

Status DeleteTarget(const TargetArgs& args) {
  Status status = FindTarget(args.name);
  if (status.ok()) _DeleteTarget(args.name.c_str());
  return status;
}

Status SetDefaultTarget(const TargetArgs& args) {
  Status status = FindTarget(args.name);
  if (status.ok()) _SetTarget(args.name.c_str());
  return status;
}

Status RenameTarget(const TargetArgs& args) {
  Status status = FindTarget(args.name);
  if (status.ok() && args.new_name != args.name) status = CheckNewTargetName(args.new_name);
  if (status.ok()) host::RenameTarget(args.name, args.new_name);
  return status;
}

}  // namespace

void AddTargetCommands(Cli& cli) {
  CLI::App* group = cli.AddGroup("target", "Add, delete, rename targets; choose the default");
  auto add = std::make_shared<TargetArgs>();
  CLI::App* command = AddProjectCommand<TargetArgs>(
      cli, *group, "add",
      "Add a target with the link groups and files of the first target and default options, "
      "or a copy of another target with its options (--copy-from)",
      Access::kEdit, add, AddTarget);
  command->add_option("NAME", add->name, "the new target's name")->required();
  add->copy_from_option =
      command->add_option("--copy-from", add->copy_from, "the target to copy, options included");

  auto del = std::make_shared<TargetArgs>();
  command = AddProjectCommand<TargetArgs>(cli, *group, "delete", "Delete a target", Access::kEdit,
                                          del, DeleteTarget);
  command->add_option("NAME", del->name, "the target to delete")->required();

  auto def = std::make_shared<TargetArgs>();
  command = AddProjectCommand<TargetArgs>(cli, *group, "default", "Make a target the default one",
                                          Access::kEdit, def, SetDefaultTarget);
  command->add_option("NAME", def->name, "the target that becomes the default")->required();

  auto rename = std::make_shared<TargetArgs>();
  command = AddProjectCommand<TargetArgs>(cli, *group, "rename", "Rename a target", Access::kEdit,
                                          rename, RenameTarget);
  command->add_option("OLD", rename->name, "the target's name")->required();
  command->add_option("NEW", rename->new_name, "its new name")->required();
}

}  // namespace quillon::qpm
