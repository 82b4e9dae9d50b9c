// qpm export-xml: the project and its include dependencies as the IDE's
// XML export writes them, for build servers and other tools.
#include <memory>
#include <ostream>
#include <string>

#include "cli/cli.h"
#include "cli/project_command.h"
#include "interface/host_api.h"

namespace quillon::qpm {
namespace {

struct ExportArgs {
  std::string file;
  std::string out;
};

Status ExportXml(const ExportArgs& args, std::ostream& err) {
  // The document lists what the graph knows, so bring it up to date first,
  // from the cache beside the project when there is one.
  if (host::HasDefaultTarget()) {
    DependencyCache cache(args.file);
    cache.Load();
    host::UpdateDependencies();
    Status saved = cache.SaveIfChanged();
    if (!saved.ok()) err << "qpm: warning: " << saved.message() << '\n';
  }
  return host::ExportXml(args.out);
}

}  // namespace

void AddExportCommands(Cli& cli) {
  auto args = std::make_shared<ExportArgs>();
  CLI::App* command = AddProjectCommand<ExportArgs>(
      cli, cli.app(), "export-xml",
      "Write the first target's link groups with their files, and every file of the default "
      "target's include graph, as XML",
      Access::kRead, args, [&cli](const ExportArgs& args) { return ExportXml(args, cli.err()); });
  command->add_option("OUT", args->out, "the XML file to write (replaced when it exists)")
      ->required();
  command->footer(
      "The document is the one the IDE's export writes: tab-indented, and its entities carry "
      "no semicolon (\"&amp\", \"&lt\"), as the tools that read it expect. The project needs "
      "a target.");
}

}  // namespace quillon::qpm
