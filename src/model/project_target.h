// A target: its link groups in link order, its files, and the option sets
// that hold its defaults. Every target lists the same groups and files; they
// differ only in their options.
#ifndef QUILLON_MODEL_PROJECT_TARGET_H
#define QUILLON_MODEL_PROJECT_TARGET_H

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/link_group.h"
#include "model/option_set.h"
#include "model/project_file.h"

namespace quillon {

class CProjectData;

class CProjectTarget {
 public:
  explicit CProjectTarget(CProjectData& project);

  CProjectData& project() const { return project_; }

  std::string name;
  std::vector<std::unique_ptr<CLinkGroup>> groups;
  // Every file of every group, in group order, then file order.
  std::vector<CProjectFile*> files;
  // Set when the target must be linked again (its linker options changed).
  bool is_changed = false;

  COptionSet& file_options() { return *file_options_; }
  const COptionSet& file_options() const { return *file_options_; }
  COptionSet& link_group_options() { return *link_group_options_; }
  const COptionSet& link_group_options() const { return *link_group_options_; }
  COptionSet& target_options() { return *target_options_; }
  const COptionSet& target_options() const { return *target_options_; }

  CLinkGroup* FindGroup(const std::string& group_name) const;
  int IndexOfGroup(const std::string& group_name) const;
  // The file with that name (stored or full), or null. Names that resolve
  // to the same full path name the same file.
  CProjectFile* FindFile(const std::string& file_name) const;
  CLinkGroup* AddGroup(const std::string& group_name);
  CProjectFile* AddFile(const std::string& file_name, CLinkGroup& group);
  // Recomputes `files` from the groups.
  void RebuildFileList();

  void Initialise(int level);
  // Copies name, groups with their files, flags and options.
  void CopyFrom(const CProjectTarget& other);

  int Load(CSettingsRegistry& store, TransferPass pass);
  int Save(CSettingsRegistry& store, TransferPass pass) const;

 private:
  // Full path (folded where case does not count) -> file, built on demand
  // for the directory it was built against.
  mutable std::unordered_map<std::string, CProjectFile*> file_index_;
  mutable std::string file_index_directory_;
  mutable bool file_index_valid_ = false;

  CProjectData& project_;
  std::unique_ptr<COptionSet> file_options_;
  std::unique_ptr<COptionSet> link_group_options_;
  std::unique_ptr<COptionSet> target_options_;
};

}  // namespace quillon

#endif  // QUILLON_MODEL_PROJECT_TARGET_H
