#include "model/project_data.h"

#include <algorithm>

#include "model/key_scope.h"
#include "platform/path.h"

namespace quillon {

CProjectData::CProjectData(int compiler_type) : compiler_type_(compiler_type) {}

void CProjectData::CreateOptionSets() {
  target_set_ = std::make_unique<CProjectTargetSet>(*this);
  project_options_ = NewProjectOptions();
  global_options_ = NewGlobalOptions();
  file_default_options_ = NewFileOptions();
}

CProjectData::~CProjectData() = default;

std::unique_ptr<COptionSet> CProjectData::NewFileOptions() const {
  return std::make_unique<CUnivFileOptions>();
}
std::unique_ptr<COptionSet> CProjectData::NewLinkGroupOptions() const {
  return std::make_unique<CLinkGroupOptions>();
}
std::unique_ptr<COptionSet> CProjectData::NewTargetOptions() const {
  return std::make_unique<CUnivTargetOptions>();
}
std::unique_ptr<COptionSet> CProjectData::NewProjectOptions() const {
  return std::make_unique<CProjectOptions>();
}
std::unique_ptr<CGlobalOptions> CProjectData::NewGlobalOptions() const {
  return std::make_unique<CGlobalOptions>();
}
std::unique_ptr<CProjectData> CProjectData::Clone() const { return Create(compiler_type_); }

int CProjectData::Initialise(int level) {
  target_set_->Initialise(level);
  project_options_->SetDefault(level);
  global_options_->SetDefault(level);
  file_default_options_->SetDefault(level);
  return 1;
}

void CProjectData::SetDefault(int level) {
  for (const auto& target : target_set_->targets) target->Initialise(level);
  file_default_options_->SetDefault(level);
  target_set_->link_group_options().SetDefault(level);
  target_set_->target_options().SetDefault(level);
  target_set_->project_options().SetDefault(level);
}

void CProjectData::CopyFrom(const CProjectData& other) {
  if (&other == this) return;
  compiler_type_ = other.compiler_type_;
  project_file_ = other.project_file_;
  directory_ = other.directory_;
  target_set_->CopyFrom(*other.target_set_);
  other.project_options_->CopyTo(*project_options_);
  other.global_options_->CopyTo(*global_options_);
  other.file_default_options_->CopyTo(*file_default_options_);
}

int CProjectData::Load(CSettingsRegistry& store, TransferPass pass) {
  LoadOptionsKey(store, "ProjectOptions", *project_options_, pass);
  // Opened in the creating form: a missing key reads as empty, so the
  // global options keep their defaults.
  InSubKey(store, "GlobalOptions", true, [&] { global_options_->Load(store, pass); });
  if (store.HasKey("Project[0]")) {
    store.OpenIndexedKey("Project", 0, false, true);
    target_set_->Load(store, pass);
    store.PopKey();
  }
  return 1;
}

int CProjectData::Save(CSettingsRegistry& store, TransferPass pass) const {
  store.OpenIndexedKey("Project", 0, true, true);
  target_set_->Save(store, pass);
  store.PopKey();
  SaveOptionsKey(store, "ProjectOptions", *project_options_, pass);
  SaveOptionsKey(store, "GlobalOptions", *global_options_, pass);
  return 1;
}

void CProjectData::set_project_file(const std::string& path) {
  project_file_ = path;
  directory_ = AddBackslash(DirOfFile(path));
}

// --- Targets

CProjectTarget* CProjectData::AddTarget(const std::string& name, const std::string& copy_from) {
  auto& targets = target_set_->targets;
  auto target = std::make_unique<CProjectTarget>(*this);
  if (!targets.empty()) {
    CProjectTarget* source = copy_from.empty() ? targets.front().get() : FindTarget(copy_from);
    if (source != nullptr) {
      target->CopyFrom(*source);
      // Without a named source only the structure is taken over.
      if (copy_from.empty()) target->Initialise(0);
    }
  }
  target->name = name;
  targets.push_back(std::move(target));
  return targets.back().get();
}

bool CProjectData::DeleteTarget(const std::string& name) {
  auto& targets = target_set_->targets;
  for (auto it = targets.begin(); it != targets.end(); ++it) {
    if ((*it)->name != name) continue;
    if (target_set_->default_target == it->get()) target_set_->default_target = nullptr;
    targets.erase(it);
    return true;
  }
  return false;
}

CProjectTarget* CProjectData::FindTarget(const std::string& name) const {
  return target_set_->FindTarget(name);
}

CProjectTarget* CProjectData::first_target() const {
  return target_set_->targets.empty() ? nullptr : target_set_->targets.front().get();
}

bool CProjectData::RenameTarget(const std::string& old_name, const std::string& new_name) {
  CProjectTarget* target = FindTarget(old_name);
  if (target == nullptr || new_name.empty()) return false;
  if (new_name != old_name && FindTarget(new_name) != nullptr) return false;
  target->name = new_name;
  return true;
}

// --- Link groups

bool CProjectData::AddLinkGroup(const std::string& name) {
  for (const auto& target : target_set_->targets) target->AddGroup(name);
  return !target_set_->targets.empty();
}

bool CProjectData::DeleteLinkGroup(const std::string& name) {
  bool removed = false;
  for (const auto& target : target_set_->targets) {
    int index = target->IndexOfGroup(name);
    if (index < 0) continue;
    target->groups.erase(target->groups.begin() + index);
    target->RebuildFileList();
    removed = true;
  }
  return removed;
}

namespace {

// One place toward the end for delta >= 0, toward the start otherwise.
template <typename T>
bool MoveOnePlace(std::vector<T>& items, int index, int delta) {
  int to = delta >= 0 ? index + 1 : index - 1;
  if (index < 0 || to < 0 || to >= static_cast<int>(items.size())) return false;
  std::swap(items[index], items[to]);
  return true;
}

}  // namespace

bool CProjectData::MoveLinkGroup(const std::string& name, int delta) {
  bool moved = false;
  for (const auto& target : target_set_->targets) {
    if (MoveOnePlace(target->groups, target->IndexOfGroup(name), delta)) {
      target->RebuildFileList();
      moved = true;
    }
  }
  return moved;
}

// --- Files

bool CProjectData::AddFile(const std::string& file_name, const std::string& group_name) {
  CProjectTarget* first = first_target();
  if (first == nullptr || file_name.empty()) return false;
  std::string group = group_name;
  if (group.empty()) {
    if (first->groups.empty()) return false;
    group = first->groups.front()->name;
  }
  if (first->FindGroup(group) == nullptr || first->FindFile(file_name) != nullptr) return false;
  for (const auto& target : target_set_->targets) {
    if (CLinkGroup* found = target->FindGroup(group)) target->AddFile(file_name, *found);
  }
  return true;
}

bool CProjectData::DeleteProjectFile(const std::string& file_name) {
  bool removed = false;
  for (const auto& target : target_set_->targets) {
    CProjectFile* file = target->FindFile(file_name);
    if (file == nullptr) continue;
    CLinkGroup* group = file->group;
    group->files.erase(group->files.begin() + group->IndexOfFile(file));
    target->RebuildFileList();
    removed = true;
  }
  return removed;
}

bool CProjectData::ChangeFileGroup(const std::string& file_name, const std::string& group_name) {
  CProjectTarget* first = first_target();
  if (first == nullptr || first->FindFile(file_name) == nullptr ||
      first->FindGroup(group_name) == nullptr) {
    return false;
  }
  for (const auto& target : target_set_->targets) {
    CProjectFile* file = target->FindFile(file_name);
    CLinkGroup* to = target->FindGroup(group_name);
    if (file == nullptr || to == nullptr || file->group == to) continue;
    CLinkGroup* from = file->group;
    auto it = from->files.begin() + from->IndexOfFile(file);
    std::unique_ptr<CProjectFile> moving = std::move(*it);
    from->files.erase(it);
    moving->group = to;
    to->files.push_back(std::move(moving));
    target->RebuildFileList();
  }
  return true;
}

bool CProjectData::MoveProjectFile(const std::string& file_name, int delta) {
  bool moved = false;
  for (const auto& target : target_set_->targets) {
    CProjectFile* file = target->FindFile(file_name);
    if (file == nullptr) continue;
    if (MoveOnePlace(file->group->files, file->group->IndexOfFile(file), delta)) {
      target->RebuildFileList();
      moved = true;
    }
  }
  return moved;
}

void CProjectData::DeleteAllFiles() {
  for (const auto& target : target_set_->targets) {
    for (const auto& group : target->groups) group->files.clear();
    target->files.clear();
  }
}

bool CProjectData::IsFileInProject(const std::string& file_name, int) const {
  CProjectTarget* target = default_target() ? default_target() : first_target();
  return target != nullptr && target->FindFile(file_name) != nullptr;
}

// --- Names and kinds

std::string CProjectData::FullNameOfFile(const std::string& file_name, int, int) const {
  std::string name(TrimBlanks(file_name));
  if (name.empty()) return std::string();
  // Names may be stored relative to the project through this macro.
  static constexpr std::string_view kIrfDir = "$(IRFDIR)";
  if (name.size() >= kIrfDir.size() && EqualsNoCase(name.substr(0, kIrfDir.size()), kIrfDir)) {
    name = directory_ + name.substr(kIrfDir.size());
  }
  if (IsAbsolutePath(name) || directory_.empty()) return NormalizePath(name);
  return AbsolutePath(directory_, name);
}

FileKind CProjectData::ClassifyFile(const std::string& file_name) const {
  std::string ext = ExtOfFile(file_name);
  const CGlobalOptions& options = *global_options_;
  if (ExtensionInList(ext, options.GetString(kCInpExtensions, 0))) return kFileCompilerSource;
  if (ExtensionInList(ext, options.GetString(kAInpExtensions, 0))) return kFileAssemblerSource;
  if (ExtensionInList(ext, options.GetString(kHeaderExtension, 0))) return kFileHeader;
  if (ExtensionInList(ext, options.GetString(kAHeaderExtension, 0))) return kFileAssemblerHeader;
  if (ExtensionInList(ext, options.GetString(kLInpExtensions, 0))) return kFileLinkerInput;
  return kFileOther;
}

bool CProjectData::IsExcludedFromBuild(const CProjectFile& file) const {
  return file.options().GetInt(kExcludeFromMakeId, 0) > 0;
}

bool CProjectData::ProducesIntermediateAssemblerFile(const CProjectFile& file) const {
  return ClassifyFile(file.file_name()) == kFileCompilerSource &&
         file.options().GetInt(kRunAssemblerId, 0) > 0;
}

std::string CProjectData::OutputDirectory(const CProjectTarget& target) const {
  std::string dir(TrimBlanks(target.target_options().GetString(kTargetDirectoryId, 0)));
  if (dir.empty()) return directory_;
  return AddBackslash(IsAbsolutePath(dir) ? NormalizePath(dir) : AbsolutePath(directory_, dir));
}

std::string CProjectData::OutputFile(const CProjectTarget& target) const {
  std::string out_dir = OutputDirectory(target);
  std::string name(TrimBlanks(global_options_->GetString(kExecutableFileName, 0)));
  if (name.empty()) return out_dir + NameOfFile(project_file_);
  return IsAbsolutePath(name) ? NormalizePath(name) : AbsolutePath(out_dir, name);
}

namespace {

std::string FirstExtension(const std::string& list) {
  std::string_view first(list);
  first = first.substr(0, first.find(';'));
  return std::string(TrimBlanks(first));
}

}  // namespace

std::string CProjectData::OutputFileOf(const CProjectTarget& target,
                                       const CProjectFile& file) const {
  int id;
  switch (ClassifyFile(file.file_name())) {
    case kFileCompilerSource:
      id = kCOutExtensions;
      break;
    case kFileAssemblerSource:
      id = kAOutExtensions;
      break;
    default:
      return std::string();
  }
  return OutputDirectory(target) + NameOfFile(file.file_name()) + "." +
         FirstExtension(global_options_->GetString(id, 0));
}

std::string CProjectData::IndirectionFile(const CProjectTarget& target) const {
  // An external make does its own linking.
  if (global_options_->GetInt(kExternalMake, 0) != 0) return std::string();
  std::string name(TrimBlanks(target.target_options().GetString(kIndirectionFileId, 0)));
  if (name.empty()) return std::string();
  return FullNameOfFile(name);
}

std::unique_ptr<CProjectData> CreateProject(int compiler_type) {
  if (compiler_type != 0) return nullptr;
  return CProjectData::Create(compiler_type);
}

}  // namespace quillon
