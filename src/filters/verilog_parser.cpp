// Verilog: the elaboration or synthesis step that stands in the linker's
// place, run by Icarus Verilog (iverilog), Verilator or Yosys. Compiler and
// assembler output is not read.
//
//   bad2.v:5: error: Unknown module type: sub            (Icarus)
//   bad2.v:5:        : The port was declared here       (its continuation)
//   %Error: bad.v:6:1: syntax error, unexpected endmodule (Verilator)
//   %Warning-WIDTH: top.v:7:12: Operator ASSIGN expects 4 bits
//   bad.v:6: ERROR: syntax error, unexpected TOK_ENDMODULE (Yosys)
//   ERROR: Module `sub' referenced in module `top' is not part of the design.
#include <memory>
#include <string>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

struct Place {
  std::string_view file;
  int line = 0;
  int column = 0;  // 0 when none is printed
  std::string_view rest;
};

// "FILE:LINE[:COLUMN]:" at the head; a drive letter's colon is passed over.
bool ReadPlace(std::string_view text, Place* place) {
  // Verilator's echoed source lines are indented; file names are not.
  if (IndentOf(text) > 0) return false;
  const size_t colon = text.find(':', 2);
  if (colon == npos || TrimBlanks(text.substr(0, colon)).empty()) return false;
  std::string_view after = text.substr(colon + 1);
  Place found;
  if (!ReadNumber(&after, &found.line) || after.empty() || after.front() != ':') return false;
  after.remove_prefix(1);
  std::string_view column_text = after;
  if (ReadNumber(&column_text, &found.column) && !column_text.empty() &&
      column_text.front() == ':') {
    after = column_text.substr(1);
  } else {
    found.column = 0;
  }
  found.file = text.substr(0, colon);
  found.rest = SkipBlanks(after);
  *place = found;
  return true;
}

// Icarus's "sorry:" is a construct it cannot handle: the design fails.
bool ReadVerilogSeverity(std::string_view* text, int* severity) {
  if (StartsWithNoCase(*text, "sorry")) {
    text->remove_prefix(5);
    *severity = CMessageTable::kError;
    return true;
  }
  return ReadSeverityWord(text, severity);
}

std::string_view AfterColon(std::string_view text) {
  text = SkipBlanks(text);
  if (!text.empty() && text.front() == ':') text.remove_prefix(1);
  return SkipBlanks(text);
}

// Verilator's closing lines repeat what its messages said.
bool IsVerilatorTrailer(std::string_view text) {
  return StartsWithNoCase(text, "Exiting due to") || StartsWithNoCase(text, "Cannot continue");
}

class CVerilogParser : public COutputParser {
 public:
  void Linker() override;

 private:
  void ParseVerilatorLine();
  void ParsePlacedLine(const Place& place);
};

void CVerilogParser::Linker() {
  while (ReadLine()) {
    Place place;
    if (!line().empty() && line().front() == '%') {
      ParseVerilatorLine();
    } else if (ReadPlace(line(), &place)) {
      ParsePlacedLine(place);
    } else if (line().substr(0, 6) == "ERROR:" || line().substr(0, 8) == "Warning:") {
      // Yosys, about the design as a whole.
      std::string_view rest = line();
      int severity = CMessageTable::kError;
      ReadSeverityWord(&rest, &severity);
      AddMessage(kLinkerMessage, "", 0, 0, severity, AfterColon(rest), "");
    }
  }
}

// "%Error: ...", "%Warning-CODE: ...", "%Error-CODE: ...".
void CVerilogParser::ParseVerilatorLine() {
  const std::string_view text = line();
  const size_t colon = text.find(':');
  if (colon == npos) return;
  std::string_view word = text.substr(1, colon - 1);
  std::string_view code;
  const size_t dash = word.find('-');
  if (dash != npos) {
    code = word.substr(dash + 1);
    word = word.substr(0, dash);
  }
  int severity = CMessageTable::kError;
  if (word == "Warning") {
    severity = CMessageTable::kWarning;
  } else if (word != "Error") {
    return;
  }
  const std::string_view rest = SkipBlanks(text.substr(colon + 1));
  Place place;
  if (ReadPlace(rest, &place)) {
    const int column = place.column > 0 ? place.column : 1;
    AddMessage(kLinkerMessage, place.file, place.line, column, severity, place.rest, code);
  } else if (!IsVerilatorTrailer(rest)) {
    AddMessage(kLinkerMessage, "", 0, 0, severity, rest, code);
  }
}

// Icarus and Yosys: "FILE:LINE: [severity:] text"; a line without a
// severity word is an error ("bad.v:6: syntax error").
void CVerilogParser::ParsePlacedLine(const Place& place) {
  std::string_view rest = place.rest;
  if (rest.empty() || rest.front() == ':') return;  // a continuation on its own
  int severity = CMessageTable::kError;
  if (ReadVerilogSeverity(&rest, &severity)) {
    if (severity == kSkippedSeverity) return;
    rest = AfterColon(rest);
  }
  std::string text(rest);
  // Icarus's further lines repeat the place with an empty severity:
  // "FILE:LINE:      : text"; the place is left out of the text.
  while (ReadLine()) {
    Place next;
    if (!ReadPlace(line(), &next) || next.rest.empty() || next.rest.front() != ':') {
      PushBack();
      break;
    }
    text.append("\n").append(AfterColon(next.rest));
  }
  const int column = place.column > 0 ? place.column : 1;
  AddMessage(kLinkerMessage, place.file, place.line, column, severity, text, "");
}

}  // namespace

std::unique_ptr<COutputParser> MakeVerilogParser() { return std::make_unique<CVerilogParser>(); }

}  // namespace quillon
