// qpm deps and qpm why: the include graph of the default target's sources,
// and why the target would be built. The graph is kept in NAME.qpj.deps.
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cli/cli.h"
#include "cli/project_command.h"
#include "interface/host_api.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "platform/path_key.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

struct DepsArgs {
  std::string file;
  bool transitive = false;
  bool make = false;
  bool dot = false;
};

struct WhyArgs {
  std::string file;
};

using host::SourceDependencies;

// The names an export enumerates by index into `name`.
template <typename Export>
std::vector<std::string> Enumerate(Export enumerate, const std::string& of) {
  std::vector<std::string> names;
  for (int index = 0;; ++index) {
    std::string name = of;
    if (enumerate(&name, index) <= index) break;
    names.push_back(name);
  }
  return names;
}

// Paths as shown, relative to the current directory: each worked out once,
// as a big tree names the same few thousand files hundreds of thousands of
// times.
class ShownPaths {
 public:
  explicit ShownPaths(std::string cwd) : cwd_(std::move(cwd)) {}
  const std::string& operator()(std::string_view path) {
    auto it = shown_.find(path);
    if (it == shown_.end()) {
      std::string key(path);
      std::string shown = RelativePath(cwd_, key);
      it = shown_.emplace(std::move(key), std::move(shown)).first;
    }
    return it->second;
  }

 private:
  std::string cwd_;
  std::unordered_map<std::string, std::string, StringHash, std::equal_to<>> shown_;
};

std::string DotQuoted(const std::string& text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

void WriteList(const std::vector<SourceDependencies>& all, ShownPaths& shown, std::ostream& out) {
  for (const SourceDependencies& source : all) {
    out << shown(source.source) << ":\n";
    for (std::string_view dep : source.dependencies) out << "  " << shown(dep) << '\n';
  }
}

// One rule per source as `gcc -MM` writes them: the object (named after
// the source), the source, then every dependency.
void WriteMake(const std::vector<SourceDependencies>& all, ShownPaths& shown, std::ostream& out) {
  for (const SourceDependencies& source : all) {
    const std::string& name = shown(source.source);
    std::string object = name.substr(0, name.size() - ExtOfFile(name).size()) + "o";
    if (ExtOfFile(name).empty()) object = name + ".o";
    out << object << ": " << name;
    for (std::string_view dep : source.dependencies) out << " \\\n  " << shown(dep);
    out << '\n';
  }
}

// The graph's edges among everything the sources reach.
void WriteDot(const std::vector<SourceDependencies>& all, ShownPaths& shown, std::ostream& out) {
  out << "digraph dependencies {\n  rankdir=LR;\n  node [shape=box, fontsize=10];\n";
  std::set<std::string> drawn;
  std::vector<std::string> pending;
  for (const SourceDependencies& source : all) {
    out << "  " << DotQuoted(shown(source.source)) << " [style=bold];\n";
    std::vector<std::string> direct = Enumerate(_GetDependenciesFilesOfProjectFile, source.source);
    for (const std::string& dep : direct) {
      out << "  " << DotQuoted(shown(source.source)) << " -> " << DotQuoted(shown(dep)) << ";\n";
      pending.push_back(dep);
    }
  }
  while (!pending.empty()) {
    std::string name = pending.back();
    pending.pop_back();
    if (!drawn.insert(name).second) continue;
    for (const std::string& dep : Enumerate(_GetDependenciesFilesOfDependence, name)) {
      out << "  " << DotQuoted(shown(name)) << " -> " << DotQuoted(shown(dep)) << ";\n";
      pending.push_back(dep);
    }
  }
  out << "}\n";
}

Status NeedDefaultTarget() {
  if (host::HasDefaultTarget()) return Status::OK();
  return Status::Error("the project has no default target");
}

// A cache that cannot be written costs only time, so it is worth a warning.
void WarnIfUnsaved(const Status& saved, std::ostream& err) {
  if (!saved.ok()) err << "qpm: warning: " << saved.message() << '\n';
}

Status Deps(const DepsArgs& args, std::ostream& out, std::ostream& err) {
  Status status = NeedDefaultTarget();
  if (!status.ok()) return status;
  if (args.make && args.dot) return Status::Error("--make and --dot exclude each other");
  DependencyCache cache(args.file);
  cache.Load();
  host::UpdateDependencies();
  WarnIfUnsaved(cache.SaveIfChanged(), err);

  const auto all = host::DependenciesOfSources(args.transitive || args.make);
  ShownPaths shown(FileSystem::Default().CurrentDirectory());
  if (args.make) {
    WriteMake(all, shown, out);
  } else if (args.dot) {
    WriteDot(all, shown, out);
  } else {
    WriteList(all, shown, out);
  }
  return Status::OK();
}

Status Why(const WhyArgs& args, std::ostream& out, std::ostream& err) {
  Status status = NeedDefaultTarget();
  if (!status.ok()) return status;
  DependencyCache cache(args.file);
  cache.Load();
  std::vector<std::string> reasons;
  _WhyWeMustBuildProject(&reasons);
  WarnIfUnsaved(cache.SaveIfChanged(), err);
  for (const std::string& reason : reasons) out << reason << '\n';
  return Status::OK();
}

}  // namespace

void AddDepsCommands(Cli& cli) {
  auto deps = std::make_shared<DepsArgs>();
  CLI::App* command = AddProjectCommand<DepsArgs>(
      cli, cli.app(), "deps",
      "List what each source of the default target includes (unresolved includes are warned "
      "about on standard error)",
      Access::kRead, deps,
      [&cli](const DepsArgs& args) { return Deps(args, cli.out(), cli.err()); });
  command->add_flag("--transitive", deps->transitive, "every file reached, not only direct ones");
  command->add_flag("--make", deps->make,
                    "make rules, one per source with every file reached (as gcc -MM writes)");
  command->add_flag("--dot", deps->dot, "a Graphviz graph (render with dot -Tsvg)");

  auto why = std::make_shared<WhyArgs>();
  AddProjectCommand<WhyArgs>(
      cli, cli.app(), "why",
      "Say why the default target would be built, one reason a line; nothing when it is up to "
      "date",
      Access::kRead, why, [&cli](const WhyArgs& args) { return Why(args, cli.out(), cli.err()); });
}

}  // namespace quillon::qpm
