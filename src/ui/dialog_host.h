// What the dialogs need from the library around them: the current project
// and its working copy, the host's notifications, the dependency update,
// message boxes and the views that put each dialog on the screen.
#ifndef QUILLON_UI_DIALOG_HOST_H
#define QUILLON_UI_DIALOG_HOST_H

#include <memory>
#include <string>

#include "model/project_data.h"
#include "platform/ui_services.h"

namespace quillon {

class DialogViews;

class DialogHost {
 public:
  virtual ~DialogHost() = default;

  // Null while no project is open.
  virtual CProjectData* project() = 0;
  // Where a dialog's copy of the project lives while it runs.
  virtual std::unique_ptr<CProjectData>& working_copy() = 0;
  // Makes `replacement` the current project; the old one goes.
  virtual void Install(std::unique_ptr<CProjectData> replacement) = 0;

  // The host's notifications.
  virtual void Modified() = 0;
  virtual void OptionsChanged() = 0;
  virtual void Reloaded() = 0;
  virtual void GroupAdded(const std::string& group) = 0;
  virtual void FileAdded(const std::string& file, const std::string& group) = 0;
  virtual void FileRemoved(const std::string& file, const std::string& group) = 0;
  // The dependency update that follows a change of the default target.
  virtual void UpdateDependencies() = 0;
  // The source extensions changed, so files may now be of another kind:
  // what was scanned and decided for them no longer holds.
  virtual void FileKindsChanged() = 0;

  virtual UiServices& ui() = 0;
  virtual DialogViews& views() = 0;
};

}  // namespace quillon

#endif  // QUILLON_UI_DIALOG_HOST_H
