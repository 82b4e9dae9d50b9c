// A filter over an in-memory file system, collecting what it finds.
#ifndef QUILLON_TESTS_UNIT_FILTERS_FILTER_TEST_SUPPORT_H
#define QUILLON_TESTS_UNIT_FILTERS_FILTER_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "filters/message_list.h"
#include "filters/output_filter.h"
#include "support/fake_file_system.h"
#include "support/native_path.h"

namespace quillon {

inline void PrintTo(const MessageEntry& e, std::ostream* os) {
  *os << "{kind " << e.kind << ", \"" << e.file << "\", line " << e.line << ", col " << e.column
      << ", severity " << e.severity << ", \"" << e.text << "\", \"" << e.code << "\"}";
}

class FilterTest : public ::testing::Test {
 protected:
  // Where a translator's output was captured.
  std::string Capture(const std::string& contents) {
    const std::string path = Rooted("/build/capture.txt");
    fs_.Create(path, contents);
    return path;
  }

  std::vector<MessageEntry> Compile(const std::string& filter, const std::string& output,
                                    const std::string& file = Rooted("/src/bad.c")) {
    COutputFilter(filter, fs_, sink_, table_).FilterCompilerOutput(file, Capture(output));
    return sink_.entries;
  }
  std::vector<MessageEntry> Assemble(const std::string& filter, const std::string& output,
                                     const std::string& file = Rooted("/src/bad.s")) {
    COutputFilter(filter, fs_, sink_, table_).FilterAssemblerOutput(file, Capture(output));
    return sink_.entries;
  }
  std::vector<MessageEntry> Link(const std::string& filter, const std::string& output) {
    COutputFilter(filter, fs_, sink_, table_).FilterLinkerOutput(Capture(output));
    return sink_.entries;
  }

  FakeFileSystem fs_;
  CollectingSink sink_;
  CMessageTable table_;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_UNIT_FILTERS_FILTER_TEST_SUPPORT_H
