#include "filters/message_list.h"

namespace quillon {

void MessageTableSink::AddMessage(const MessageEntry& entry) {
  // The table shows its fourth argument first: "file (line,column) : ...".
  table_.FormatErrorListLine(entry.kind, entry.file, entry.column, entry.line, entry.severity,
                             entry.text, entry.code);
  if (observer_ != nullptr) {
    MessageEntry shown = entry;
    shown.file = table_.ShownFile(entry.kind, entry.file);
    observer_->AddMessage(shown);
  }
}

}  // namespace quillon
