#include "interface/host_observer.h"

#include "build/message_table.h"
#include "interface/library_state.h"

namespace quillon {

// Status flags of a long preparation.
constexpr int kStatusBegin = 1;
constexpr int kStatusProgress = 2;
constexpr int kStatusEnd = 3;

// Error-list entries of the dependency scanner.
constexpr int kScannerKind = 3;

void HostScanObserver::Begin(const std::string& text) {
  State().Status(text.c_str(), kStatusBegin, 0);
}

void HostScanObserver::Progress(int percent) { State().Status("", kStatusProgress, percent); }

void HostScanObserver::End() { State().Status("", kStatusEnd, 100); }

void HostScanObserver::Warning(const std::string& file, int line, const std::string& text) {
  // Shown as "(line,column)": the second number comes first.
  MessageTable().FormatErrorListLine(kScannerKind, file, 1, line, CMessageTable::kWarning, text,
                                     "");
}

void HostScanObserver::DependenciesChanged() {
  State().Notify(ProjectChangeDependencies, "", "");
}

void HostOutputSink::Output(int channel, int action, const std::string& text) {
  State().Output(channel, action, text);
}

HostOutputSink& TheHostOutputSink() {
  static HostOutputSink* sink = new HostOutputSink();
  return *sink;
}

}  // namespace quillon
