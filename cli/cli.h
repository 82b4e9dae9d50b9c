// The frame of qpm: the argument parser, the command chosen by it, and how
// the outcome becomes an exit code. Command groups add their subcommands
// through AddCommand and never see argv or exit codes themselves.
#ifndef QUILLON_CLI_CLI_H
#define QUILLON_CLI_CLI_H

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "platform/status.h"

namespace quillon::qpm {

enum ExitCode { kExitOk = 0, kExitFailure = 1, kExitUsage = 2 };

class Cli {
 public:
  using Action = std::function<Status()>;

  Cli(std::ostream& out, std::ostream& err);

  CLI::App& app() { return app_; }
  // Where commands print their results; errors go through Status instead.
  std::ostream& out() { return out_; }
  std::ostream& err() { return err_; }

  // A subcommand of `parent` (the app or a group) whose action runs after
  // a successful parse. The action's arguments are bound by the caller.
  CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& help,
                       Action action);
  // A subcommand that only groups others (`qpm target ...`).
  CLI::App* AddGroup(const std::string& name, const std::string& help);

  // Parses `args` (without the program name), runs the chosen command and
  // answers the exit code: 0, 1 with a one-line message, 2 for usage errors.
  int Run(const std::vector<std::string>& args);

 private:
  int Finish(const Action& action);

  std::ostream& out_;
  std::ostream& err_;
  CLI::App app_;
  std::vector<std::pair<CLI::App*, Action>> actions_;
};

// The whole of qpm: every command group registered, `args` run.
int RunQpm(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_CLI_H
