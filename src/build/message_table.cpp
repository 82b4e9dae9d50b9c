#include "build/message_table.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "platform/path.h"

namespace quillon {
namespace {

struct MessageEntry {
  int number;
  const char* text;
};

// Sorted by number. The texts are the host's own, spelling included.
constexpr MessageEntry kMessages[] = {
    {0, "Can't open error output file \"#1#\" (#2#). Error list will not be avaible."},
    {1, "Error running compiler ... \"#1#\" with parameters \"#2#\""},
    {2, "Error running assembler ... \"#1#\" with parameters \"#2#\""},
    {3, "Error running linker ... \"#1#\" with parameters \"#2#\""},
    {4, "Error running external program ... \"#1#\""},  // after compiling
    {5, "Error running external program ... \"#1#\""},  // after assembling
    {6, "Error running external program ... \"#1#\""},  // after linking
    {7, "Error running external make file ... \"#1#\" with parameters \"#2#\""},
    {8, "There are no files in default target !"},
    {9, "Output file #1# was not generated. (not exist)"},
    {10, "Output file #1# was not generated. (output size is zero)"},
    {11, "Output file #1# is not up to date"},
    {12, "These input files for linker not exist or are not up to date!"},
    {13, "Illegal use of CR-LF in linker command line."},
    {14, "Can't open file for reading. \"#1#\" (#2#)"},
    {15, "Can't create file. \"#1#\" (#2#)"},
    {16, "Link Group \"#1#\" does not exist"},
    {17, "Output file \"#1#\" was not generated."},  // compiler output
    {18, "Output file \"#1#\" is not up to date."},  // compiler output
    {19, "Output file \"#1#\" was not generated."},  // assembler output
    {20, "Output file \"#1#\" is not up to date."},  // assembler output
    {21, "#1#: (Not up to date.)"},
    {22, "#1#: (Not exist.)"},
    {23, "Error running external program ... \"#1#\""},  // before make
};

constexpr const char* kSeverityWords[] = {"Error", "Warning", "Fatal"};

// The linker's parsers name the file themselves, even when it is empty.
constexpr int kLinkerKind = 2;

void ReplaceAll(std::string* text, std::string_view from, std::string_view to) {
  for (size_t pos = text->find(from); pos != std::string::npos;
       pos = text->find(from, pos + to.size())) {
    text->replace(pos, from.size(), to);
  }
}

const char* FindTemplate(int number) {
  const auto* end = std::end(kMessages);
  const auto* it = std::lower_bound(std::begin(kMessages), end, number,
                                    [](const MessageEntry& e, int n) { return e.number < n; });
  return (it != end && it->number == number) ? it->text : nullptr;
}

}  // namespace

std::string CMessageTable::FormatNumbered(int number, const char* arg1, const char* arg2,
                                         const char* arg3) const {
  const char* text = FindTemplate(number);
  if (text == nullptr) return {};
  char prefix[32];
  std::snprintf(prefix, sizeof prefix, "Error [PM%d]: ", number);
  std::string message = std::string(prefix) + text;
  if (arg1 == nullptr) return message;
  ReplaceAll(&message, "#1#", arg1);
  if (arg2 == nullptr) return message;
  ReplaceAll(&message, "#2#", arg2);
  if (arg3 == nullptr) return message;
  ReplaceAll(&message, "#3#", arg3);
  return message;
}

void CMessageTable::ReportMessage(int number, const char* arg1, bool to_build_channel,
                                  const char* arg2, const char* arg3) {
  Send(to_build_channel ? OutputBuildMessages : OutputTranslatorOutput,
       FormatNumbered(number, arg1, arg2, arg3));
}

std::string CMessageTable::ShownFile(int kind, std::string_view file) const {
  file = TrimBlanks(file);
  if (kind == kLinkerKind ||
      (!file.empty() && ComparePaths(NameAndExtOfFile(file), NameAndExtOfFile(current_file_)))) {
    return std::string(file);
  }
  return current_file_;
}

std::string CMessageTable::FormatErrorListLine(int kind, std::string_view file, int number_a,
                                               int number_b, int severity, std::string_view text,
                                               std::string_view code) {
  text = TrimBlanks(text);
  code = TrimBlanks(code);
  const std::string shown = ShownFile(kind, file);

  std::string word = (severity >= 0 && severity <= 2) ? kSeverityWords[severity] : "";
  if (!code.empty()) {
    word += '[';
    word += code;
    word += ']';
  }

  char numbers[64];
  std::snprintf(numbers, sizeof numbers, " (%d,%d) : ", number_b, number_a);
  std::string line = shown + numbers + word + " : ";
  line += text;

  if (severity == kError || severity == kFatal) {
    ++error_count_;
  } else {
    ++warning_count_;
  }
  Send(OutputBuildMessages, line);
  return line;
}

void CMessageTable::ResetCounts() {
  error_count_ = 0;
  warning_count_ = 0;
}

void CMessageTable::Send(int channel, const std::string& line) {
  if (OutputSink* sink = sink_.load()) sink->Output(channel, OutputAppendLine, line);
}

CMessageTable& MessageTable() {
  static CMessageTable table;
  return table;
}

}  // namespace quillon
