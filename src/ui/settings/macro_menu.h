// The menu beside an edit field that takes macros: the macros its value is
// expanded with, each with a line saying what it becomes, and the insertion
// of the chosen one at the caret.
#ifndef QUILLON_UI_SETTINGS_MACRO_MENU_H
#define QUILLON_UI_SETTINGS_MACRO_MENU_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ui/settings/settings_pages.h"

namespace quillon {

struct MacroItem {
  const char* macro;  // "$(EDNAME)"
  const char* description;
};

// File and target expansions end with the directory macros; kNone has none.
std::vector<MacroItem> MacrosFor(MacroSet set);

// `text` with the selection [begin, end) replaced by `macro`; the caret
// goes behind it. Positions past the text are taken as its end.
std::string InsertMacro(std::string_view text, size_t begin, size_t end, std::string_view macro,
                        size_t* caret);

}  // namespace quillon

#endif  // QUILLON_UI_SETTINGS_MACRO_MENU_H
