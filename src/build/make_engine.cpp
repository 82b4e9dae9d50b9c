#include "build/make_engine.h"

#include <algorithm>
#include <cstdio>
#include <unordered_set>

#include "build/message_table.h"
#include "build/translation_job.h"
#include "build/translator_command.h"
#include "build/translator_invoker.h"
#include "deps/up_to_date.h"
#include "filters/output_filter.h"
#include "model/project_data.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "platform/process_runner.h"
#include "platform/ui_services.h"

namespace quillon {
namespace {

// How often, and how far apart, the start of a build looks for a file time
// later than the first one it read.
constexpr int kNewFileTimeTries = 40;
constexpr int kNewFileTimePauseMs = 100;
constexpr int kObjectSecondLookMs = 200;

std::string FirstExtension(const std::string& list) {
  return std::string(TrimBlanks(std::string_view(list).substr(0, list.find(';'))));
}

const char* TitleVerb(TranslatorKind kind) {
  return kind == TranslatorAssembler ? "assembling " : "compiling ";
}

}  // namespace

CMakeEngine::CMakeEngine(BuildServices services) : services_(std::move(services)) {}

CMakeEngine::~CMakeEngine() {
  Stop();
  Join();
}

int CMakeEngine::state() const { return signals_.make_state.load(); }

void CMakeEngine::Join() {
  if (worker_) worker_->Wait();
  worker_.reset();
}

void CMakeEngine::Stop() {
  // Said first: once the child is gone the build thread ends the build, and
  // its closing lines must come after this one.
  services_.sink->Output(OutputBuildMessages, OutputAppendLine,
                         "Process terminated at user request.");
  signals_.stop_requested = true;
  signals_.make_state = MakeStateFailed;
  signals_.running.TerminateAll();
}

void CMakeEngine::Start(CProjectData& project, CProjectTarget& target, int mode,
                        const std::vector<std::string>* files, int jobs) {
  if (running_) return;
  Join();
  signals_.stop_requested = false;
  signals_.running.Reset();
  services_.sink->Output(OutputTranslatorOutput, OutputClear, "");
  services_.sink->Output(OutputBuildMessages, OutputClear, "");

  mode_ = mode;
  jobs_ = std::max(1, jobs);
  context_ = std::make_unique<BuildContext>(services_, signals_, project, target);
  invoker_ = std::make_unique<CTranslatorInvoker>(*context_, capture_);
  services_.messages->ResetCounts();
  build_result_ = 0;
  context_->SetState(MakeStateIdle);
  files_.clear();

  FileSystem& fs = *services_.fs;
  if (context_->GlobalInt(kCopyOutputFilesToTargetDir)) {
    fs.MakeDirectories(project.OutputDirectory(target));
  }
  if (!context_->GlobalInt(kExternalMake)) {
    if (target.files.empty()) {
      context_->Report(8);
      context_->BeepForFailure();
      return;
    }
    switch (mode) {
      case MakeModeMake: {
        context_->SetState(MakeStateUpdatingDependencies);
        UpToDateDecision decision(project, target, *services_.scanner, fs);
        decision.FilesToTranslate(&files_, nullptr, services_.scan_observer);
        break;
      }
      case MakeModeBuildAll:
        for (CProjectFile* file : target.files) {
          if (!project.IsExcludedFromBuild(*file)) files_.push_back(file);
        }
        fs.RemoveFile(project.OutputFile(target));
        break;
      case MakeModeCompile:
        if (files != nullptr) {
          std::unordered_set<CProjectFile*> seen;
          for (const std::string& name : *files) {
            CProjectFile* file = target.FindFile(name);
            if (file != nullptr && seen.insert(file).second) files_.push_back(file);
          }
        }
        break;
      case MakeModeLink:
        fs.RemoveFile(project.OutputFile(target));
        break;
      default:
        break;
    }
  }
  WaitForNewFileTime();
  context_->Flush();
  if (capture_.output.empty()) capture_.output = NewTemporaryName(services_.temp_directory, ".out");
  if (capture_.error.empty()) capture_.error = NewTemporaryName(services_.temp_directory, ".err");
  context_->SetState(MakeStateStarting);

  running_ = true;
  worker_ = std::make_unique<CThread>([this] { return Work(); });
  if (!worker_->Start()) {
    // No thread to be had: the build runs here, as on systems without them.
    WaitCursor wait(*services_.ui);
    worker_.reset();
    Work();
  }
}

int CMakeEngine::Work() {
  bool success = false;
  if (context_->GlobalInt(kExternalMake)) {
    success = ExternalMake();
  } else {
    switch (mode_) {
      case MakeModeMake:
      case MakeModeBuildAll: success = MakePass(); break;
      case MakeModeCompile: success = CompileOnlyPass(); break;
      case MakeModeLink: success = LinkTarget(true); break;
      default: success = true; break;
    }
  }
  EndBuild(success);
  running_ = false;
  return 0;
}

std::string CMakeEngine::TargetCaption() const {
  const std::string output = context_->project.OutputFile(context_->target);
  return NameAndExtOfFile(output) + " (Dir:" + DirOfFile(output) + ")";
}

bool CMakeEngine::MakePass() {
  const std::string caption = TargetCaption();
  invoker_->RunHook(Hook::kBeforeMake, nullptr);
  if (files_.empty() && mode_ == MakeModeMake) {
    UpToDateDecision decision(context_->project, context_->target, *services_.scanner,
                              *services_.fs);
    if (!decision.TargetMustBeLinked()) {
      context_->Print("\"" + caption + "\"  ... is up to date.");
      context_->SetState(MakeStateIdle);
      return true;
    }
  }
  bool compiled = CompilePass();
  if (context_->Stopped()) return false;
  if (compiled && context_->link_allowed) return LinkTarget(false);
  context_->SetState(MakeStateFailed);
  return false;
}

bool CMakeEngine::CompileOnlyPass() {
  bool compiled = CompilePass();
  if (context_->Stopped()) return false;
  if (compiled && context_->link_allowed && services_.messages->error_count() == 0) {
    context_->Print("Process terminated successfully.");
    context_->SetState(MakeStateIdle);
    return true;
  }
  context_->SetState(MakeStateFailed);
  return false;
}

std::string CMakeEngine::OutputOf(const CProjectFile& file, TranslatorKind kind) const {
  const CProjectData& project = context_->project;
  const int extensions = kind == TranslatorAssembler ? kAOutExtensions : kCOutExtensions;
  return project.OutputDirectory(context_->target) + NameOfFile(file.file_name()) + "." +
         FirstExtension(context_->GlobalString(extensions));
}

TranslationJob CMakeEngine::MakeJob(CProjectFile& file, TranslatorKind kind,
                                    CaptureFiles* capture) {
  TranslationJob job;
  job.file = &file;
  job.kind = kind;
  job.capture = capture;
  job.executable = invoker_->TranslatorProgram(kind);
  job.parameters = TranslatorParameters(kind, context_->project, context_->target, file,
                                        context_->macros);
  return job;
}

bool CMakeEngine::StartJob(TranslationJob& job) {
  BuildContext& context = *context_;
  FileSystem& fs = *services_.fs;
  CTranslatorInvoker invoker(context, *job.capture);
  const std::string source = context.project.FullNameOfFile(job.file->file_name());
  job.source_time = fs.Stat(source).time;
  fs.RemoveFile(OutputOf(*job.file, job.kind));
  if (job.kind == TranslatorCompiler &&
      context.project.ProducesIntermediateAssemblerFile(*job.file)) {
    fs.RemoveFile(context.project.OutputDirectory(context.target) +
                  NameOfFile(job.file->file_name()) + "." +
                  FirstExtension(context.GlobalString(kAInpExtensions)));
  }
  std::string error_file = invoker.ErrorFilePath(job.kind, job.file);
  if (!error_file.empty()) fs.RemoveFile(error_file);

  std::string executable = job.executable;
  std::string parameters = job.parameters;
  if (IsTemplateBatchFile(executable)) {
    // The template is expanded for this file into the batch file that runs.
    const std::string batch =
        CommandFilePath(context.project, context.target, kCompilerBatchFile);
    CommandFileResult written = WriteExpandedFile(
        fs, executable, batch,
        [&](std::string_view line) {
          return std::vector<std::string>{ExpandTranslatorLine(
              line, job.kind, context.project, context.target, *job.file, context.macros)};
        },
        true);
    if (!written.ok()) {
      job.command_file_failure = written;
      return false;
    }
    executable = batch;
    parameters.clear();
  }
  job.run = invoker.Start(executable, parameters, job.file, job.kind);
  job.started = true;
  return true;
}

bool CMakeEngine::CompilePass() {
  context_->Print("Compiling ...");
  context_->link_allowed = true;
  if (files_.empty()) return true;
  if (jobs_ > 1) return ParallelCompilePass();
  for (CProjectFile* file : files_) {
    if (context_->Stopped() || services_.messages->error_count() >= kErrorLimit) return false;
    FileKind kind = context_->project.ClassifyFile(file->file_name());
    if (kind != kFileCompilerSource && kind != kFileAssemblerSource) continue;
    TranslationJob job = MakeJob(
        *file, kind == kFileAssemblerSource ? TranslatorAssembler : TranslatorCompiler, &capture_);
    if (!TranslateInOrder(job)) return false;
  }
  return true;
}

// A compile, and the assembly of its intermediate file when the project asks
// for one; or an assembly. `job` may have been started already.
bool CMakeEngine::TranslateInOrder(TranslationJob& job) {
  bool translated = false;
  if (!TranslateFile(job, &translated)) return false;
  if (job.kind == TranslatorCompiler && translated &&
      context_->project.ProducesIntermediateAssemblerFile(*job.file)) {
    TranslationJob assembly = MakeJob(*job.file, TranslatorAssembler, &capture_);
    return TranslateFile(assembly, &translated);
  }
  return true;
}

namespace {

// What tells a compile from an assembly in the step that runs it.
struct StepTraits {
  int state;
  int cannot_run_message;
  int missing_output_message;
  Hook hook;
  // The compiler's object may appear a moment after the compiler ends; the
  // assembler's gets no second look.
  bool second_look;
};

StepTraits TraitsOf(TranslatorKind kind) {
  if (kind == TranslatorAssembler) {
    return {MakeStateAssembling, 2, 19, Hook::kAfterAssembler, false};
  }
  return {MakeStateCompiling, 1, 17, Hook::kAfterCompiler, true};
}

}  // namespace

bool CMakeEngine::TranslateFile(TranslationJob& job, bool* translated) {
  BuildContext& context = *context_;
  CProjectFile& file = *job.file;
  const StepTraits traits = TraitsOf(job.kind);
  context.Print(std::string(file.display_name()) +
                ParametersDisplay(context.GlobalInt(kDisplayParameters) != 0, job.executable,
                                  job.parameters));
  context.SetState(traits.state);
  const bool started = job.started || StartJob(job);
  context.Flush();
  if (!started) return job.ReportCommandFileFailure(context);
  CTranslatorInvoker invoker(context, *job.capture);
  if (!invoker.Finish(job.run)) {
    context.Report(traits.cannot_run_message, job.executable.c_str(), job.parameters.c_str());
    services_.messages->AddError();
    context.link_allowed = false;
    return false;
  }
  if (context.GlobalInt(kCopyOutputFilesToTargetDir)) invoker.MoveOutputs(job.kind, &file);
  invoker.ShowCapturedOutput(TitleVerb(job.kind) + std::string(file.display_name()) + ".", job.kind, &file);
  if (context.Filtering()) {
    FilterOutput(job.kind, &file, invoker.FilterInput(job.kind, &file));
    context.Flush();
  }
  FileSystem& fs = *services_.fs;
  const std::string output = OutputOf(file, job.kind);
  FileInfo info = fs.Stat(output);
  if (!info.exists() && traits.second_look) {
    services_.sleep(kObjectSecondLookMs);
    info = fs.Stat(output);
  }
  if (!info.exists()) {
    services_.messages->ReportMessage(traits.missing_output_message, output.c_str(), true);
    context.link_allowed = false;
    context.Flush();
    return true;
  }
  // Older than its source (a tool that keeps times), the next make would
  // translate it again.
  if (info.time < job.source_time) fs.SetFileTime(output, job.source_time);
  file.is_changed = false;
  *translated = true;
  invoker_->RunHook(traits.hook, &file);
  context.Flush();
  return true;
}

void CMakeEngine::FilterOutput(TranslatorKind kind, const CProjectFile* file,
                               const std::string& input) {
  MessageTableSink sink(*services_.messages, services_.diagnostics);
  COutputFilter filter(context_->filter_name, *services_.fs, sink, *services_.messages);
  const std::string full =
      file != nullptr ? context_->project.FullNameOfFile(file->file_name()) : std::string();
  switch (kind) {
    case TranslatorCompiler: filter.FilterCompilerOutput(full, input); break;
    case TranslatorAssembler: filter.FilterAssemblerOutput(full, input); break;
    default: filter.FilterLinkerOutput(input); break;
  }
}

bool CMakeEngine::LinkInputsReady() {
  BuildContext& context = *context_;
  UpToDateDecision decision(context.project, context.target, *services_.scanner, *services_.fs);
  std::vector<CProjectFile*> stale;
  decision.FilesToTranslate(&stale, nullptr, nullptr);
  std::unordered_set<const CProjectFile*> stale_set(stale.begin(), stale.end());
  std::vector<std::string> lines;
  for (const CProjectFile* file : context.target.files) {
    if (context.project.IsExcludedFromBuild(*file)) continue;
    std::string input = context.project.OutputFileOf(context.target, *file);
    if (input.empty()) continue;
    if (!services_.fs->FileExists(input)) {
      lines.push_back(services_.messages->FormatNumbered(22, input.c_str()));
    } else if (stale_set.count(file) != 0) {
      lines.push_back(services_.messages->FormatNumbered(21, input.c_str()));
    }
  }
  if (lines.empty()) return true;
  context.Report(12);
  for (const std::string& line : lines) context.Print(line);
  return false;
}

bool CMakeEngine::LinkTarget(bool link_only) {
  BuildContext& context = *context_;
  CProjectData& project = context.project;
  CProjectTarget& target = context.target;
  FileSystem& fs = *services_.fs;
  std::string executable = invoker_->TranslatorProgram(TranslatorLinker);
  bool crlf_misused = false;
  std::string parameters = LinkerParameters(project, target, context.macros, &crlf_misused);
  const bool can_link = !executable.empty();
  context.Print("Linking" + ParametersDisplay(context.GlobalInt(kDisplayParameters) != 0,
                                              executable, parameters));
  context.Flush();
  const std::string caption = TargetCaption();
  const std::string output = project.OutputFile(target);
  context.SetState(MakeStateLinking);
  if (!can_link || (link_only && !LinkInputsReady())) {
    context.Print("Output file \"" + output + "\" was not generated");
    context.SetState(MakeStateFailed);
    services_.messages->AddError();
    return false;
  }
  if (crlf_misused) {
    // A command line cannot carry line breaks.
    context.Report(13);
    context.SetState(MakeStateFailed);
    services_.messages->AddError();
    return false;
  }
  auto failed_file = [&](const CommandFileResult& result) {
    context.Report(result.outcome == CommandFileResult::kCannotRead ? 14 : 15,
                   result.file.c_str(), result.system_text.c_str());
    context.BeepForFailure();
    context.SetState(MakeStateFailed);
    return false;
  };
  const std::string indirection = project.IndirectionFile(target);
  if (!indirection.empty()) {
    CommandFileResult written = WriteExpandedFile(
        fs, indirection, LinkerCommandFilePath(project, target),
        [&](std::string_view line) { return ExpandLinkerLine(line, project, target, context.macros); },
        target.target_options().GetInt(kCrLfId, 0) != 0);
    if (!written.ok()) return failed_file(written);
  }
  if (IsTemplateBatchFile(executable)) {
    const std::string batch = CommandFilePath(project, target, kLinkerBatchFile);
    CommandFileResult written = WriteExpandedFile(
        fs, executable, batch,
        [&](std::string_view line) {
          return std::vector<std::string>{ExpandTargetMacros(line, project, target, context.macros)};
        },
        true);
    if (!written.ok()) return failed_file(written);
    executable = batch;
    parameters.clear();
  }
  fs.RemoveFile(output);
  if (!invoker_->Run(executable, parameters, nullptr, TranslatorLinker)) {
    context.Report(3, executable.c_str(), parameters.c_str());
    services_.messages->AddError();
    return false;
  }
  if (context.GlobalInt(kCopyOutputFilesToTargetDir) &&
      !EqualsNoCase(NormalizePath(project.OutputDirectory(target)),
                    NormalizePath(context.macros.working_directory))) {
    invoker_->MoveOutputs(TranslatorLinker, nullptr);
  }
  invoker_->ShowCapturedOutput("linking.", TranslatorLinker, nullptr);
  if (context.Filtering()) FilterOutput(TranslatorLinker, nullptr, invoker_->FilterInput(TranslatorLinker, nullptr));
  FileInfo info = fs.Stat(output);
  if (!info.exists()) {
    context.SetState(MakeStateFailed);
    context.Report(9, output.c_str());
    return true;
  }
  FileTime newest = kMissingFile;
  for (const CProjectFile* file : target.files) {
    if (project.IsExcludedFromBuild(*file)) continue;
    std::string input = project.OutputFileOf(target, *file);
    if (!input.empty()) newest = std::max(newest, fs.Stat(input).time);
  }
  if (info.time < newest) fs.SetFileTime(output, newest);
  context.SetState(MakeStateIdle);
  target.is_changed = false;
  context.Print("\"" + caption + "\"  ... was successfully generated.");
  invoker_->RunHook(Hook::kAfterLinker, nullptr);
  return true;
}

bool CMakeEngine::ExternalMake() {
  BuildContext& context = *context_;
  context.SetState(MakeStateExternalMake);
  const std::string make_file =
      MakeAbsoluteForBuild(context.GlobalString(kExternalMakeFile), context.macros);
  const std::string parameters = context.GlobalString(kExternalMakeFileParameters);
  context.Print("Running external make file (" + make_file + ")");
  NewFileTime();
  if (!invoker_->Run(make_file, parameters, nullptr, TranslatorExternalMake)) {
    context.Report(7, make_file.c_str(), parameters.c_str());
    context.SetState(MakeStateFailed);
    return false;
  }
  invoker_->ShowCapturedOutput("Running external make", TranslatorExternalMake, nullptr);
  if (context.Filtering()) {
    FilterOutput(TranslatorExternalMake, nullptr,
                 invoker_->FilterInput(TranslatorExternalMake, nullptr));
  }
  // Whether the output is current now; the must-link flag would answer no
  // for ever, and it is what a good make clears.
  const bool was_changed = context.target.is_changed;
  context.target.is_changed = false;
  UpToDateDecision decision(context.project, context.target, *services_.scanner, *services_.fs);
  if (!decision.TargetMustBeLinked()) {
    context.SetState(MakeStateIdle);
    invoker_->RunHook(Hook::kAfterLinker, nullptr);
    return true;
  }
  context.target.is_changed = was_changed;
  context.SetState(MakeStateFailed);
  return false;
}

void CMakeEngine::EndBuild(bool success) {
  BuildContext& context = *context_;
  // A step may succeed while the build failed (a link output not made).
  if (context.signals.make_state.load() == MakeStateFailed) success = false;
  if (!success) context.SetState(MakeStateFailed);
  if (context.GlobalInt(kDeleteTemporalyFiles)) {
    services_.fs->RemoveFile(capture_.output);
    services_.fs->RemoveFile(capture_.error);
    capture_ = CaptureFiles();
  }
  const int final_state = context.signals.make_state.load();
  build_result_ = final_state;
  BuildResultRecord record{final_state, mode_};
  if (services_.host) services_.host(HostBuildResult, &record);
  if (context.GlobalInt(kBeepWhenDone)) {
    const Tone tone = success ? kSuccessTone : kFailureTone;
    services_.ui->Beep(tone.frequency_hz, tone.duration_ms);
  }
  if (context.Filtering()) {
    char summary[64];
    std::snprintf(summary, sizeof summary, "%d Error(s)  %d Warning(s)",
                  services_.messages->error_count(), services_.messages->warning_count());
    context.Print(summary);
  }
  if (!success) context.Print("Process terminated.");
  context.Flush();
}

int64_t CMakeEngine::NewFileTime() {
  // The time the file system gives a file written now, in the directory the
  // translators write to.
  FileSystem& fs = *services_.fs;
  const std::string probe = NewTemporaryName(context_->macros.working_directory, ".tim");
  if (!fs.WriteFile(probe, std::string()).ok()) return kMissingFile;
  const FileTime time = fs.Stat(probe).time;
  fs.RemoveFile(probe);
  return time;
}

void CMakeEngine::WaitForNewFileTime() {
  // Files the translators write from now on must be newer than every file
  // the decision just looked at.
  const FileTime first = NewFileTime();
  if (first == kMissingFile) return;  // nothing can be written there anyway
  for (int i = 0; i < kNewFileTimeTries; ++i) {
    if (NewFileTime() > first) return;
    services_.sleep(kNewFileTimePauseMs);
  }
}

}  // namespace quillon
