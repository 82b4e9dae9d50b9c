// The compile pass with several children at once. Only the children run
// ahead: every line, state change and error-list entry is still produced in
// list order on the build thread, so the host sees what one job would show.
#include <deque>

#include "build/make_engine.h"
#include "build/message_table.h"
#include "build/translation_job.h"
#include "model/project_data.h"

namespace quillon {

bool TranslationJob::ReportCommandFileFailure(const BuildContext& context) const {
  if (command_file_failure) {
    const CommandFileResult& failure = *command_file_failure;
    context.Report(failure.outcome == CommandFileResult::kCannotRead ? 14 : 15,
                   failure.file.c_str(), failure.system_text.c_str());
    context.BeepForFailure();
  }
  return false;
}

bool CMakeEngine::ParallelCompilePass() {
  BuildContext& context = *context_;
  // Each slot's child writes its own capture files; a slot is reused only
  // after its job's output has been shown.
  std::vector<CaptureFiles> slots(static_cast<size_t>(jobs_));
  std::deque<TranslationJob> window;
  size_t next = 0;  // the next file of the list to start
  size_t slot = 0;
  auto start_more = [&] {
    while (window.size() < slots.size() && next < files_.size()) {
      CProjectFile* file = files_[next++];
      FileKind kind = context.project.ClassifyFile(file->file_name());
      if (kind != kFileCompilerSource && kind != kFileAssemblerSource) continue;
      window.push_back(MakeJob(
          *file, kind == kFileAssemblerSource ? TranslatorAssembler : TranslatorCompiler,
          &slots[slot]));
      slot = (slot + 1) % slots.size();
      // A template batch file is one file for every compile: no overlap.
      if (IsTemplateBatchFile(window.back().executable)) return;
      StartJob(window.back());
    }
  };
  auto end_all = [&] {
    // Children started for files the pass no longer reaches are ended.
    for (TranslationJob& job : window) {
      if (job.run.process) context.running.Remove(job.run.process.get());
    }
    window.clear();
    for (const CaptureFiles& files : slots) {
      services_.fs->RemoveFile(files.output);
      services_.fs->RemoveFile(files.error);
    }
  };

  bool success = true;
  start_more();
  while (!window.empty()) {
    if (context.Stopped() || services_.messages->error_count() >= kErrorLimit) {
      success = false;
      break;
    }
    TranslationJob job = std::move(window.front());
    window.pop_front();
    if (!TranslateInOrder(job)) {
      success = false;
      break;
    }
    start_more();
  }
  end_all();
  return success;
}

}  // namespace quillon
