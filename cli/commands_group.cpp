// qpm group add|delete|move: link groups, which every target shares.
#include <memory>

#include "cli/cli.h"
#include "cli/lookup.h"
#include "cli/project_command.h"
#include "cli/text_format.h"
#include "interface/host_api.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

struct GroupArgs {
  std::string file;
  std::string name;
  std::string direction;
};

Status AddGroup(const GroupArgs& args) {
  Status status = CheckNewGroupName(args.name);
  if (status.ok()) _AddLinkGroup(args.name.c_str());
  return status;
}

Status DeleteGroup(const GroupArgs& args) {
  Status status = FindGroup(args.name);
  if (status.ok()) _DeleteLinkGroup(args.name.c_str());
  return status;
}

// No export changes the link order.
Status MoveGroup(const GroupArgs& args) {
  Status status = FindGroup(args.name);
  if (!status.ok()) return status;
  bool up = args.direction == "up";
  if (!host::MoveLinkGroup(args.name, up ? -1 : 1)) {
    return Status::Error("link group " + Quote(args.name) + " is already " +
                         (up ? "first" : "last") + " in link order");
  }
  return Status::OK();
}

}  // namespace

void AddGroupCommands(Cli& cli) {
  CLI::App* group = cli.AddGroup("group", "Add, delete and order link groups (in every target)");
  auto add = std::make_shared<GroupArgs>();
  CLI::App* command = AddProjectCommand<GroupArgs>(
      cli, *group, "add", "Add a link group, last in link order", Access::kEdit, add, AddGroup);
  command->add_option("NAME", add->name, "the new group's name")->required();

  auto del = std::make_shared<GroupArgs>();
  command = AddProjectCommand<GroupArgs>(cli, *group, "delete",
                                         "Delete a link group together with its files",
                                         Access::kEdit, del, DeleteGroup);
  command->add_option("NAME", del->name, "the group to delete")->required();

  auto move = std::make_shared<GroupArgs>();
  command = AddProjectCommand<GroupArgs>(cli, *group, "move",
                                         "Move a link group one place up or down in link order",
                                         Access::kEdit, move, MoveGroup);
  command->add_option("NAME", move->name, "the group to move")->required();
  command->add_option("DIRECTION", move->direction, "up or down")
      ->required()
      ->check(CLI::IsMember({"up", "down"}));
}

}  // namespace quillon::qpm
