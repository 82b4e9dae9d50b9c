// The targets of a project, which of them is the default, and the
// project-wide names and option sets.
#ifndef QUILLON_MODEL_PROJECT_TARGET_SET_H
#define QUILLON_MODEL_PROJECT_TARGET_SET_H

#include <memory>
#include <string>
#include <vector>

#include "model/file_options.h"
#include "model/option_set.h"
#include "model/project_target.h"

namespace quillon {

class CProjectData;

inline constexpr const char* kNoFilter = "No filter";

class CProjectTargetSet {
 public:
  explicit CProjectTargetSet(CProjectData& project);

  std::string project_name;
  std::string filter_name = kNoFilter;
  CFilterSelection filter_selection;
  std::vector<std::unique_ptr<CProjectTarget>> targets;
  // One of `targets`, or null.
  CProjectTarget* default_target = nullptr;
  // Set when files were added or removed since the last dependency update.
  bool dependencies_changed = false;

  COptionSet& project_options() { return *project_options_; }
  COptionSet& target_options() { return *target_options_; }
  const COptionSet& target_options() const { return *target_options_; }
  // Filled from a project option set, as the stored format has it.
  COptionSet& link_group_options() { return *link_group_options_; }

  CProjectTarget* FindTarget(const std::string& name) const;
  int IndexOfTarget(const CProjectTarget* target) const;

  void Initialise(int level);
  void CopyFrom(const CProjectTargetSet& other);

  int Load(CSettingsRegistry& store, TransferPass pass);
  int Save(CSettingsRegistry& store, TransferPass pass) const;

 private:
  CProjectData& project_;
  std::unique_ptr<COptionSet> project_options_;
  std::unique_ptr<COptionSet> target_options_;
  std::unique_ptr<COptionSet> link_group_options_;
};

// Older projects stored a processor-specific filter name; the families that
// were merged since load under their common name.
std::string UpdateFilterName(const std::string& stored);

}  // namespace quillon

#endif  // QUILLON_MODEL_PROJECT_TARGET_SET_H
