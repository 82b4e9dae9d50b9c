#include "cli/project_io.h"

#include <cstdio>
#include <utility>

#include "cli/memory_stream.h"
#include "interface/host_api.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

// qpm shows no IDE: change notifications and progress mean nothing here,
// but build messages (such as an include the scanner could not find) go
// to standard error.
int QUILLON_CALL IgnoreChange(intptr_t, intptr_t, int) { return 0; }
OutputHandler& Handler() {
  static OutputHandler handler;
  return handler;
}

int QUILLON_CALL ShowBuildMessages(int code, void* record) {
  if (code != HostOutput || record == nullptr) return 0;
  const auto* output = static_cast<const OutputRecord*>(record);
  if (Handler()) {
    Handler()(output->channel, output->action, output->text != nullptr ? output->text : "");
    return 0;
  }
  if (output->channel == OutputBuildMessages && output->action == OutputAppendLine &&
      output->text != nullptr) {
    std::fprintf(stderr, "%s\n", output->text);
  }
  return 0;
}

// What _Transfer writes for one part.
std::string TransferOut(int local) {
  MemoryStream stream;
  _Transfer(&stream, 1, local);
  return stream.bytes();
}

Status WriteIfChanged(const std::string& path, const std::string& bytes) {
  FileSystem& fs = FileSystem::Default();
  std::string old;
  if (fs.FileExists(path) && fs.ReadFile(path, &old).ok() && old == bytes) return Status::OK();
  return fs.WriteFileAtomically(path, bytes);
}

}  // namespace

void SetOutputHandler(OutputHandler handler) { Handler() = std::move(handler); }

OpenProject::OpenProject(std::string path) : path_(std::move(path)) {}

OpenProject::~OpenProject() { _DoneProjectData(); }

void OpenProject::Begin() {
  // Relative file names in the project resolve against the IRF file's
  // directory, so the library gets the full path.
  _Set_IRF_FileName(ExpandToFullPath(path_).c_str());
  _InitProjectData(IgnoreChange, ShowBuildMessages);
}

Status OpenProject::Load() {
  Begin();
  // _Transfer reports nothing, so the host API reads and checks the files
  // before the library loads them.
  return host::LoadProject(path_, user_path());
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

Status EditProject(const std::string& path, const ProjectEdit& edit) {
  OpenProject open(path);
  Status status = open.Load();
  if (status.ok()) status = edit();
  if (status.ok()) status = open.Save();
  return status;
}

Status ReadProject(const std::string& path, const ProjectEdit& read) {
  OpenProject open(path);
  Status status = open.Load();
  return status.ok() ? read() : status;
}

}  // namespace quillon::qpm
