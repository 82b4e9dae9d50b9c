// What a host that links the library in-process (qpm) needs beyond the 47
// exports: project files loaded with the store's own error, options by
// their catalogue key, the include graph as a view, and the tree of any
// store file. The host includes the host_*.h headers (host_build.h has what
// a build needs), the public one and the platform layer's helpers, and
// nothing else of the library; tests/cli/includes_test.sh holds qpm to it.
//
// Everything here acts on the library's current project, the one the
// exports act on, and runs on the thread that calls the exports.
#ifndef QUILLON_INTERFACE_HOST_API_H
#define QUILLON_INTERFACE_HOST_API_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "interface/dependency_cache.h"
#include "model/option_catalogue.h"
#include "platform/status.h"

namespace quillon::host {

// --- Project files

// Loads the project file at `path` and, when it exists, the per-user part
// at `user_path` into the current project (made by _InitProjectData). Both
// files are read and parsed before anything is loaded, so that what
// _Transfer cannot report is reported here: "cannot read PATH: " and why,
// in the store's own words where the store refused the bytes.
Status LoadProject(const std::string& path, const std::string& user_path);

// --- Store files

enum class StoreType { kKey, kInt, kInt64, kString, kList, kBuffer, kWords };

// One node of a store file.
struct StoreEntry {
  int depth = 0;  // 0 for the root
  StoreType type = StoreType::kKey;
  std::string_view name;
  // kInt: the value; kInt64: its two words; kWords: every word.
  std::vector<int64_t> numbers;
  // kString and kBuffer: the bytes; kList: every element.
  std::vector<std::string_view> texts;
};

// Calls `visit` for every node of the store file at `path`, depth first in
// stored order. Fails as LoadProject does when the file is no store.
Status ReadStore(const std::string& path, const std::function<void(const StoreEntry&)>& visit);

// --- The XML export

// Runs _ProjectExport with its save dialog answered by `path`, and tells
// what the export keeps to itself: whether the document was written.
Status ExportXml(const std::string& path);

// --- Structure edits that no export offers

// Whether the project has a default target.
bool HasDefaultTarget();
// Adds target `name` as a copy of target `source`, options included.
bool CopyTarget(const std::string& name, const std::string& source);
// Renames a target; the default target stays the default.
bool RenameTarget(const std::string& old_name, const std::string& new_name);
// Moves a link group one place toward the end (delta >= 0) or the start.
bool MoveLinkGroup(const std::string& name, int delta);

// --- Options by catalogue key (OptionInfo and its functions)

// Where options are read and written: the project; a target by name (null:
// the default one); a file of that target by its stored name or any name
// that resolves to the same file. Whatever is not there stays null.
OptionScope ProjectScope();
OptionScope TargetScope(const std::string* target);
OptionScope FileScope(const std::string* target, const std::string& file);

// A file of a link group as stored, and its scope.
struct GroupFile {
  std::string name;
  OptionScope scope;
};
// The files of `group` in `target`, in link order.
std::vector<GroupFile> FilesOfGroup(const std::string& target, const std::string& group);

// How a file's option is stored: as its own value; as inherited; only
// while the file still inherits.
enum class ValueMode { kOwn, kInherit, kPropagate };

// Parses and stores an option's value. A file option without a file goes
// into the target's file defaults and on to the target's files of its kind
// that inherit it. Files whose values changed must be translated again,
// and a target whose options changed linked; both are marked so.
Status SetOptionValue(const OptionInfo& info, const OptionScope& scope,
                      const std::vector<std::string>& values, ValueMode mode);

// Whether a file's option sets it apart from its target: its own value, or
// one other than the target's file defaults give files of its kind.
bool FileOptionStandsOut(const OptionInfo& info, const OptionScope& file);

// --- The include graph of the default target's sources

// Brings the graph up to date, scanning what changed since it was last
// brought up to date (or loaded by a DependencyCache).
void UpdateDependencies();

// One source of the default target and the files it depends on. The names
// are the graph's own, valid until the graph is next updated.
struct SourceDependencies {
  std::string source;  // a full path
  std::vector<std::string_view> dependencies;
};
// For every source of the default target that the graph holds, excluded
// files left out: its direct dependencies, or with `transitive` every file
// reached, each once, in the order met depth first.
std::vector<SourceDependencies> DependenciesOfSources(bool transitive);

}  // namespace quillon::host

#endif  // QUILLON_INTERFACE_HOST_API_H
