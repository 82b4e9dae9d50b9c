#include "ui/link_order_dialog.h"

#include <utility>

#include "platform/path.h"

namespace quillon {
namespace {

// The new index of entry `index` of `count` moved by `delta`, or -1 when it
// cannot move that way.
int MovedIndex(int index, int count, int delta) {
  if (index < 0 || index >= count) return -1;
  const int to = delta >= 0 ? index + 1 : index - 1;
  return to >= 0 && to < count ? to : -1;
}

template <typename T>
void MoveEntry(std::vector<T>& list, int from, int to) {
  T entry = std::move(list[from]);
  list.erase(list.begin() + from);
  list.insert(list.begin() + to, std::move(entry));
}

}  // namespace

CLinkOrderDialog::CLinkOrderDialog(CProjectData& project)
    : project_(project), target_(project.default_target()) {
  if (target_ == nullptr) return;
  for (const auto& group : target_->groups) groups_.push_back(group->name);
  if (!groups_.empty()) SelectGroup(0);
}

CLinkGroup* CLinkOrderDialog::SelectedGroup() const {
  if (target_ == nullptr || group_selection_ < 0) return nullptr;
  return target_->groups[group_selection_].get();
}

void CLinkOrderDialog::FillFiles() {
  files_.clear();
  file_selection_ = -1;
  if (CLinkGroup* group = SelectedGroup()) {
    for (const auto& file : group->files) files_.push_back(NameAndExtOfFile(file->file_name()));
  }
}

void CLinkOrderDialog::SelectGroup(int index) {
  if (index < 0 || index >= static_cast<int>(groups_.size())) return;
  group_selection_ = index;
  FillFiles();
}

void CLinkOrderDialog::SelectFile(int index) {
  if (index >= 0 && index < static_cast<int>(files_.size())) file_selection_ = index;
}

void CLinkOrderDialog::MoveSelectedGroup(int delta) {
  const int to = MovedIndex(group_selection_, static_cast<int>(groups_.size()), delta);
  if (to < 0 || !project_.MoveLinkGroup(groups_[group_selection_], delta)) return;
  MoveEntry(groups_, group_selection_, to);
  group_selection_ = to;
  changed_ = true;
}

void CLinkOrderDialog::MoveSelectedFile(int delta) {
  CLinkGroup* group = SelectedGroup();
  const int to = MovedIndex(file_selection_, static_cast<int>(files_.size()), delta);
  if (group == nullptr || to < 0) return;
  const std::string stored = group->files[file_selection_]->file_name();
  if (!project_.MoveProjectFile(stored, delta)) return;
  MoveEntry(files_, file_selection_, to);
  file_selection_ = to;
  changed_ = true;
}

}  // namespace quillon
