// The two dialogs that the settings pages open: the list editor of the
// include paths and the environment, and the error files of the General
// page's Advanced button. User-interface thread only.
#ifndef QUILLON_UI_WIN32_SETTINGS_DIALOGS_H
#define QUILLON_UI_WIN32_SETTINGS_DIALOGS_H

#include <string>
#include <vector>

namespace quillon {

class CSettingsSheet;

// Edits `items` (and with `flags`, one check box per item); true on OK,
// which replaces both.
bool RunListEditor(const std::string& title, const std::string& hint,
                   std::vector<std::string>* items, std::vector<bool>* flags);

// The filter and the three translators' error files; OK writes them into
// the sheet's working copy.
bool RunErrorFilesDialog(CSettingsSheet& sheet);

}  // namespace quillon

#endif  // QUILLON_UI_WIN32_SETTINGS_DIALOGS_H
