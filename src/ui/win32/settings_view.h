// The project settings sheet as Windows shows it: a property sheet of nine
// pages over one CSettingsSheet. User-interface thread only.
#ifndef QUILLON_UI_WIN32_SETTINGS_VIEW_H
#define QUILLON_UI_WIN32_SETTINGS_VIEW_H

namespace quillon {

class CSettingsSheet;

// True when the user ended the sheet with OK and the sheet agreed.
bool RunSettingsView(CSettingsSheet& sheet);

}  // namespace quillon

#endif  // QUILLON_UI_WIN32_SETTINGS_VIEW_H
