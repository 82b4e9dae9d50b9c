#include "filters/message_list.h"

namespace quillon {

void MessageTableSink::AddMessage(const MessageEntry& entry) {
  // The table shows its fourth argument first: "file (line,column) : ...".
  table_.FormatErrorListLine(entry.kind, entry.file, entry.column, entry.line, entry.severity,
                             entry.text, entry.code);
}

}  // namespace quillon
