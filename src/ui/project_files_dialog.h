// The Project Files dialog: the open-file dialog with a group combo box and
// the list of that group's files beside it. Files chosen in the dialog go to
// the chosen group at once, each told to the host, as do removals; there is
// no copy to install. Called on the user-interface thread only.
#ifndef QUILLON_UI_PROJECT_FILES_DIALOG_H
#define QUILLON_UI_PROJECT_FILES_DIALOG_H

#include <string>
#include <vector>

#include "model/project_data.h"
#include "ui/dialog_host.h"

namespace quillon {

class CProjectFilesDialog {
 public:
  // `group_index` preselects a group (0 when negative or too big).
  CProjectFilesDialog(CProjectData& project, DialogHost& host, int group_index,
                      bool object_files = false);

  // "Description|pattern|..." for the file types the project knows, ending
  // in "All files (*.*)|*.*".
  std::string filter() const;

  const std::vector<std::string>& groups() const { return groups_; }
  int group_selection() const { return group_selection_; }
  void SelectGroup(int index);
  // The selected group's files as stored, without "$(IRFDIR)".
  const std::vector<std::string>& files() const { return files_; }

  // Adds `names` (relative to `folder`, or absolute) to the selected group;
  // files already in the project are skipped and the user is told. Answers
  // how many were added.
  int AddFiles(const std::string& folder, const std::vector<std::string>& names);
  // Removes the entries of files() at `indexes` from the project.
  void RemoveFiles(const std::vector<int>& indexes);

  // The name a chosen file is stored under: "$(IRFDIR)" and its path
  // relative to the project when it lies below the project's directory, else
  // its full path.
  std::string StoredName(const std::string& full_path) const;

  bool changed() const { return changed_; }

 private:
  CLinkGroup* SelectedGroup() const;
  void FillFiles();

  CProjectData& project_;
  DialogHost& host_;
  bool object_files_;
  std::vector<std::string> groups_;
  std::vector<std::string> files_;
  int group_selection_ = -1;
  bool changed_ = false;
};

}  // namespace quillon

#endif  // QUILLON_UI_PROJECT_FILES_DIALOG_H
