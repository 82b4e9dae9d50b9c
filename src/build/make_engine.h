// CMakeEngine: the build driver behind _Make, _StopMake and _WhatIsInProgress.
//
// Start() prepares a build on the caller's (host's) thread: it picks the
// files to translate and removes what must be made again, then hands the
// translation to a worker thread and returns. The worker compiles and
// assembles the files, links the target or runs an external make, and tells
// the host through the output sink and the host callback. Stop() may come
// from the host's thread at any time; state() is a plain atomic read.
//
// One build at a time: Start() while a build runs does nothing.
#ifndef QUILLON_BUILD_MAKE_ENGINE_H
#define QUILLON_BUILD_MAKE_ENGINE_H

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "build/build_context.h"
#include "build/build_services.h"
#include "build/thread.h"
#include "quillon/quillon.h"

namespace quillon {

class CProjectData;
class CProjectFile;
class CProjectTarget;
class CTranslatorInvoker;
struct TranslationJob;

class CMakeEngine {
 public:
  // The compile pass stops at the next file once this many errors count.
  static constexpr int kErrorLimit = 200;

  explicit CMakeEngine(BuildServices services);
  ~CMakeEngine();
  CMakeEngine(const CMakeEngine&) = delete;
  CMakeEngine& operator=(const CMakeEngine&) = delete;

  // Builds `target` of `project` in `mode`; `files` names the files of mode
  // 3. `jobs` above 1 lets that many compiles of the pass run at once.
  void Start(CProjectData& project, CProjectTarget& target, int mode,
             const std::vector<std::string>* files, int jobs = 1);
  void Stop();
  // Waits for the worker to end (tests, unloading, replacing the project).
  void Join();
  bool running() const { return running_.load(); }

  int state() const;
  // The final state of the last build, 0 while a build runs.
  int build_result() const { return build_result_.load(); }

 private:
  // The worker and the steps it runs; each step returns success.
  int Work();
  bool MakePass();
  bool CompileOnlyPass();
  bool CompilePass();
  // Compiles or assembles one file; `translated` tells whether its output
  // was made.
  bool TranslateFile(TranslationJob& job, bool* translated);
  bool LinkTarget(bool link_only);
  bool ExternalMake();
  void EndBuild(bool success);

  // A compile or assembly of `file`, its parameters worked out.
  TranslationJob MakeJob(CProjectFile& file, TranslatorKind kind, CaptureFiles* capture);
  // What comes before the child starts: the source's time is read and the
  // old outputs deleted; then the child is started.
  bool StartJob(TranslationJob& job);
  // The compile pass with several children at once; the host sees what the
  // sequential pass would show.
  bool ParallelCompilePass();
  bool TranslateInOrder(TranslationJob& job);
  void FilterOutput(TranslatorKind kind, const CProjectFile* file, const std::string& input);
  std::string OutputOf(const CProjectFile& file, TranslatorKind kind) const;
  // Whether the target's link inputs exist and are current; prints why not.
  bool LinkInputsReady();
  std::string TargetCaption() const;
  void WaitForNewFileTime();
  int64_t NewFileTime();

  BuildServices services_;
  std::unique_ptr<BuildContext> context_;
  std::unique_ptr<CTranslatorInvoker> invoker_;
  std::unique_ptr<CThread> worker_;
  // Kept for the life of the library, as the redirection files are.
  CaptureFiles capture_;
  std::vector<CProjectFile*> files_;
  int mode_ = 0;
  int jobs_ = 1;
  std::atomic<bool> running_{false};
  BuildSignals signals_;
  std::atomic<int> build_result_{0};
};

}  // namespace quillon

#endif  // QUILLON_BUILD_MAKE_ENGINE_H
