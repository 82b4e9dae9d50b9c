#include "interface/host_build.h"

#include "build/build_context.h"
#include "build/translator_command.h"
#include "build/translator_invoker.h"
#include "filters/filter_table.h"
#include "filters/message_list.h"
#include "filters/output_filter.h"
#include "interface/library_state.h"
#include "platform/file_system.h"
#include "platform/path.h"

namespace quillon::host {
namespace {

std::vector<FilterEntry> ToFilterEntries(const std::vector<MessageEntry>& from) {
  std::vector<FilterEntry> entries;
  entries.reserve(from.size());
  for (const MessageEntry& entry : from) {
    entries.push_back({entry.kind, entry.file, entry.line, entry.column, entry.severity,
                       entry.text, entry.code});
  }
  return entries;
}

}  // namespace

bool BuildRunning() { return State().Engine().running(); }

void WaitForBuild() { State().Engine().Join(); }

std::vector<CompileCommand> CompileCommands() {
  std::vector<CompileCommand> commands;
  LibraryState& state = State();
  if (!state.project || state.project->default_target() == nullptr) return commands;
  CProjectData& project = *state.project;
  CProjectTarget& target = *project.default_target();
  BuildServices services;
  BuildSignals signals;
  BuildContext context(services, signals, project, target);
  CaptureFiles capture;
  CTranslatorInvoker invoker(context, capture);
  const std::string program = invoker.TranslatorProgram(TranslatorCompiler);
  for (const CProjectFile* file : target.files) {
    if (project.IsExcludedFromBuild(*file) ||
        project.ClassifyFile(file->file_name()) != kFileCompilerSource) {
      continue;
    }
    CompileCommand command;
    command.directory = invoker.RunDirectory(file);
    command.file = project.FullNameOfFile(file->file_name());
    command.command = SetQuotesOnPath(program) + " " +
                      TranslatorParameters(TranslatorCompiler, project, target, *file,
                                           context.macros);
    commands.push_back(std::move(command));
  }
  return commands;
}

void RecordDiagnostics() { State().diagnostics.Start(); }

std::vector<FilterEntry> Diagnostics() {
  WaitForBuild();
  return ToFilterEntries(State().diagnostics.entries);
}

Status RunFilter(const std::string& filter_name, int translator, const std::string& source_file,
                 const std::string& captured, std::vector<FilterEntry>* entries) {
  if (FindFilter(filter_name) == nullptr) {
    return Status::NotFound("no filter named \"" + filter_name + "\"");
  }
  FileSystem& fs = FileSystem::Default();
  std::string bytes;
  Status readable = fs.ReadFile(captured, &bytes);
  if (!readable.ok()) return readable;
  CollectingSink sink;
  CMessageTable table;
  COutputFilter filter(filter_name, fs, sink, table);
  const std::string source = source_file.empty() ? source_file : ExpandToFullPath(source_file);
  switch (translator) {
    case TranslatorCompiler: filter.FilterCompilerOutput(source, captured); break;
    case TranslatorAssembler: filter.FilterAssemblerOutput(source, captured); break;
    default: filter.FilterLinkerOutput(captured); break;
  }
  *entries = ToFilterEntries(sink.entries);
  return Status::OK();
}

}  // namespace quillon::host
