// Softools' Z180/Rabbit tools: the C compiler, the assembler and the linker.
//
//   main.c(12): Error: undefined symbol 'count'
//   main.c(30): Warning 104: conversion may lose significant digits
//   Fatal error: cannot open include file 'board.h'
//   Error: unresolved external '_init' in main.obj                (linker)
//   Fatal: cannot open library 'rabbit.lib'
//
// A message is a severity word with an optional number and a colon, behind
// an optional FILE(LINE): place.
#include <iterator>
#include <memory>
#include <string_view>

#include "filters/output_parser.h"
#include "filters/parser_helpers.h"
#include "filters/text_scan.h"
#include "platform/path.h"

namespace quillon {
namespace {

constexpr size_t npos = std::string_view::npos;

constexpr SeverityMarker kTranslatorMarkers[] = {{"Fatal error", CMessageTable::kFatal},
                                                 {"Error", CMessageTable::kError},
                                                 {"Warning", CMessageTable::kWarning}};
constexpr SeverityMarker kLinkerMarkers[] = {{"Error", CMessageTable::kError},
                                             {"Fatal", CMessageTable::kFatal},
                                             {"Warning", CMessageTable::kWarning}};

// "FILE(LINE): " at the head of `text`, cut off.
bool ReadPlace(std::string_view* text, DiagnosticLine* d) {
  const size_t close = text->find("): ");
  if (close == npos) return false;
  const size_t open = text->rfind('(', close);
  if (open == npos || open == 0 || open + 1 == close) return false;
  long long value = 0;
  for (char c : text->substr(open + 1, close - open - 1)) {
    if (!IsDigitChar(c)) return false;
    if (value < 100000000) value = value * 10 + (c - '0');
  }
  d->file = text->substr(0, open);
  d->line = static_cast<int>(value);
  text->remove_prefix(close + 3);
  return true;
}

// "SEVERITY[ NUMBER]: TEXT", the severity word one of `markers`.
template <size_t N>
bool ReadMessage(std::string_view text, const SeverityMarker (&markers)[N], DiagnosticLine* d) {
  const SeverityMarker* found = nullptr;
  for (const SeverityMarker& m : markers) {
    if (StartsWith(text, m.word)) {
      found = &m;
      break;
    }
  }
  if (found == nullptr) return false;
  text.remove_prefix(found->word.size());
  if (StartsWith(text, " ")) {
    size_t end = 1;
    while (end < text.size() && IsDigitChar(text[end])) ++end;
    if (end == 1) return false;
    d->code = text.substr(1, end - 1);
    text.remove_prefix(end);
  }
  if (!StartsWith(text, ":")) return false;
  d->severity = found->severity;
  d->text = text.substr(1);
  return true;
}

class CSoftoolsParser : public TranslatorsAlike<COutputParser> {
 public:
  void Linker() override;

 private:
  void ParseTranslator(int kind) override;
};

void CSoftoolsParser::ParseTranslator(int kind) {
  while (ReadLine()) {
    std::string_view rest = TrimBlanks(line());
    DiagnosticLine d;
    ReadPlace(&rest, &d);
    if (!ReadMessage(rest, kTranslatorMarkers, &d)) continue;
    AddMessage(kind, d.file, d.line, d.line > 0 ? 1 : 0, d.severity, d.text, d.code);
  }
}

void CSoftoolsParser::Linker() {
  while (ReadLine()) {
    DiagnosticLine d;
    if (!ReadMessage(TrimBlanks(line()), kLinkerMarkers, &d)) continue;
    AddMessage(kLinkerMessage, "", 0, 0, d.severity, d.text, d.code);
  }
}

}  // namespace

std::unique_ptr<COutputParser> MakeSoftoolsParser() { return std::make_unique<CSoftoolsParser>(); }

}  // namespace quillon
