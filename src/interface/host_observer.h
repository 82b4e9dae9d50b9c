// Tells the host what a dependency update does: progress through status
// records, unresolved includes as error-list warnings, and change code 4.
#ifndef QUILLON_INTERFACE_HOST_OBSERVER_H
#define QUILLON_INTERFACE_HOST_OBSERVER_H

#include "build/output_sink.h"
#include "deps/scan_request.h"

namespace quillon {

class HostScanObserver : public ScanObserver {
 public:
  void Begin(const std::string& text) override;
  void Progress(int percent) override;
  void End() override;
  void Warning(const std::string& file, int line, const std::string& text) override;
  void DependenciesChanged() override;
};

// Lines of the message table go to the host callback as OutputRecords.
class HostOutputSink : public OutputSink {
 public:
  void Output(int channel, int action, const std::string& text) override;
};

HostOutputSink& TheHostOutputSink();

}  // namespace quillon

#endif  // QUILLON_INTERFACE_HOST_OBSERVER_H
