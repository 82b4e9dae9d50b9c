#include "ui/new_group_dialog.h"

#include <utility>

#include "platform/path.h"
#include "ui/dialog_texts.h"

namespace quillon {

bool CNewGroupDialog::OkEnabled(const std::string& typed_name) {
  return !TrimBlanks(typed_name).empty();
}

bool CNewGroupDialog::Ok(const std::string& typed_name) {
  std::string name(TrimBlanks(typed_name));
  if (name.empty()) return false;
  const CProjectTarget* first = project_.first_target();
  if (first != nullptr && first->FindGroup(name) != nullptr) {
    ui_.ShowMessage(name + kGroupNameInUse, MessageBoxKind::kOk);
    return false;
  }
  name_ = std::move(name);
  return true;
}

}  // namespace quillon
