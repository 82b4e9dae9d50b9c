#include "ui/settings/macro_menu.h"

#include <algorithm>

namespace quillon {
namespace {

constexpr MacroItem kFileMacros[] = {
    {"$(EDNAME)", "the file being translated, full path"},
    {"$(NOEXT)", "its name without folder and extension"},
    {"$(DIR)", "its folder"},
    {"$(OUTPUTDIR)", "the target's output folder"},
    {"$(CEXT)", "the C source extension"},
    {"$(COUTEXT)", "the compiler's output extension"},
    {"$(AEXT)", "the assembler source extension"},
    {"$(AOUTEXT)", "the assembler's output extension"},
    {"$(FILEGROUP)", "the name of the file's group"},
};

constexpr MacroItem kTargetMacros[] = {
    {"$(OUTPUTPATH)", "the target's output file, full path"},
    {"$(OUTPUTFILE)", "its name and extension"},
    {"$(OUTPUTNOEXT)", "its folder and name, without extension"},
    {"$(OUTPUTDIR)", "the target's output folder"},
    {"$(INDPATH)", "the linker's command file, full path"},
};

constexpr MacroItem kDirectoryMacros[] = {
    {"$(CMPDIR)", "the tool chain folder"},
    {"$(IRFDIR)", "the project's folder"},
    {"$(EXEDIR)", "the IDE's folder"},
};

}  // namespace

std::vector<MacroItem> MacrosFor(MacroSet set) {
  std::vector<MacroItem> items;
  if (set == MacroSet::kFile) items.assign(std::begin(kFileMacros), std::end(kFileMacros));
  if (set == MacroSet::kTarget) items.assign(std::begin(kTargetMacros), std::end(kTargetMacros));
  if (set != MacroSet::kNone) {
    items.insert(items.end(), std::begin(kDirectoryMacros), std::end(kDirectoryMacros));
  }
  return items;
}

std::string InsertMacro(std::string_view text, size_t begin, size_t end, std::string_view macro,
                        size_t* caret) {
  begin = std::min(begin, text.size());
  end = std::clamp(end, begin, text.size());
  std::string out(text.substr(0, begin));
  out += macro;
  *caret = out.size();
  out += text.substr(end);
  return out;
}

}  // namespace quillon
