// The pages of the project settings sheet and the field of every option on
// them: which page, which label, which control, which macros it takes.
// Toolkit-free, so that the views and the tests share one table.
#ifndef QUILLON_UI_SETTINGS_SETTINGS_PAGES_H
#define QUILLON_UI_SETTINGS_SETTINGS_PAGES_H

#include <string_view>
#include <vector>

#include "model/option_catalogue.h"

namespace quillon {

enum class SettingsPage {
  kGeneral,
  kCompiler,
  kAssembler,
  kLinker,
  kFileTypes,
  kIncludes,
  kCustomize,
  kAdvanced,
  kRunBeforeAfter,
};
inline constexpr int kSettingsPageCount = 9;

// "General", ..., "Run Before/After".
const char* PageTitle(SettingsPage page);

enum class FieldControl {
  kCheckBox,     // a flag
  kEdit,         // a string
  kNumber,       // a decimal number
  kFilterCombo,  // one of the filter table's names
  kIncludeList,  // directories, each with its search-subdirectories flag
  kStringList,   // one string per line
};

// The macros a field's value is expanded with, for its macro menu.
enum class MacroSet { kNone, kFile, kTarget, kDirectory };

struct SettingsField {
  SettingsPage page;
  const char* key;  // in the option catalogue
  const char* label;  // '&' marks the mnemonic
  FieldControl control;
  MacroSet macros;
  // A second key edited by the same control (the include flags), or null.
  const char* companion;
  // On the General page's "Advanced" dialog (the error-file choice).
  bool in_advanced_dialog;

  const OptionInfo& option() const { return *FindOption(key); }
};

// Every field, page by page in page order; every catalogue key is the key
// or the companion of exactly one field.
const std::vector<SettingsField>& SettingsFields();
// The fields of one page, in their order on it.
std::vector<const SettingsField*> FieldsOfPage(SettingsPage page);
// The field with that key or companion (case-insensitive), or null.
const SettingsField* FindField(std::string_view key);

}  // namespace quillon

#endif  // QUILLON_UI_SETTINGS_SETTINGS_PAGES_H
