#include "build/translator_invoker.h"

#include <atomic>
#include <chrono>

#include "build/captured_output.h"
#include "build/macro_expansion.h"
#include "build/message_table.h"
#include "filters/filter_table.h"
#include "model/project_data.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "platform/process_runner.h"

namespace quillon {
namespace {

// How long an external make waits between looks at what it printed.
constexpr int kLiveOutputPollMs = 250;

// Texts of the end statuses that mean a run failed; any other status is a
// finished run, whatever its exit code: the translator's messages decide.
const char* EndStatusText(int status) {
  switch (status) {
    case 258: return "Timeout";
    case 259: return "Pending";
    case 260: return "Redirector not found.";
    case 261: return "Bad parameters.";
    case 262: return "Executable not found.";
    case 263: return "Can not open parameter file.";
    case 264: return "Can not redirect output.";
    case 265: return "Invalid working directory";
    default: return "";
  }
}

struct HookKeys {
  int program;
  int parameters;
  TranslatorKind kind;
  int message;
  bool file_level;
};

HookKeys KeysOf(Hook hook) {
  switch (hook) {
    case Hook::kBeforeMake: return {kRunBeforeMake, kRunBeforeMakeParam, TranslatorLinker, 23, false};
    case Hook::kAfterCompiler: return {kRunAfterComp, kRunAfterCompParam, TranslatorCompiler, 4, true};
    case Hook::kAfterAssembler: return {kRunAfterAsm, kRunAfterAsmParam, TranslatorAssembler, 5, true};
    case Hook::kAfterLinker: break;
  }
  return {kRunAfterLinker, kRunAfterLinkerParam, TranslatorLinker, 6, false};
}

int CaptureOption(TranslatorKind kind) {
  switch (kind) {
    case TranslatorAssembler: return kCaptureTranslatorsOutputAsm;
    case TranslatorCompiler: return kCaptureTranslatorsOutputCmp;
    default: return kCaptureTranslatorsOutputLnk;
  }
}

int InterpreterOption(TranslatorKind kind) {
  switch (kind) {
    case TranslatorAssembler: return kRunCommandInterpreterAsm;
    case TranslatorCompiler: return kRunCommandInterpreterCmp;
    default: return kRunCommandInterpreterLnk;
  }
}

// The output extensions of a kind, as one ";" list.
std::string OutputExtensions(const BuildContext& context, TranslatorKind kind) {
  switch (kind) {
    case TranslatorCompiler:
      return context.GlobalString(kCOutExtensions) + ";" +
             context.GlobalString(kCmpAdditionalOutExt);
    case TranslatorAssembler:
      return context.GlobalString(kAOutExtensions) + ";" +
             context.GlobalString(kAsmAdditionalOutExt);
    default:
      return ExtOfFile(context.project.OutputFile(context.target)) + ";" +
             context.GlobalString(kLnkAdditionalOutExt);
  }
}

}  // namespace

PendingRun::PendingRun() = default;
PendingRun::PendingRun(PendingRun&&) noexcept = default;
PendingRun& PendingRun::operator=(PendingRun&&) noexcept = default;
PendingRun::~PendingRun() = default;

std::string NewTemporaryName(const std::string& directory, const char* suffix) {
  static std::atomic<unsigned> counter{0};
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const long long stamp =
      std::chrono::duration_cast<std::chrono::microseconds>(now).count() % 100000000;
  return AddBackslash(directory) + "qpm" + std::to_string(stamp) + "-" +
         std::to_string(counter.fetch_add(1)) + suffix;
}

std::string CTranslatorInvoker::TranslatorProgram(TranslatorKind kind) const {
  int id = kind == TranslatorCompiler    ? kCompilerRelPath
           : kind == TranslatorAssembler ? kAssemblerRelPath
                                         : kLinkerRelPath;
  std::string program(TrimBlanks(context_.GlobalString(id)));
  // A bare name without a compiler directory is looked up on the PATH.
  if (program.empty() || IsAbsolutePath(program)) return program;
  if (context_.macros.compiler_directory.empty()) return program;
  return context_.macros.compiler_directory + program;
}

bool CTranslatorInvoker::Captures(TranslatorKind kind) const {
  return context_.GlobalInt(CaptureOption(kind)) != 0;
}

ErrorSource CTranslatorInvoker::SourceOf(TranslatorKind kind) const {
  const FilterDescriptor* row = FindFilter(context_.filter_name);
  if (row == nullptr) return ErrorSource();
  return ChooseErrorSource(*row, kind, context_.project.target_set().filter_selection);
}

std::string CTranslatorInvoker::ErrorFile(TranslatorKind kind, const CProjectFile* file) const {
  const ErrorSource source = SourceOf(kind);
  if (!source.has_error_file()) return std::string();
  if (file != nullptr) {
    return ExpandFileMacros(source.error_file, context_.project, context_.target, *file,
                            context_.macros);
  }
  return ExpandTargetMacros(source.error_file, context_.project, context_.target, context_.macros);
}

std::string CTranslatorInvoker::ErrorFilePath(TranslatorKind kind, const CProjectFile* file) const {
  std::string name = ErrorFile(kind, file);
  if (name.size() >= 2 && name.front() == '"' && name.back() == '"') {
    name = name.substr(1, name.size() - 2);
  }
  // A relative error file is where the translator ran.
  if (name.empty() || IsAbsolutePath(name)) return name;
  return AbsolutePath(RunDirectory(file), name);
}

std::string CTranslatorInvoker::FilterInput(TranslatorKind kind, const CProjectFile* file) const {
  switch (SourceOf(kind).source) {
    case kSourceStdout: return Captures(kind) ? capture_.output : std::string();
    case kSourceStderr: return Captures(kind) ? capture_.error : std::string();
    case kSourceErrorFile: return ErrorFilePath(kind, file);
    default: return std::string();
  }
}

std::string CTranslatorInvoker::RunDirectory(const CProjectFile* file) const {
  if (file != nullptr && context_.GlobalInt(kChangeWorkingDirectory)) {
    return DirOfFile(context_.project.FullNameOfFile(file->file_name()));
  }
  return context_.macros.working_directory;
}

bool CTranslatorInvoker::PrepareCapture(const std::string& error_file) {
  FileSystem& fs = *context_.services.fs;
  const std::string& temp = context_.services.temp_directory;
  for (std::string* name : {&capture_.output, &capture_.error}) {
    if (name->empty() || !fs.RemoveFile(*name).ok()) {
      *name = NewTemporaryName(temp, name == &capture_.output ? ".out" : ".err");
    }
  }
  bool erased = fs.RemoveFile(capture_.output).ok() && fs.RemoveFile(capture_.error).ok();
  if (erased && !error_file.empty()) erased = fs.RemoveFile(error_file).ok();
  return erased;
}

PendingRun CTranslatorInvoker::Start(const std::string& executable, const std::string& parameters,
                                     const CProjectFile* file, TranslatorKind kind) {
  PendingRun run;
  run.kind = kind;
  const bool capture = Captures(kind);
  if (capture && !PrepareCapture(ErrorFilePath(kind, file))) {
    run.failure = "Can not create redirection files.";
    return run;
  }
  ProcessSpec launch;
  launch.command = SetQuotesOnPath(executable) + " " + parameters;
  if (context_.GlobalInt(InterpreterOption(kind)) && GetOSInfo()) {
    launch.interpreter = context_.services.environment_variable("COMSPEC");
    if (launch.interpreter.empty()) launch.interpreter = DefaultCommandInterpreter();
  }
  launch.working_directory = RunDirectory(file);
  if (!context_.services.fs->DirectoryExists(launch.working_directory)) {
    run.failure = "Invalid working directory";
    return run;
  }
  launch.environment = context_.environment;
  if (capture) {
    launch.stdout_path = capture_.output;
    launch.stderr_path = capture_.error;
    run.stdout_path = capture_.output;
  }
  if (context_.GlobalInt(kShowToolWindow)) {
    launch.own_window = true;
    ProcessWindowRecord record{0};
    if (context_.services.host) context_.services.host(HostProcessWindow, &record);
  }
  Status started = context_.services.runner->Start(launch, &run.process);
  if (!started.ok()) {
    run.failure = started.message();
    return run;
  }
  if (!context_.running.Add(run.process.get())) run.process->Terminate();
  return run;
}

bool CTranslatorInvoker::Finish(PendingRun& run) {
  if (!run.process) {
    context_.Print(run.failure);
    return false;
  }
  int status;
  if (run.kind == TranslatorExternalMake) {
    LiveLineReader live(*context_.services.fs, run.stdout_path);
    auto print = [&](const std::string& line) { context_.Print(line); };
    while ((status = run.process->Wait(kLiveOutputPollMs)) == kProcessStillRunning) {
      if (!run.stdout_path.empty()) live.Poll(print);
    }
    if (!run.stdout_path.empty()) live.Poll(print);
  } else {
    status = run.process->Wait(-1);
  }
  context_.running.Remove(run.process.get());
  run.process.reset();
  // A child ended by a stop has not done its work, whatever it returned.
  if (context_.Stopped()) return false;
  std::string text = EndStatusText(status);
  if (!text.empty()) {
    context_.Print(text);
    return false;
  }
  return true;
}

bool CTranslatorInvoker::Run(const std::string& executable, const std::string& parameters,
                             const CProjectFile* file, TranslatorKind kind) {
  PendingRun run = Start(executable, parameters, file, kind);
  return Finish(run);
}

void CTranslatorInvoker::ShowCapturedOutput(const std::string& title, TranslatorKind kind,
                                            const CProjectFile* file) {
  FileSystem& fs = *context_.services.fs;
  auto print = [&](const std::string& line) { context_.PrintTranslatorLine(line); };
  const std::string tail = " ---------------";
  if (Captures(kind)) {
    PrintCapturedFile(fs, "--------------- Standard OUTPUT from " + title + tail, capture_.output,
                      print);
    PrintCapturedFile(fs, "--------------- Standard ERROR from " + title + tail, capture_.error,
                      print);
  }
  std::string error_file = ErrorFile(kind, file);
  if (!error_file.empty()) {
    PrintCapturedFile(fs, "--------------- Content of file " + error_file + tail,
                      ErrorFilePath(kind, file), print);
  }
}

bool CTranslatorInvoker::RunHook(Hook hook, const CProjectFile* file) {
  const HookKeys keys = KeysOf(hook);
  std::string program(TrimBlanks(context_.GlobalString(keys.program)));
  if (program.empty()) return true;
  program = MakeAbsoluteForBuild(program, context_.macros);
  const std::string raw = context_.GlobalString(keys.parameters);
  const CProjectFile* run_file = keys.file_level ? file : nullptr;
  std::string parameters =
      run_file != nullptr
          ? ExpandFileMacros(raw, context_.project, context_.target, *run_file, context_.macros)
          : ExpandTargetMacros(raw, context_.project, context_.target, context_.macros);
  context_.Print("Running ... \"" + program + "\"" +
                 ParametersDisplay(context_.GlobalInt(kDisplayParameters) != 0, program,
                                   parameters));
  if (!Run(program, parameters, run_file, keys.kind)) {
    context_.Report(keys.message, program.c_str());
    return false;
  }
  context_.Print("OK.");
  if (context_.GlobalInt(kCopyOutputFilesToTargetDir) &&
      !context_.macros.working_directory.empty()) {
    MoveOutputs(keys.kind, run_file);
  }
  ShowCapturedOutput("running " + program + ".", keys.kind, run_file);
  return true;
}

bool CTranslatorInvoker::MoveOutputs(TranslatorKind kind, const CProjectFile* file) {
  FileSystem& fs = *context_.services.fs;
  const std::string from = AddBackslash(RunDirectory(file));
  const std::string to = context_.project.OutputDirectory(context_.target);
  if (EqualsNoCase(NormalizePath(from), NormalizePath(AddBackslash(to)))) return false;
  const std::string stem = file != nullptr
                               ? NameOfFile(file->file_name())
                               : NameOfFile(context_.project.OutputFile(context_.target));
  const std::string extensions = OutputExtensions(context_, kind);
  std::vector<DirEntry> entries;
  if (!fs.ListDirectory(from, &entries).ok()) return false;
  bool moved = false;
  for (const DirEntry& entry : entries) {
    if (entry.is_directory || NameOfFile(entry.name) != stem) continue;
    if (!ExtensionInList(ExtOfFile(entry.name), extensions)) continue;
    const std::string target_path = to + entry.name;
    fs.RemoveFile(target_path);
    if (fs.RenameFile(from + entry.name, target_path).ok()) moved = true;
  }
  return moved;
}

}  // namespace quillon
