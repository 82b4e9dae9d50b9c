// qpm new, qpm show: making a project and looking at one.
#include <memory>
#include <ostream>

#include "cli/cli.h"
#include "cli/project_io.h"
#include "cli/project_report.h"
#include "cli/report_text.h"
#include "platform/file_system.h"

namespace quillon::qpm {
namespace {

struct NewArgs {
  std::string file;
  bool no_source_group = false;
  bool force = false;
};

Status NewProject(const NewArgs& args) {
  if (!args.force && FileSystem::Default().Stat(args.file).exists()) {
    return Status::Error(args.file + " already exists (--force replaces it)");
  }
  OpenProject open(args.file);
  Status status = open.CreateDefault(!args.no_source_group);
  return status.ok() ? open.Save() : status;
}

struct ShowArgs {
  std::string file;
  bool json = false;
  bool all = false;
};

Status ShowProject(const ShowArgs& args, std::ostream& out) {
  return ReadProject(args.file, [&] {
    Json report = DescribeProject(args.file);
    if (args.json) {
      // Stored strings are 8-bit in no set encoding; bytes that are not
      // UTF-8 cannot be told in JSON and become U+FFFD.
      out << report.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    } else {
      PrintReport(report, args.all, out);
    }
    return Status::OK();
  });
}

void AddNewCommand(Cli& cli) {
  auto args = std::make_shared<NewArgs>();
  CLI::App* command =
      cli.AddCommand(cli.app(), "new", "Create a project", [args] { return NewProject(*args); });
  command->footer(
      "The project starts with one target, named after FILE plus \" - Debug\", and the link "
      "group \"Source files\". The per-user part is written beside FILE as FILE.user.");
  command->add_option("FILE", args->file, "the project file to create (NAME.qpj)")->required();
  command->add_flag("--no-source-group", args->no_source_group, "start without a link group");
  command->add_flag("--force", args->force, "replace an existing FILE");
}

void AddShowCommand(Cli& cli) {
  auto args = std::make_shared<ShowArgs>();
  CLI::App* command =
      cli.AddCommand(cli.app(), "show", "Show a project's targets, link groups, files and options",
                     [args, &cli] { return ShowProject(*args, cli.out()); });
  command->footer(
      "Lists the targets (* marks the default), then the default target's link groups in "
      "link order with their files, and every option that differs from its default: global "
      "and filter options, each target's options and file defaults, and for each file what "
      "is its own or differs from its target's defaults.");
  command->add_option("FILE", args->file, "the project file")->required();
  command->add_flag("--all", args->all, "detail every target, not only the default one");
  command->add_flag("--json", args->json, "print JSON (always every target) instead of text");
}

}  // namespace

void AddProjectCommands(Cli& cli) {
  AddNewCommand(cli);
  AddShowCommand(cli);
}

}  // namespace quillon::qpm
