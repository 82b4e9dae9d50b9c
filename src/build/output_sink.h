// Where the library's output lines go.
//
// The library layer adapts the host callback (OutputRecord) to this
// interface; tests record the lines. Implementations must accept calls from
// the build thread.
#ifndef QUILLON_BUILD_OUTPUT_SINK_H
#define QUILLON_BUILD_OUTPUT_SINK_H

#include <string>

namespace quillon {

class OutputSink {
 public:
  virtual ~OutputSink() = default;
  virtual void Output(int channel, int action, const std::string& text) = 0;
};

}  // namespace quillon

#endif  // QUILLON_BUILD_OUTPUT_SINK_H
