// What a build needs from the world around it, handed in so that the make
// driver runs the same on the real system and on fakes in tests.
#ifndef QUILLON_BUILD_BUILD_SERVICES_H
#define QUILLON_BUILD_BUILD_SERVICES_H

#include <functional>
#include <string>

#include "build/output_sink.h"

namespace quillon {

class CDependencyScanner;
class CMessageTable;
class FileSystem;
class MessageListSink;
class ProcessRunner;
class ScanObserver;
class UiServices;

// The speaker's two tones at the end of a build.
struct Tone {
  int frequency_hz;
  int duration_ms;
};
inline constexpr Tone kSuccessTone{300, 100};
inline constexpr Tone kFailureTone{500, 150};

struct BuildServices {
  FileSystem* fs = nullptr;
  ProcessRunner* runner = nullptr;
  UiServices* ui = nullptr;
  // Build messages and translator output; called from the build thread.
  OutputSink* sink = nullptr;
  CMessageTable* messages = nullptr;
  CDependencyScanner* scanner = nullptr;
  // Also gets every entry the filters add to the error list; may be null.
  MessageListSink* diagnostics = nullptr;
  // Progress of the dependency update of a make; may be null.
  ScanObserver* scan_observer = nullptr;
  // The host callback's other codes: 0 with a BuildResultRecord when a build
  // ends, 3 before a translator opens a window of its own.
  std::function<void(int code, void* record)> host;
  // The value of an environment variable, "" when unset (COMSPEC).
  std::function<std::string(const std::string&)> environment_variable;
  // Pauses the calling thread; tests move a fake clock instead.
  std::function<void(int milliseconds)> sleep;
  // Where the redirection files of captured output are made, and $(EXEDIR).
  std::string temp_directory;
  std::string host_directory;
};

}  // namespace quillon

#endif  // QUILLON_BUILD_BUILD_SERVICES_H
