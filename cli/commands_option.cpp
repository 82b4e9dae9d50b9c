// qpm option get|set|list: options by their catalogue key.
#include <iomanip>
#include <memory>
#include <ostream>

#include "cli/cli.h"
#include "cli/option_scope.h"
#include "cli/project_command.h"
#include "interface/host_api.h"

namespace quillon::qpm {
namespace {

struct OptionArgs {
  std::string file;
  std::string key;
  std::vector<std::string> values;
  std::string target;
  std::string path;
  std::string mode;
  CLI::Option* target_option = nullptr;
  CLI::Option* file_option = nullptr;
  CLI::Option* mode_option = nullptr;
  std::ostream* out = nullptr;

  OptionPlace place() const {
    return {target_option->count() ? &target : nullptr, file_option->count() ? &path : nullptr};
  }
};

host::ValueMode ModeOf(const std::string& mode) {
  if (mode == "inherit") return host::ValueMode::kInherit;
  if (mode == "propagate") return host::ValueMode::kPropagate;
  return host::ValueMode::kOwn;
}

Status Resolve(const OptionArgs& args, const OptionInfo** info, OptionScope* scope) {
  Status status = FindOptionKey(args.key, info);
  return status.ok() ? ResolveScope(**info, args.place(), scope) : status;
}

Status GetValue(const OptionArgs& args) {
  const OptionInfo* info = nullptr;
  OptionScope scope;
  Status status = Resolve(args, &info, &scope);
  if (!status.ok()) return status;
  for (const std::string& value : GetOption(*info, scope)) *args.out << value << '\n';
  return Status::OK();
}

Status CheckMode(const OptionArgs& args, const OptionInfo& info, const OptionScope& scope) {
  if (args.mode_option->count() == 0) return Status::OK();
  if (info.level != OptionLevel::kFile) return Status::Error("--mode applies to file options only");
  if (scope.file == nullptr) {
    return Status::Error(
        "--mode applies to a file's own value (--file); a target's file "
        "defaults always pass on to the files that inherit them");
  }
  return Status::OK();
}

Status SetValue(const OptionArgs& args) {
  const OptionInfo* info = nullptr;
  OptionScope scope;
  Status status = Resolve(args, &info, &scope);
  if (status.ok()) status = CheckMode(args, *info, scope);
  if (status.ok()) status = host::SetOptionValue(*info, scope, args.values, ModeOf(args.mode));
  return status;
}

Status ListOptions(const OptionArgs& args) {
  for (const OptionInfo& info : OptionCatalogue()) {
    *args.out << std::left << std::setw(28) << info.key << ' ' << std::setw(7)
              << LevelName(info.level) << ' ' << TypeName(info.type) << '\n';
  }
  return Status::OK();
}

void AddPlaceOptions(CLI::App* command, OptionArgs& args) {
  args.target_option = command->add_option(
      "--target", args.target, "the target of a target or file option (default: the default one)");
  args.file_option = command->add_option(
      "--file", args.path, "the file of a file option (without it: the target's file defaults)");
}

void AddGet(Cli& cli, CLI::App& group) {
  auto args = std::make_shared<OptionArgs>();
  args->out = &cli.out();
  CLI::App* command = AddProjectCommand<OptionArgs>(
      cli, group, "get", "Print an option's value, a list one element per line", Access::kRead,
      args, GetValue);
  command->add_option("KEY", args->key, "the option's key (any case)")->required();
  AddPlaceOptions(command, *args);
}

void AddSet(Cli& cli, CLI::App& group) {
  auto args = std::make_shared<OptionArgs>();
  CLI::App* command = AddProjectCommand<OptionArgs>(
      cli, group, "set",
      "Set an option. A list takes one element per VALUE (none clears it); a flag takes 0/1, "
      "Yes/No or True/False. Values that start with '-' go after '--'.",
      Access::kEdit, args, SetValue);
  command->add_option("KEY", args->key, "the option's key (any case)")->required();
  command->add_option("VALUE", args->values, "the value, or the list's elements");
  AddPlaceOptions(command, *args);
  args->mode_option =
      command
          ->add_option("--mode", args->mode,
                       "with --file: own (the default) keeps the value as the file's own; "
                       "inherit stores it as inherited; propagate stores it only if the file "
                       "still inherits")
          ->check(CLI::IsMember({"own", "inherit", "propagate"}));
}

void AddList(Cli& cli, CLI::App& group) {
  auto args = std::make_shared<OptionArgs>();
  args->out = &cli.out();
  // The catalogue belongs to the project's translator family, hence FILE.
  AddProjectCommand<OptionArgs>(cli, group, "list",
                                "List the options of the project's family: key, level, type",
                                Access::kRead, args, ListOptions);
}

}  // namespace

void AddOptionCommands(Cli& cli) {
  CLI::App* group = cli.AddGroup("option", "Read and change options by key");
  AddGet(cli, *group);
  AddSet(cli, *group);
  AddList(cli, *group);
}

}  // namespace quillon::qpm
