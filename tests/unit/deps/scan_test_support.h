// Shared pieces of the scanner tests: native paths on the fake file system
// and an observer that records what an update tells.
#ifndef QUILLON_TESTS_UNIT_DEPS_SCAN_TEST_SUPPORT_H
#define QUILLON_TESTS_UNIT_DEPS_SCAN_TEST_SUPPORT_H

#include <string>
#include <vector>

#include "deps/scan_request.h"
#include "platform/path.h"
#include "support/native_path.h"

namespace quillon {

// "p/x" as a full native path, on drive C: on Windows.
inline std::string P(const std::string& relative) { return Rooted("/" + relative); }

struct ScanWarning {
  std::string file;
  int line;
  std::string text;
  bool operator==(const ScanWarning&) const = default;
};

class RecordingObserver : public ScanObserver {
 public:
  void Begin(const std::string& text) override { events.push_back("begin " + text); }
  void Progress(int percent) override { events.push_back(std::to_string(percent)); }
  void End() override { events.push_back("end"); }
  void Warning(const std::string& file, int line, const std::string& text) override {
    warnings.push_back({file, line, text});
  }
  void DependenciesChanged() override { events.push_back("changed"); }

  std::vector<std::string> events;
  std::vector<ScanWarning> warnings;
};

}  // namespace quillon

#endif  // QUILLON_TESTS_UNIT_DEPS_SCAN_TEST_SUPPORT_H
