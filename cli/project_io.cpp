#include "cli/project_io.h"

#include <cstdio>

#include "cli/memory_stream.h"
#include "interface/library_state.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

// qpm shows no IDE: change notifications and progress mean nothing here,
// but build messages (such as an include the scanner could not find) go
// to standard error.
int QUILLON_CALL IgnoreChange(intptr_t, intptr_t, int) { return 0; }
int QUILLON_CALL ShowBuildMessages(int code, void* record) {
  if (code != HostOutput || record == nullptr) return 0;
  const auto* output = static_cast<const OutputRecord*>(record);
  if (output->channel == 0 && output->action == 21 && output->text != nullptr) {
    std::fprintf(stderr, "%s\n", output->text);
  }
  return 0;
}

Status CannotRead(const std::string& path, const std::string& why) {
  return Status::Error("cannot read " + path + ": " + why);
}

// What _Transfer writes for one part.
std::string TransferOut(int local) {
  MemoryStream stream;
  _Transfer(&stream, 1, local);
  return stream.bytes();
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

Status WriteIfChanged(const std::string& path, const std::string& bytes) {
  FileSystem& fs = FileSystem::Default();
  std::string old;
  if (fs.FileExists(path) && fs.ReadFile(path, &old).ok() && old == bytes) return Status::OK();
  return fs.WriteFileAtomically(path, bytes);
}

}  // namespace

Status ReadStoreFile(const std::string& path, const char* top_key, std::string* bytes,
                     std::unique_ptr<CSettingsRegistry>* store) {
  FileSystem& fs = FileSystem::Default();
  if (fs.DirectoryExists(path)) return CannotRead(path, "it is a directory");
  Status status = fs.ReadFile(path, bytes);
  if (!status.ok()) return status;
  // A reading store parses everything when built and keeps no hold on
  // the stream afterwards.
  MemoryByteStream stream(*bytes);
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

OpenProject::OpenProject(std::string path) : path_(std::move(path)) {}

OpenProject::~OpenProject() { _DoneProjectData(); }

void OpenProject::Begin() {
  // Relative file names in the project resolve against the IRF file's
  // directory, so the library gets the full path.
  _Set_IRF_FileName(ExpandToFullPath(path_).c_str());
  _InitProjectData(IgnoreChange, ShowBuildMessages);
}

Status OpenProject::Load() {
  std::string shared, user;
  std::unique_ptr<CSettingsRegistry> shared_store, user_store;
  // _Transfer reports nothing, so the files are parsed and checked here,
  // and the library loads what was parsed.
  Status status = ReadStoreFile(path_, "Project", &shared, &shared_store);
  if (!status.ok()) return status;
  bool has_user = FileSystem::Default().FileExists(user_path());
  if (has_user) {
    status = ReadStoreFile(user_path(), "Project_Local", &user, &user_store);
    if (!status.ok()) return status;
  }
  Begin();
  TransferIn(*shared_store, 0);
  if (!State().project) return CannotRead(path_, "the project's compiler type is not supported");
  if (has_user) TransferIn(*user_store, 1);
  return Status::OK();
}

Status OpenProject::CreateDefault(bool make_source_group) {
  Begin();
  _CreateDefaultProject(0, make_source_group ? 1 : 0);
  return Status::OK();
}

Status OpenProject::Save() const {
  std::string shared = TransferOut(0);
  std::string user = TransferOut(1);
  // The per-user part first: when it cannot be written, the project file
  // has not been touched either.
  Status status = WriteIfChanged(user_path(), user);
  if (status.ok()) status = WriteIfChanged(path_, shared);
  return status;
}

CProjectData& OpenProject::project() const { return *State().project; }

Status EditProject(const std::string& path, const ProjectEdit& edit) {
  OpenProject open(path);
  Status status = open.Load();
  if (status.ok()) status = edit(open.project());
  if (status.ok()) status = open.Save();
  return status;
}

Status ReadProject(const std::string& path, const ProjectEdit& read) {
  OpenProject open(path);
  Status status = open.Load();
  return status.ok() ? read(open.project()) : status;
}

}  // namespace quillon::qpm
