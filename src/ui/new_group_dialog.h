// The New Group dialog: one name, refused while the first target has a
// group of that name. Later targets are not asked: every target lists the
// same groups, and the first is the one the IDE's tree shows.
#ifndef QUILLON_UI_NEW_GROUP_DIALOG_H
#define QUILLON_UI_NEW_GROUP_DIALOG_H

#include <string>

#include "model/project_data.h"
#include "platform/ui_services.h"

namespace quillon {

class CNewGroupDialog {
 public:
  CNewGroupDialog(const CProjectData& project, UiServices& ui) : project_(project), ui_(ui) {}

  static bool OkEnabled(const std::string& typed_name);
  // False keeps the dialog open (the name is in use, or blank).
  bool Ok(const std::string& typed_name);
  // After OK, trimmed.
  const std::string& name() const { return name_; }

 private:
  const CProjectData& project_;
  UiServices& ui_;
  std::string name_;
};

}  // namespace quillon

#endif  // QUILLON_UI_NEW_GROUP_DIALOG_H
