// Numbered build messages, error-list lines and the build's error counts.
//
// One instance lives as long as the library (MessageTable()). The make
// driver runs on the build thread and the host thread reads the counts, so
// the counts and the sink pointer are atomic; the current file is touched
// only by the thread that filters translator output.
#ifndef QUILLON_BUILD_MESSAGE_TABLE_H
#define QUILLON_BUILD_MESSAGE_TABLE_H

#include <atomic>
#include <string>
#include <string_view>

#include "build/output_sink.h"
#include "quillon/quillon.h"

namespace quillon {

class CMessageTable {
 public:
  enum Severity { kError = 0, kWarning = 1, kFatal = 2 };

  CMessageTable() = default;
  CMessageTable(const CMessageTable&) = delete;
  CMessageTable& operator=(const CMessageTable&) = delete;

  // Null drops every line.
  void SetOutputSink(OutputSink* sink) { sink_.store(sink); }

  // "Error [PMn]: " and the template with "#1#".."#3#" filled in. An argument
  // is used only when every argument before it was given; placeholders of
  // missing arguments stay. Unknown numbers give "".
  std::string FormatNumbered(int number, const char* arg1 = nullptr, const char* arg2 = nullptr,
                            const char* arg3 = nullptr) const;

  // Formats and sends the message to the build channel or, without the flag,
  // to the translator channel.
  void ReportMessage(int number, const char* arg1, bool to_build_channel,
                     const char* arg2 = nullptr, const char* arg3 = nullptr);

  // Builds, counts and sends one error-list line; returns it. Numbers are
  // shown B first, as the output filters' callers expect.
  std::string FormatErrorListLine(int kind, std::string_view file, int number_a, int number_b,
                                  int severity, std::string_view text, std::string_view code);

  // The file an error-list line names: the tool's own name for a link, or
  // when it names another file than the one translated; else the project
  // file being translated.
  std::string ShownFile(int kind, std::string_view file) const;

  void SetCurrentFile(std::string file) { current_file_ = std::move(file); }
  const std::string& current_file() const { return current_file_; }

  int error_count() const { return error_count_.load(); }
  int warning_count() const { return warning_count_.load(); }
  // A translator that could not be run.
  void AddError() { ++error_count_; }
  void ResetCounts();

 private:
  void Send(int channel, const std::string& line);

  std::atomic<OutputSink*> sink_{nullptr};
  std::string current_file_;
  std::atomic<int> error_count_{0};
  std::atomic<int> warning_count_{0};
};

// The library's one table, made on first use.
CMessageTable& MessageTable();

}  // namespace quillon

#endif  // QUILLON_BUILD_MESSAGE_TABLE_H
