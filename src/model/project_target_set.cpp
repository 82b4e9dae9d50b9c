#include "model/project_target_set.h"

#include "model/key_scope.h"
#include "model/project_data.h"

namespace quillon {

CProjectTargetSet::CProjectTargetSet(CProjectData& project)
    : project_(project),
      project_options_(project.NewProjectOptions()),
      target_options_(project.NewTargetOptions()),
      link_group_options_(project.NewProjectOptions()) {}

CProjectTarget* CProjectTargetSet::FindTarget(const std::string& name) const {
  for (const auto& target : targets) {
    if (target->name == name) return target.get();
  }
  return nullptr;
}

int CProjectTargetSet::IndexOfTarget(const CProjectTarget* target) const {
  for (size_t i = 0; i < targets.size(); ++i) {
    if (targets[i].get() == target) return static_cast<int>(i);
  }
  return -1;
}

void CProjectTargetSet::Initialise(int level) {
  for (const auto& target : targets) target->Initialise(level);
  project_options_->SetDefault(level);
  target_options_->SetDefault(level);
  link_group_options_->SetDefault(level);
}

void CProjectTargetSet::CopyFrom(const CProjectTargetSet& other) {
  project_name = other.project_name;
  filter_name = other.filter_name;
  filter_selection = other.filter_selection;
  dependencies_changed = other.dependencies_changed;
  targets.clear();
  default_target = nullptr;
  for (const auto& source : other.targets) {
    auto target = std::make_unique<CProjectTarget>(project_);
    target->CopyFrom(*source);
    if (source.get() == other.default_target) default_target = target.get();
    targets.push_back(std::move(target));
  }
  other.project_options_->CopyTo(*project_options_);
  other.target_options_->CopyTo(*target_options_);
  other.link_group_options_->CopyTo(*link_group_options_);
}

int CProjectTargetSet::Load(CSettingsRegistry& store, TransferPass pass) {
  std::string default_name;
  bool has_default = store.ReadString("DefaultTargetName", &default_name);
  if (pass == TransferPass::kLocal) {
    if (has_default) default_target = FindTarget(default_name);
    return 1;
  }
  store.ReadString("ProjectName", &project_name);
  if (store.ReadString("FilterName", &filter_name)) filter_name = UpdateFilterName(filter_name);
  InSubKey(store, "AdvancedLinkerOptions", false, [&] { filter_selection.Load(store, pass); });
  targets.clear();
  default_target = nullptr;
  ForEachIndexedKey(store, "Target", [&](int) {
    auto target = std::make_unique<CProjectTarget>(project_);
    target->Load(store, pass);
    targets.push_back(std::move(target));
  });
  default_target = FindTarget(default_name);
  LoadOptionsKey(store, "LinkGroupOptions", *link_group_options_, pass);
  LoadOptionsKey(store, "TargetOptions", *target_options_, pass);
  LoadOptionsKey(store, "ProjectOptions", *project_options_, pass);
  return 1;
}

int CProjectTargetSet::Save(CSettingsRegistry& store, TransferPass pass) const {
  store.WriteString("DefaultTargetName", default_target ? default_target->name : std::string());
  if (pass == TransferPass::kLocal) return 1;
  store.WriteString("ProjectName", project_name);
  store.WriteString("FilterName", filter_name);
  InSubKey(store, "AdvancedLinkerOptions", true, [&] { filter_selection.Save(store, pass); });
  WriteIndexedKeys(store, "Target", targets.size(),
                   [&](size_t i) { targets[i]->Save(store, pass); });
  SaveOptionsKey(store, "LinkGroupOptions", *link_group_options_, pass);
  SaveOptionsKey(store, "TargetOptions", *target_options_, pass);
  SaveOptionsKey(store, "ProjectOptions", *project_options_, pass);
  return 1;
}

std::string UpdateFilterName(const std::string& stored) {
  auto starts = [&](const char* prefix) { return stored.rfind(prefix, 0) == 0; };
  if (starts("IAR-")) return "IAR";
  if (starts("HiWare-")) return "HiWare";
  if (starts("Introl-")) return "Introl";
  if (starts("Cosmic-")) return "Cosmic";
  if (starts("AD-")) return stored.size() > 12 ? "2500AD (ver. 4.0)" : "2500AD";
  return stored;
}

}  // namespace quillon
