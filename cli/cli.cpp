#include "cli/cli.h"

#include <exception>
#include <ostream>

#include "cli/command_groups.h"

namespace quillon::qpm {

Cli::Cli(std::ostream& out, std::ostream& err)
    : out_(out), err_(err), app_("qpm: create, edit and inspect Quillon projects", "qpm") {
  app_.require_subcommand(1);
  app_.failure_message([](const CLI::App*, const CLI::Error& e) {
    return "qpm: " + std::string(e.what()) + "\nRun with --help for more information.\n";
  });
}

CLI::App* Cli::AddCommand(CLI::App& parent, const std::string& name, const std::string& help,
                          Action action) {
  CLI::App* command = parent.add_subcommand(name, help);
  actions_.emplace_back(command, std::move(action));
  return command;
}

CLI::App* Cli::AddGroup(const std::string& name, const std::string& help) {
  CLI::App* group = app_.add_subcommand(name, help);
  group->require_subcommand(1);
  return group;
}

int Cli::Run(const std::vector<std::string>& args) {
  // CLI11 consumes its argument vector from the back.
  std::vector<std::string> reversed(args.rbegin(), args.rend());
  try {
    app_.parse(reversed);
  } catch (const CLI::ParseError& e) {
    // Help and version requests are parse "errors" that succeed.
    return app_.exit(e, out_, err_) == 0 ? kExitOk : kExitUsage;
  }
  for (auto& [command, action] : actions_) {
    if (command->parsed()) return Finish(action);
  }
  return kExitUsage;  // unreachable: a command is required at every level
}

int Cli::Finish(const Action& action) {
  Status status;
  try {
    status = action();
  } catch (const std::exception& e) {
    // The library never throws; what is left is running out of memory or
    // the like, still worth one line rather than an abort.
    status = Status::Error(e.what());
  }
  if (status.ok()) return kExitOk;
  err_ << "qpm: " << status.message() << std::endl;
  return kExitFailure;
}

int RunQpm(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Cli cli(out, err);
  AddCommandGroups(cli);
  return cli.Run(args);
}

}  // namespace quillon::qpm
