// A subcommand that works on one project file: FILE is its first argument,
// the project is loaded as the library's current one, and after an edit it
// is saved only on success.
#ifndef QUILLON_CLI_PROJECT_COMMAND_H
#define QUILLON_CLI_PROJECT_COMMAND_H

#include <memory>

#include "cli/cli.h"
#include "cli/project_io.h"

namespace quillon::qpm {

enum class Access { kRead, kEdit };

// `Args` has a `file` member; `run` gets the parsed arguments once the
// project is loaded.
template <typename Args>
CLI::App* AddProjectCommand(Cli& cli, CLI::App& parent, const char* name, const char* help,
                            Access access, const std::shared_ptr<Args>& args,
                            std::function<Status(const Args&)> run) {
  CLI::App* command = cli.AddCommand(parent, name, help, [args, run, access] {
    auto body = [&] { return run(*args); };
    return access == Access::kEdit ? EditProject(args->file, body) : ReadProject(args->file, body);
  });
  command->add_option("FILE", args->file, "the project file")->required();
  return command;
}

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_PROJECT_COMMAND_H
