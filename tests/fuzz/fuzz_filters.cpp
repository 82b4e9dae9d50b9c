// Runs every filter of the table, for compiler, assembler and linker, over
// arbitrary bytes as captured output. Beyond the sanitizers, checks that
// every entry is of the translator's kind with a known severity, and that an
// entry naming no file got the project file (or none, for the link).
#include <cstddef>
#include <cstdint>
#include <string>

#include "filters/filter_table.h"
#include "filters/output_filter.h"
#include "support/fake_file_system.h"

namespace {

using quillon::MessageEntry;

class CheckingSink : public quillon::MessageListSink {
 public:
  void Expect(int kind, const std::string& file) {
    kind_ = kind;
    file_ = file;
  }
  void AddMessage(const MessageEntry& entry) override {
    if (entry.kind != kind_) __builtin_trap();
    if (entry.severity < quillon::CMessageTable::kError ||
        entry.severity > quillon::CMessageTable::kFatal) {
      __builtin_trap();
    }
    if (entry.file.empty() && !file_.empty()) __builtin_trap();
    // The build's sink formats and counts every entry too.
    table_sink_.AddMessage(entry);
  }

  quillon::CMessageTable table;

 private:
  int kind_ = 0;
  std::string file_;
  quillon::MessageTableSink table_sink_{table};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // One file system for the process; its records of reads would grow
  // without bound, so they are dropped each time.
  static quillon::FakeFileSystem* fs = new quillon::FakeFileSystem();
  fs->ClearRecords();
  const std::string captured = "/fuzz/captured.txt";
  const std::string project_file = "/fuzz/src/main.c";
  fs->Create(captured, std::string(reinterpret_cast<const char*>(data), size));

  CheckingSink sink;
  for (const quillon::FilterDescriptor& row : quillon::FilterTable()) {
    quillon::COutputFilter filter(row.name, *fs, sink, sink.table);
    sink.Expect(quillon::kCompilerMessage, project_file);
    if (!filter.FilterCompilerOutput(project_file, captured)) __builtin_trap();
    sink.Expect(quillon::kAssemblerMessage, project_file);
    if (!filter.FilterAssemblerOutput(project_file, captured)) __builtin_trap();
    sink.Expect(quillon::kLinkerMessage, "");
    if (!filter.FilterLinkerOutput(captured)) __builtin_trap();
  }
  return 0;
}
