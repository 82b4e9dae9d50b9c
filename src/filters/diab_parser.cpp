// Diab Data / Wind River Diab: the dcc and dplus compilers, the das
// assembler (same layout) and the dld linker.
//
//   "main.c", line 9: error (dcc:1056): illegal function definition
//       text that did not fit runs on, indented
//   dld: warning: Redeclaration of tmmlGetMemHandle
//   dld:    Defined in root.o
//   DLD.EXE: error: cannot open file crt0.o
#include <memory>
#include <string>
#include <string_view>

#include "filters/parser_helpers.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

// "(dcc:1056)" after the severity word, consumed; "" without one.
std::string_view ReadToolCode(std::string_view* text) {
  std::string_view rest = SkipBlanks(*text);
  if (rest.empty() || rest.front() != '(') return {};
  const size_t close = rest.find(')');
  if (close == npos) return {};
  *text = rest.substr(close + 1);
  return rest.substr(1, close - 1);
}

// The message behind the colon that ends the head.
std::string_view AfterColon(std::string_view text) {
  text = SkipBlanks(text);
  if (!text.empty() && text.front() == ':') text.remove_prefix(1);
  return SkipBlanks(text);
}

// The linker's lines open with its name: "dld:" as it prints it,
// "DLD.EXE:" where a Windows shell shows the program file.
bool ReadLinkerPrefix(std::string_view* text) {
  for (std::string_view prefix : {std::string_view("DLD.EXE:"), std::string_view("dld:")}) {
    if (StartsWithNoCase(*text, prefix)) {
      text->remove_prefix(prefix.size());
      return true;
    }
  }
  return false;
}

// dld indents the details that belong to the message above by more than
// the one blank that follows its name; the detail is what follows.
bool ReadLinkerDetail(std::string_view text, std::string_view* detail) {
  if (!ReadLinkerPrefix(&text) || IndentOf(text) < 2) return false;
  *detail = TrimBlanks(text);
  return !detail->empty();
}

bool IsCompilerContinuation(std::string_view text) {
  return IndentOf(text) > 0 && !IsCaretLine(text) && !TrimBlanks(text).empty();
}

class CDiabParser : public TranslatorsAlike<CContinuedParser> {
 public:
  void Linker() override;

 private:
  void ParseTranslator(int kind) override;
};

void CDiabParser::ParseTranslator(int kind) {
  while (ReadLine()) {
    QuotedPlace place;
    if (!ReadQuotedPlace(line(), &place)) continue;
    std::string_view rest = place.rest;
    int severity = CMessageTable::kError;
    if (!ReadSeverityWord(&rest, &severity) || severity == kSkippedSeverity) continue;
    const std::string_view code = ReadToolCode(&rest);
    std::string text(AfterColon(rest));
    AppendContinuation(&text, IsCompilerContinuation);
    AddMessage(kind, place.file, place.line, 1, severity, text, code);
  }
}

void CDiabParser::Linker() {
  while (ReadLine()) {
    std::string_view body = line();
    std::string_view detail;
    if (!ReadLinkerPrefix(&body) || ReadLinkerDetail(line(), &detail)) continue;
    body = SkipBlanks(body);
    if (body.empty()) continue;
    int severity = CMessageTable::kError;
    std::string_view code;
    if (ReadSeverityWord(&body, &severity)) {
      if (severity == kSkippedSeverity) continue;
      code = ReadToolCode(&body);
      body = AfterColon(body);
    }
    std::string text(body);
    while (ReadLine()) {
      if (!ReadLinkerDetail(line(), &detail)) {
        PushBack();
        break;
      }
      text.append("\n").append(detail);
    }
    AddMessage(kLinkerMessage, "", 0, 0, severity, text, code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeDiabParser() { return std::make_unique<CDiabParser>(); }

}  // namespace quillon
