#include "interface/host_api.h"

#include <memory>
#include <unordered_set>
#include <utility>

#include "deps/target_scan.h"
#include "interface/export_guard.h"
#include "interface/host_observer.h"
#include "interface/library_state.h"
#include "model/option_fallback.h"

namespace quillon::host {
namespace {

Status CannotRead(const std::string& path, const std::string& why) {
  return Status::BadData("cannot read " + path + ": " + why);
}

// The file at `path` parsed whole; with `top_key`, a store without that key
// is refused too.
Status ReadStoreFile(const std::string& path, const char* top_key,
                     std::unique_ptr<CSettingsRegistry>* store) {
  FileSystem& fs = *State().fs;
  if (fs.DirectoryExists(path))
    return Status::IoError("cannot read " + path + ": it is a directory");
  std::string bytes;
  Status status = fs.ReadFile(path, &bytes);
  if (!status.ok()) return status;
  // A reading store parses everything when built and keeps no hold on the
  // stream afterwards.
  MemoryByteStream stream(std::move(bytes));
  auto parsed = std::make_unique<CSettingsRegistry>(&stream, false);
  if (parsed->LastError() != kRegOK) {
    return CannotRead(path, CSettingsRegistry::ErrorText(parsed->LastError()));
  }
  if (top_key != nullptr && !parsed->HasKey(top_key)) {
    return CannotRead(path, std::string(CSettingsRegistry::ErrorText(kRegKeyNotFound)) + " (\"" +
                                top_key + "\")");
  }
  *store = std::move(parsed);
  return Status::OK();
}

// _Transfer's reading half on a store already parsed: parsing a project of
// thousands of files twice cost a quarter of loading it.
void TransferIn(CSettingsRegistry& store, int local) {
  LibraryState& state = State();
  state.transfer = TransferContext{false, &store};
  store.PushKey();
  if (store.OpenKey(local ? "Project_Local" : "Project", false)) _Load(local);
  store.PopKey();
  state.transfer = TransferContext{};
}

StoreType TypeOf(uint8_t type) {
  switch (type) {
    case kRegInt:
      return StoreType::kInt;
    case kRegInt64:
      return StoreType::kInt64;
    case kRegString:
      return StoreType::kString;
    case kRegStringList:
      return StoreType::kList;
    case kRegBuffer:
      return StoreType::kBuffer;
    case kRegWords:
      return StoreType::kWords;
  }
  return StoreType::kKey;  // the reader refuses every other code
}

StoreEntry EntryOf(const RegistryNode& node, int depth) {
  StoreEntry entry{depth, TypeOf(node.type()), node.name(), {}, {}};
  switch (entry.type) {
    case StoreType::kKey:
      break;
    case StoreType::kInt:
      entry.numbers = {node.int_value()};
      break;
    case StoreType::kInt64:
      entry.numbers = {node.int64_word(0), node.int64_word(1)};
      break;
    case StoreType::kWords: {
      std::vector<uint32_t> words = node.words_value();
      entry.numbers.assign(words.begin(), words.end());
      break;
    }
    case StoreType::kString:
    case StoreType::kBuffer:
      entry.texts = {node.string_value()};
      break;
    case StoreType::kList:
      entry.texts = node.list_views();
      break;
  }
  return entry;
}

CProjectData& Project() { return *State().project; }

CProjectTarget* DefaultTarget() {
  return State().project ? State().project->default_target() : nullptr;
}

// Every file reachable from `root`, each once, in the order met. Walks the
// graph itself: asking the exports name by name cost seconds on a big tree.
std::vector<std::string_view> Closure(const CDependencyNode& root) {
  std::vector<std::string_view> all;
  std::unordered_set<const CDependencyNode*> seen;
  const auto& direct = root.dependencies();
  std::vector<const CDependencyNode*> pending(direct.rbegin(), direct.rend());
  while (!pending.empty()) {
    const CDependencyNode* node = pending.back();
    pending.pop_back();
    if (!seen.insert(node).second) continue;
    all.push_back(node->name());
    pending.insert(pending.end(), node->dependencies().rbegin(), node->dependencies().rend());
  }
  return all;
}

// What a changed option makes out of date, read before and compared after
// the change: the files whose values changed, the target whose options did.
class ChangeMarker {
 public:
  ChangeMarker(const OptionInfo& info, const OptionScope& scope) : info_(info), scope_(scope) {
    if (info.level == OptionLevel::kTarget) before_.push_back(GetOption(info, scope));
    if (info.level != OptionLevel::kFile) return;
    files_ = scope.file ? std::vector<CProjectFile*>{scope.file} : scope.target->files;
    for (CProjectFile* file : files_) before_.push_back(GetOption(info, At(file)));
  }

  void Mark() const {
    if (info_.level == OptionLevel::kTarget && GetOption(info_, scope_) != before_[0]) {
      scope_.target->is_changed = true;
    }
    for (size_t i = 0; i < files_.size(); ++i) {
      if (GetOption(info_, At(files_[i])) != before_[i]) files_[i]->is_changed = true;
    }
  }

 private:
  OptionScope At(CProjectFile* file) const { return {scope_.project, scope_.target, file}; }

  const OptionInfo& info_;
  OptionScope scope_;
  std::vector<CProjectFile*> files_;
  std::vector<std::vector<std::string>> before_;
};

int ModeOf(ValueMode mode) {
  switch (mode) {
    case ValueMode::kInherit:
      return Inherit;
    case ValueMode::kPropagate:
      return Propagate;
    case ValueMode::kOwn:
      break;
  }
  return Own;
}

}  // namespace

Status LoadProject(const std::string& path, const std::string& user_path) {
  std::unique_ptr<CSettingsRegistry> shared, user;
  Status status = ReadStoreFile(path, "Project", &shared);
  if (!status.ok()) return status;
  const bool has_user = State().fs->FileExists(user_path);
  if (has_user) {
    status = ReadStoreFile(user_path, "Project_Local", &user);
    if (!status.ok()) return status;
  }
  TransferIn(*shared, 0);
  if (!State().project) return CannotRead(path, "the project's compiler type is not supported");
  if (has_user) TransferIn(*user, 1);
  return Status::OK();
}

Status ReadStore(const std::string& path, const std::function<void(const StoreEntry&)>& visit) {
  std::unique_ptr<CSettingsRegistry> store;
  Status status = ReadStoreFile(path, nullptr, &store);
  if (!status.ok()) return status;
  // Without recursion: a store may nest deeply.
  std::vector<std::pair<const RegistryNode*, int>> pending{{&store->root(), 0}};
  while (!pending.empty()) {
    auto [node, depth] = pending.back();
    pending.pop_back();
    visit(EntryOf(*node, depth));
    for (size_t i = node->child_count(); i-- > 0;) pending.emplace_back(&node->child(i), depth + 1);
  }
  return Status::OK();
}

bool HasDefaultTarget() { return DefaultTarget() != nullptr; }

Status ExportXml(const std::string& path) {
  LibraryState& state = State();
  state.ui->AnswerNextSaveWith(path);
  _ProjectExport();
  // A save the export never asked for must not answer a later one.
  state.ui->AnswerNextSaveWith(std::string());
  return state.last_export;
}

bool CopyTarget(const std::string& name, const std::string& source) {
  if (!State().project || Project().FindTarget(source) == nullptr) return false;
  ChangeBracket bracket;
  Project().AddTarget(name, source);
  State().Notify(ProjectChangeModified);
  return true;
}

bool RenameTarget(const std::string& old_name, const std::string& new_name) {
  if (!State().project) return false;
  ChangeBracket bracket;
  if (!Project().RenameTarget(old_name, new_name)) return false;
  State().Notify(ProjectChangeModified);
  return true;
}

bool MoveLinkGroup(const std::string& name, int delta) {
  if (!State().project) return false;
  ChangeBracket bracket;
  if (!Project().MoveLinkGroup(name, delta)) return false;
  State().Notify(ProjectChangeModified);
  return true;
}

OptionScope ProjectScope() { return {State().project.get(), nullptr, nullptr}; }

OptionScope TargetScope(const std::string* target) {
  OptionScope scope = ProjectScope();
  if (scope.project == nullptr) return scope;
  scope.target = target ? scope.project->FindTarget(*target) : scope.project->default_target();
  return scope;
}

OptionScope FileScope(const std::string* target, const std::string& file) {
  OptionScope scope = TargetScope(target);
  if (scope.target != nullptr) scope.file = scope.target->FindFile(file);
  return scope;
}

std::vector<GroupFile> FilesOfGroup(const std::string& target, const std::string& group) {
  std::vector<GroupFile> files;
  OptionScope scope = TargetScope(&target);
  CLinkGroup* found = scope.target ? scope.target->FindGroup(group) : nullptr;
  if (found == nullptr) return files;
  for (const auto& file : found->files) {
    files.push_back({file->file_name(), {scope.project, scope.target, file.get()}});
  }
  return files;
}

Status SetOptionValue(const OptionInfo& info, const OptionScope& scope,
                      const std::vector<std::string>& values, ValueMode mode) {
  ChangeMarker marker(info, scope);
  std::string error;
  const bool target_defaults = info.level == OptionLevel::kFile && scope.file == nullptr;
  const bool stored = target_defaults
                          ? SetTargetFileOption(*scope.project, *scope.target, info, values, &error)
                          : SetOption(info, scope, values, ModeOf(mode), &error);
  if (!stored) return Status::BadData(error);
  marker.Mark();
  return Status::OK();
}

bool FileOptionStandsOut(const OptionInfo& info, const OptionScope& file) {
  if (GetOwnFlag(info, file)) return true;
  const OptionScope target{file.project, file.target, nullptr};
  const int kind = file.project->ClassifyFile(file.file->file_name());
  return FileOptionAppliesTo(info, kind) && GetOption(info, file) != GetOption(info, target);
}

void UpdateDependencies() {
  CProjectTarget* target = DefaultTarget();
  if (target == nullptr) return;
  HostScanObserver observer;
  State().Scanner().Update(MakeScanRequest(Project(), *target), &observer);
}

std::vector<SourceDependencies> DependenciesOfSources(bool transitive) {
  std::vector<SourceDependencies> result;
  CProjectTarget* target = DefaultTarget();
  if (target == nullptr) return result;
  const CDependencyScanner& scanner = State().Scanner();
  for (const CProjectFile* file : target->files) {
    if (Project().IsExcludedFromBuild(*file)) continue;
    std::string full = Project().FullNameOfFile(file->file_name());
    const CDependencyNode* root = scanner.FindRoot(full);
    if (root == nullptr) continue;
    std::vector<std::string_view> dependencies;
    if (transitive) {
      dependencies = Closure(*root);
    } else {
      for (const CDependencyNode* dep : root->dependencies()) dependencies.push_back(dep->name());
    }
    result.push_back({std::move(full), std::move(dependencies)});
  }
  return result;
}

}  // namespace quillon::host
