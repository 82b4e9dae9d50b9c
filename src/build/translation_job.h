// One compile or assembly of a project file, from the moment its command is
// known until its result has been told.
#ifndef QUILLON_BUILD_TRANSLATION_JOB_H
#define QUILLON_BUILD_TRANSLATION_JOB_H

#include <optional>
#include <string>

#include "build/build_context.h"
#include "build/translator_command.h"
#include "build/translator_invoker.h"
#include "platform/file_system.h"

namespace quillon {

class CProjectFile;

struct TranslationJob {
  CProjectFile* file = nullptr;
  TranslatorKind kind = TranslatorCompiler;
  std::string executable;
  std::string parameters;
  // The files its output is captured in.
  CaptureFiles* capture = nullptr;
  // Set once the child was started (or failed to start).
  bool started = false;
  FileTime source_time = kMissingFile;
  PendingRun run;
  // A template batch file that could not be read or written.
  std::optional<CommandFileResult> command_file_failure;

  // Tells the failure to write the batch file; the step has failed.
  bool ReportCommandFileFailure(const BuildContext& context) const;
};

}  // namespace quillon

#endif  // QUILLON_BUILD_TRANSLATION_JOB_H
