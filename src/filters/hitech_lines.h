// The message line of the HI-TECH tools, which Avocet's C compilers print
// too: "file line: (number) text (type)" (the driver's -E form, where older
// releases write "file: line: text" and mark only warnings), and the form
// MPLAB asks for, "Error   [number] file; line.column text".
#ifndef QUILLON_FILTERS_HITECH_LINES_H
#define QUILLON_FILTERS_HITECH_LINES_H

#include <string_view>

namespace quillon {

struct HiTechMessage {
  std::string_view file;  // "" when the message names none
  int line = 0;           // 0 when it carries none
  int column = 0;         // as printed; 0 when it prints none
  int severity = 0;       // CMessageTable's
  std::string_view code;
  std::string_view text;
};

// False when `line` is no message, or an advisory one. A line that names no
// place counts only when it ends with its type, "(warning)" or "(error)".
bool ReadHiTechLine(std::string_view line, HiTechMessage* message);

}  // namespace quillon

#endif  // QUILLON_FILTERS_HITECH_LINES_H
