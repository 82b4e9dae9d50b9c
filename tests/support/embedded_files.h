// Test data compiled into the test program, so that it runs the same under
// Wine and from any directory.
#ifndef QUILLON_TESTS_SUPPORT_EMBEDDED_FILES_H
#define QUILLON_TESTS_SUPPORT_EMBEDDED_FILES_H

#include <string_view>
#include <vector>

namespace quillon {

struct EmbeddedFile {
  std::string_view name;  // without its directory
  std::string_view text;
};

// tests/data/diagnostics, sorted by name.
const std::vector<EmbeddedFile>& DiagnosticSampleFiles();

}  // namespace quillon

#endif  // QUILLON_TESTS_SUPPORT_EMBEDDED_FILES_H
