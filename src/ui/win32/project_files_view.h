// The Project Files dialog: the explorer-style open-file dialog with the
// group controls in a child template. Its own Open button, labelled "&Add",
// adds the chosen files to the chosen group and keeps the dialog open.
#ifndef QUILLON_UI_WIN32_PROJECT_FILES_VIEW_H
#define QUILLON_UI_WIN32_PROJECT_FILES_VIEW_H

#include "ui/project_files_dialog.h"

namespace quillon {

// True when the user closed it with the template's "OK".
bool RunProjectFilesView(CProjectFilesDialog& dialog);

}  // namespace quillon

#endif  // QUILLON_UI_WIN32_PROJECT_FILES_VIEW_H
