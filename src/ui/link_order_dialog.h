// The Select Link Order dialog: the default target's groups in link order
// and the files of the selected group, each list with an up-down control
// that moves its selected entry one place. Moves go to the model first.
#ifndef QUILLON_UI_LINK_ORDER_DIALOG_H
#define QUILLON_UI_LINK_ORDER_DIALOG_H

#include <string>
#include <vector>

#include "model/project_data.h"

namespace quillon {

class CLinkOrderDialog {
 public:
  explicit CLinkOrderDialog(CProjectData& project);

  const std::vector<std::string>& groups() const { return groups_; }
  // Name and extension of each file of the selected group.
  const std::vector<std::string>& files() const { return files_; }
  int group_selection() const { return group_selection_; }
  int file_selection() const { return file_selection_; }

  void SelectGroup(int index);
  void SelectFile(int index);
  // Delta >= 0 moves toward the end, below 0 toward the start; the
  // selection follows the entry.
  void MoveSelectedGroup(int delta);
  void MoveSelectedFile(int delta);

  bool changed() const { return changed_; }

 private:
  CLinkGroup* SelectedGroup() const;
  void FillFiles();

  CProjectData& project_;
  CProjectTarget* target_;
  std::vector<std::string> groups_;
  std::vector<std::string> files_;
  int group_selection_ = -1;
  int file_selection_ = -1;
  bool changed_ = false;
};

}  // namespace quillon

#endif  // QUILLON_UI_LINK_ORDER_DIALOG_H
