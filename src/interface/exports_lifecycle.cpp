// Lifecycle and persistence exports.
#include <cstring>

#include "build/message_table.h"
#include "interface/export_guard.h"
#include "interface/host_observer.h"
#include "interface/library_state.h"
#include "interface/stream_adapter.h"
#include "platform/path.h"
#include "quillon/quillon.h"

using namespace quillon;

namespace {

constexpr int kRegistryVersion = 133;

TransferPass PassOf(int local) { return local ? TransferPass::kLocal : TransferPass::kShared; }

// The project's wizard data for compiler type 0: a header word that says the
// data is filled. Other types belong to the host's wizard.
struct WizardDataType0 {
  int32_t filled;
};

}  // namespace

int QUILLON_CALL _InitProjectData(ProjectChangeCallback onChange, HostCallback host) {
  return Guarded(0, [&] {
    LibraryState& state = State();
    state.on_change = onChange;
    state.host = host;
    state.working_copy.reset();
    MessageTable().SetOutputSink(&TheHostOutputSink());
    auto project = CreateProject(0);
    int result = project->Initialise(0);
    state.InstallProject(std::move(project));
    return result;
  });
}

void QUILLON_CALL _DoneProjectData(void) {
  Guarded([] {
    State().EndBuild();
    State().project.reset();
    State().working_copy.reset();
    State().Scanner().Clear();
  });
}

int QUILLON_CALL _Transfer(IStream* stream, int storing, int local) {
  Guarded([&] {
    if (stream == nullptr) return;
    LibraryState& state = State();
    HostStream bytes(stream);
    CSettingsRegistry store(&bytes, storing != 0);
    state.transfer = TransferContext{storing != 0, &store};
    if (storing) {
      store.WriteInt("RegVer", kRegistryVersion);
    } else {
      int32_t version = kRegistryVersion;
      store.ReadInt("RegVer", &version);
    }
    const char* top = local ? "Project_Local" : "Project";
    store.PushKey();
    if (storing) {
      if (store.OpenKey(top, true)) _Save(local);
    } else if (store.HasKey(top) && store.OpenKey(top, false)) {
      _Load(local);
    }
    store.PopKey();
    state.transfer = TransferContext{};
  });
  State().transfer = TransferContext{};
  return 1;
}

int QUILLON_CALL _Load(int local) {
  Guarded([&] {
    LibraryState& state = State();
    CSettingsRegistry* store = state.transfer.store;
    if (store == nullptr) return;
    state.local_transfer = local;
    int32_t compiler_type = 0;
    if (local == 0 && store->ReadInt("CompilerType", &compiler_type)) {
      state.EndBuild();
      state.project.reset();
      auto project = CreateProject(compiler_type);
      if (project) project->Initialise(0);
      state.InstallProject(std::move(project));
    }
    if (state.project) state.project->Load(*store, PassOf(local));
    state.Notify(ProjectChangeReloaded, "", "");
  });
  return 1;
}

int QUILLON_CALL _Save(int local) {
  return Guarded(0, [&] {
    LibraryState& state = State();
    if (!state.project) return 0;
    state.local_transfer = local;
    CSettingsRegistry* store = state.transfer.store;
    if (store == nullptr) return 1;
    if (local == 0) store->WriteInt("CompilerType", state.project->compiler_type());
    state.project->Save(*store, PassOf(local));
    return 1;
  });
}

void QUILLON_CALL _CreateDefaultProject(int compilerType, int makeSourceGroup) {
  Guarded([&] {
    LibraryState& state = State();
    ChangeBracket bracket;
    state.EndBuild();
    state.project.reset();
    auto project = CreateProject(compilerType);
    if (!project) return;
    project->Initialise(0);
    state.InstallProject(std::move(project));
    CProjectData& current = *state.project;
    CProjectTarget* target =
        current.AddTarget(NameOfFile(state.irf_file_name) + " - Debug", std::string());
    state.Notify(ProjectChangeModified);
    current.SetDefaultTarget(target);
    if (makeSourceGroup) {
      current.AddLinkGroup("Source files");
      state.Notify(ProjectChangeGroupAdded, "Source files", "");
    }
  });
}

void QUILLON_CALL _Set_IRF_FileName(const char* fullPath) {
  Guarded([&] {
    if (fullPath == nullptr) return;
    LibraryState& state = State();
    state.irf_file_name = fullPath;
    state.irf_directory = AddBackslash(DirOfFile(state.irf_file_name));
    if (state.project) state.project->set_project_file(state.irf_file_name);
  });
}

int QUILLON_CALL _SetWizardData(int compilerType, void* data) {
  Guarded([&] {
    LibraryState& state = State();
    if (!state.project || data == nullptr || compilerType != state.project->compiler_type()) return;
    // Type 0 keeps nothing of the wizard's beyond what the project holds.
  });
  return 1;
}

void QUILLON_CALL _GetWizardData(int* compilerType, void* data) {
  Guarded([&] {
    if (compilerType == nullptr || data == nullptr) return;
    int32_t first_word = 0;
    std::memcpy(&first_word, data, sizeof first_word);
    if (first_word == 0) _CreateDefaultProject(*compilerType, 1);
    LibraryState& state = State();
    if (!state.project) return;
    int asked = *compilerType;
    *compilerType = state.project->compiler_type();
    if (asked == 0 && *compilerType == 0) {
      WizardDataType0 filled{1};
      std::memcpy(data, &filled, sizeof filled);
    }
  });
}
