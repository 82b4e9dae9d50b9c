// qpm deps and qpm why: the include graph of the default target's sources,
// and why the target would be built. The graph is kept in NAME.qpj.deps.
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "cli/dependency_cache.h"
#include "cli/project_command.h"
#include "deps/target_scan.h"
#include "interface/host_observer.h"
#include "interface/library_state.h"
#include "platform/file_system.h"
#include "platform/path.h"
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

enum class DepsFormat { kList, kMake, kDot };

// One scanned source and what it depends on.
struct SourceDeps {
  std::string source;
  std::vector<std::string> deps;
};

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

// Every file reachable from `direct`, each once, in the order met.
std::vector<std::string> Closure(const std::vector<std::string>& direct) {
  std::vector<std::string> all;
  std::set<std::string> seen;
  std::vector<std::string> pending(direct.rbegin(), direct.rend());
  while (!pending.empty()) {
    std::string name = pending.back();
    pending.pop_back();
    if (!seen.insert(name).second) continue;
    all.push_back(name);
    std::vector<std::string> next = Enumerate(_GetDependenciesFilesOfDependence, name);
    pending.insert(pending.end(), next.rbegin(), next.rend());
  }
  return all;
}

std::vector<SourceDeps> CollectDeps(CProjectData& project, const CProjectTarget& target,
                                    bool transitive) {
  std::vector<SourceDeps> result;
  for (const CProjectFile* file : target.files) {
    std::string full = project.FullNameOfFile(file->file_name());
    if (project.IsExcludedFromBuild(*file) || State().Scanner().FindRoot(full) == nullptr) {
      continue;
    }
    std::vector<std::string> direct =
        Enumerate(_GetDependenciesFilesOfProjectFile, file->file_name());
    result.push_back({full, transitive ? Closure(direct) : direct});
  }
  return result;
}

std::string Shown(const std::string& path, const std::string& cwd) {
  return RelativePath(cwd, path);
}

std::string DotQuoted(const std::string& text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

void WriteList(const std::vector<SourceDeps>& all, const std::string& cwd, std::ostream& out) {
  for (const SourceDeps& source : all) {
    out << Shown(source.source, cwd) << ":\n";
    for (const std::string& dep : source.deps) out << "  " << Shown(dep, cwd) << '\n';
  }
}

// One rule per source as `gcc -MM` writes them: the object (named after
// the source), the source, then every dependency.
void WriteMake(const std::vector<SourceDeps>& all, const std::string& cwd, std::ostream& out) {
  for (const SourceDeps& source : all) {
    std::string shown = Shown(source.source, cwd);
    std::string object = shown.substr(0, shown.size() - ExtOfFile(shown).size()) + "o";
    if (ExtOfFile(shown).empty()) object = shown + ".o";
    out << object << ": " << shown;
    for (const std::string& dep : source.deps) out << " \\\n  " << Shown(dep, cwd);
    out << '\n';
  }
}

// The graph's edges among everything the sources reach.
void WriteDot(const std::vector<SourceDeps>& all, const std::string& cwd, std::ostream& out) {
  out << "digraph dependencies {\n  rankdir=LR;\n  node [shape=box, fontsize=10];\n";
  std::set<std::string> drawn;
  std::vector<std::string> pending;
  for (const SourceDeps& source : all) {
    out << "  " << DotQuoted(Shown(source.source, cwd)) << " [style=bold];\n";
    std::vector<std::string> direct = Enumerate(_GetDependenciesFilesOfProjectFile,
                                                source.source);
    for (const std::string& dep : direct) {
      out << "  " << DotQuoted(Shown(source.source, cwd)) << " -> " << DotQuoted(Shown(dep, cwd))
          << ";\n";
      pending.push_back(dep);
    }
  }
  while (!pending.empty()) {
    std::string name = pending.back();
    pending.pop_back();
    if (!drawn.insert(name).second) continue;
    for (const std::string& dep : Enumerate(_GetDependenciesFilesOfDependence, name)) {
      out << "  " << DotQuoted(Shown(name, cwd)) << " -> " << DotQuoted(Shown(dep, cwd)) << ";\n";
      pending.push_back(dep);
    }
  }
  out << "}\n";
}

Status NeedDefaultTarget(const CProjectData& project) {
  if (project.default_target() != nullptr) return Status::OK();
  return Status::Error("the project has no default target");
}

Status Deps(const DepsArgs& args, CProjectData& project, std::ostream& out) {
  Status status = NeedDefaultTarget(project);
  if (!status.ok()) return status;
  if (args.make && args.dot) return Status::Error("--make and --dot exclude each other");
  CProjectTarget& target = *project.default_target();
  DependencyCache cache(args.file, project);
  cache.Load();
  HostScanObserver observer;
  State().Scanner().Update(MakeScanRequest(project, target), &observer);
  cache.SaveIfChanged();

  std::vector<SourceDeps> all = CollectDeps(project, target, args.transitive || args.make);
  std::string cwd = FileSystem::Default().CurrentDirectory();
  if (args.make) {
    WriteMake(all, cwd, out);
  } else if (args.dot) {
    WriteDot(all, cwd, out);
  } else {
    WriteList(all, cwd, out);
  }
  return Status::OK();
}

Status Why(const WhyArgs& args, CProjectData& project, std::ostream& out) {
  Status status = NeedDefaultTarget(project);
  if (!status.ok()) return status;
  DependencyCache cache(args.file, project);
  cache.Load();
  std::vector<std::string> reasons;
  _WhyWeMustBuildProject(&reasons);
  cache.SaveIfChanged();
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
      [&cli](const DepsArgs& args, CProjectData& project) { return Deps(args, project, cli.out()); });
  command->add_flag("--transitive", deps->transitive, "every file reached, not only direct ones");
  command->add_flag("--make", deps->make,
                    "make rules, one per source with every file reached (as gcc -MM writes)");
  command->add_flag("--dot", deps->dot, "a Graphviz graph (render with dot -Tsvg)");

  auto why = std::make_shared<WhyArgs>();
  AddProjectCommand<WhyArgs>(
      cli, cli.app(), "why",
      "Say why the default target would be built, one reason a line; nothing when it is up to "
      "date",
      Access::kRead, why,
      [&cli](const WhyArgs& args, CProjectData& project) { return Why(args, project, cli.out()); });
}

}  // namespace quillon::qpm
