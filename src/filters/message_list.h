// Message-list entries as the parsers find them, and where they go: to the
// message table during a build, or into a vector for `qpm filter` and report
// writers.
#ifndef QUILLON_FILTERS_MESSAGE_LIST_H
#define QUILLON_FILTERS_MESSAGE_LIST_H

#include <string>
#include <vector>

#include "build/message_table.h"

namespace quillon {

// Who reported an entry.
enum MessageKind : int {
  kCompilerMessage = 0,
  kAssemblerMessage = 1,
  kLinkerMessage = 2,
  kScannerMessage = 3,  // the include scanner
};

struct MessageEntry {
  int kind = kCompilerMessage;
  std::string file;  // as the tool named it; "" when it named none
  int line = 0;      // 0 when the message carries no line
  int column = 0;
  int severity = CMessageTable::kError;  // kError, kWarning or kFatal
  std::string text;
  std::string code;  // the vendor's message code; often ""

  bool operator==(const MessageEntry&) const = default;
};

// Receives entries on the thread that filters (the build thread in a build).
class MessageListSink {
 public:
  virtual ~MessageListSink() = default;
  // The project file whose translator output follows ("" for the linker).
  virtual void SetCurrentFile(const std::string& /*file*/) {}
  virtual void AddMessage(const MessageEntry& entry) = 0;
};

// The build's sink: each entry becomes an error-list line of the message
// table, which counts it and sends it to the host. An observer, when given,
// gets each entry too, naming the file its line names.
class MessageTableSink : public MessageListSink {
 public:
  explicit MessageTableSink(CMessageTable& table, MessageListSink* observer = nullptr)
      : table_(table), observer_(observer) {}

  void SetCurrentFile(const std::string& file) override { table_.SetCurrentFile(file); }
  void AddMessage(const MessageEntry& entry) override;

 private:
  CMessageTable& table_;
  MessageListSink* observer_;
};

// Keeps every entry, in order.
class CollectingSink : public MessageListSink {
 public:
  void AddMessage(const MessageEntry& entry) override { entries.push_back(entry); }

  std::vector<MessageEntry> entries;
};

}  // namespace quillon

#endif  // QUILLON_FILTERS_MESSAGE_LIST_H
