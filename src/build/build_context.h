// The state one build shares between the make driver and the translator
// runs: the project and target being built, the options read once at the
// start, the host's output channels and the children that are running.
//
// Made on the host's thread by _Make, then used by the build thread only;
// the stop request, the make state and the running children are the parts
// the host's thread may touch while the build runs.
#ifndef QUILLON_BUILD_BUILD_CONTEXT_H
#define QUILLON_BUILD_BUILD_CONTEXT_H

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "build/build_services.h"
#include "build/macro_expansion.h"
#include "quillon/quillon.h"

namespace quillon {

class CProjectData;
class CProjectFile;
class CProjectTarget;
class Process;

// The children of a build that have not ended. Stop may come from the host's
// thread at any moment; a child started after it is ended at once.
class RunningProcesses {
 public:
  // False when a stop already came: the caller ends the child itself.
  bool Add(Process* process);
  void Remove(Process* process);
  // Ends every child and refuses new ones until Reset.
  void TerminateAll();
  void Reset();

 private:
  std::mutex mutex_;
  std::vector<Process*> running_;
  bool stopped_ = false;
};

// The two files a child's standard output and error go to.
struct CaptureFiles {
  std::string output;
  std::string error;
};

// What the host's thread may touch while a build runs; lives as long as the
// make driver, since the state outlasts a build.
struct BuildSignals {
  std::atomic<int> make_state{MakeStateIdle};
  std::atomic<bool> stop_requested{false};
  RunningProcesses running;
};

struct BuildContext {
  BuildContext(const BuildServices& services, BuildSignals& signals, CProjectData& project,
               CProjectTarget& target);

  const BuildServices& services;
  CProjectData& project;
  CProjectTarget& target;
  MacroEnvironment macros;
  // The environment the translators get on top of the inherited one.
  std::vector<std::pair<std::string, std::string>> environment;
  std::string filter_name;

  BuildSignals& signals;
  RunningProcesses& running;
  // Cleared by a failed translation or a missing output: no link then.
  bool link_allowed = true;

  bool Stopped() const { return signals.stop_requested.load(); }
  void SetState(int state) { signals.make_state.store(state); }
  int GlobalInt(int id) const;
  std::string GlobalString(int id) const;
  bool Filtering() const;

  void Print(const std::string& line) const;
  void PrintTranslatorLine(const std::string& line) const;
  void Flush() const;
  // A numbered message as a build message line.
  void Report(int number, const char* arg1 = nullptr, const char* arg2 = nullptr) const;
  void BeepForFailure() const;
};

// The working directory of a build: the project's root-directory option with
// environment references expanded, else the project's own directory; always
// absolute, with a trailing separator.
std::string BuildWorkingDirectory(const CProjectData& project);

// The pairs of the environment-settings list that are well formed: trimmed,
// split at the first "=" when it is neither the first nor the last
// character. At most 50.
std::vector<std::pair<std::string, std::string>> EnvironmentPairs(
    const std::vector<std::string>& settings);

}  // namespace quillon

#endif  // QUILLON_BUILD_BUILD_CONTEXT_H
