// One step of a build as child-process runs: a translator or hook program is
// started with its output captured, waited for, and what it printed shown;
// outputs it left in the working directory are moved to the target's.
//
// Build thread only, except that the children it starts are registered with
// the context so that the host's thread can end them.
#ifndef QUILLON_BUILD_TRANSLATOR_INVOKER_H
#define QUILLON_BUILD_TRANSLATOR_INVOKER_H

#include <memory>
#include <string>

#include "build/build_context.h"
#include "filters/filter_table.h"
#include "quillon/quillon.h"

namespace quillon {

class CProjectFile;
class Process;

enum class Hook { kBeforeMake, kAfterCompiler, kAfterAssembler, kAfterLinker };

// A run that has been started (or failed to start) and not yet waited for.
// Keeping the two apart lets several compiles run at once while their
// results are still told in list order.
struct PendingRun {
  TranslatorKind kind = TranslatorCompiler;
  std::unique_ptr<Process> process;
  // Set when the run could not start; printed when the run is finished.
  std::string failure;
  std::string stdout_path;  // "" when output is not captured
  PendingRun();
  PendingRun(PendingRun&&) noexcept;
  PendingRun& operator=(PendingRun&&) noexcept;
  ~PendingRun();
};

class CTranslatorInvoker {
 public:
  // `capture` names the files a run's standard output and error go to; an
  // empty name is made when one is needed and kept there.
  CTranslatorInvoker(BuildContext& context, CaptureFiles& capture)
      : context_(context), capture_(capture) {}

  // Starts `executable parameters` for `file` (null for target-level runs).
  PendingRun Start(const std::string& executable, const std::string& parameters,
                   const CProjectFile* file, TranslatorKind kind);
  // Waits for the run; prints why when it failed. An external make's output
  // is printed while it runs.
  bool Finish(PendingRun& run);
  bool Run(const std::string& executable, const std::string& parameters, const CProjectFile* file,
           TranslatorKind kind);

  // The blocks of captured output, and the translator's error file, under
  // `title`.
  void ShowCapturedOutput(const std::string& title, TranslatorKind kind, const CProjectFile* file);
  // Runs a hook program when one is set; false only when it could not run.
  bool RunHook(Hook hook, const CProjectFile* file);
  // Moves the outputs of `kind` named after `file` (or the target's output)
  // from the run's working directory into the target directory.
  bool MoveOutputs(TranslatorKind kind, const CProjectFile* file);

  // The translator program of a kind, as it is started.
  std::string TranslatorProgram(TranslatorKind kind) const;
  bool Captures(TranslatorKind kind) const;
  // The kind's error file for `file`, expanded; "" when there is none.
  std::string ErrorFile(TranslatorKind kind, const CProjectFile* file) const;
  // The error file as a full path, without quotes; "" when there is none.
  std::string ErrorFilePath(TranslatorKind kind, const CProjectFile* file) const;
  // What the output filter reads for a run of `kind`: the error file or a
  // capture file, as the filter says; "" when nothing.
  std::string FilterInput(TranslatorKind kind, const CProjectFile* file) const;
  std::string RunDirectory(const CProjectFile* file) const;

  const CaptureFiles& capture() const { return capture_; }

 private:
  ErrorSource SourceOf(TranslatorKind kind) const;
  // Erases the capture files and the error file (a full path) before a
  // run; makes new names when a kept one cannot be erased.
  bool PrepareCapture(const std::string& error_file);

  BuildContext& context_;
  CaptureFiles& capture_;
};

// A fresh name for a temporary file in `directory`.
std::string NewTemporaryName(const std::string& directory, const char* suffix);

}  // namespace quillon

#endif  // QUILLON_BUILD_TRANSLATOR_INVOKER_H
