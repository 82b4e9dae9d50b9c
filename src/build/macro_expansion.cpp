#include "build/macro_expansion.h"

#include <array>

#include "build/translator_command.h"
#include "platform/path.h"

namespace quillon {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string FirstEntry(std::string_view list) {
  return std::string(TrimBlanks(list.substr(0, list.find(';'))));
}

// A source-extension macro names one extension although the option may list
// several ("C;CPP"): the file's own extension when it is in the list, so that
// "$(NOEXT).$(CEXT)" names the file itself, else the first entry.
std::string SourceExtension(std::string_view list, const std::string& file_name) {
  const std::string own = ExtOfFile(file_name);
  return ExtensionInList(own, list) ? own : FirstEntry(list);
}

std::string EditedName(const CProjectData& project, const std::string& full_name,
                       const MacroEnvironment& env) {
  const CGlobalOptions& options = project.global_options();
  if (options.GetInt(kRunWithRelativePath, 0) == 0) return full_name;
  // The child runs in the file's own directory then.
  if (options.GetInt(kChangeWorkingDirectory, 0) != 0) return NameAndExtOfFile(full_name);
  return RelativePath(env.working_directory, full_name);
}

// Whether position `pos` lies inside a double-quoted part of `text`.
bool InsideQuotes(std::string_view text, size_t pos) {
  bool inside = false;
  for (size_t i = 0; i < pos; ++i) {
    if (text[i] == '"') inside = !inside;
  }
  return inside;
}

// Length of the path that starts at `from`: up to the first blank outside
// double quotes, or the end.
size_t PathLength(std::string_view text, size_t from) {
  bool inside = false;
  size_t end = from;
  for (; end < text.size(); ++end) {
    if (text[end] == '"') inside = !inside;
    if (!inside && IsBlank(text[end])) break;
  }
  return end - from;
}

std::string WithoutQuotes(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c != '"') out += c;
  }
  return out;
}

// Replaces every occurrence of `macro` by `directory`, with joining also
// taking the path written after it. A macro the user already put inside
// quotes ("$(CMPDIR)bin\cc.exe") is joined up to the closing quote and not
// quoted again.
void ExpandOneDirectoryMacro(std::string& text, std::string_view macro,
                             const std::string& directory, bool join_paths) {
  size_t pos = text.find(macro);
  while (pos != std::string::npos) {
    const size_t after = pos + macro.size();
    size_t consumed = 0;
    std::string replacement = directory;
    if (join_paths && InsideQuotes(text, pos)) {
      const size_t close = text.find('"', after);
      consumed = (close == std::string::npos ? text.size() : close) - after;
      replacement += text.substr(after, consumed);
    } else if (join_paths) {
      consumed = PathLength(text, after);
      replacement = SetQuotesOnPath(replacement + WithoutQuotes(text.substr(after, consumed)));
    }
    text.replace(pos, macro.size() + consumed, replacement);
    // Searching on after the replacement rather than from the start keeps a
    // directory that itself names the macro from expanding forever.
    pos = text.find(macro, pos + replacement.size());
  }
}

struct DirectoryMacro {
  std::string_view name;
  const std::string MacroEnvironment::*directory;
};

constexpr std::array<DirectoryMacro, 3> kDirectoryMacros = {{
    {"$(CMPDIR)", &MacroEnvironment::compiler_directory},
    {"$(IRFDIR)", &MacroEnvironment::working_directory},
    {"$(EXEDIR)", &MacroEnvironment::host_directory},
}};

}  // namespace

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  if (from.empty()) return;
  for (size_t pos = text.find(from); pos != std::string::npos;
       pos = text.find(from, pos + to.size())) {
    text.replace(pos, from.size(), to);
  }
}

std::string ExpandFileMacros(std::string_view text, const CProjectData& project,
                             const CProjectTarget& target, const CProjectFile& file,
                             const MacroEnvironment& env, std::string_view extra) {
  std::string out(text);
  if (!extra.empty()) ReplaceAll(out, "%1", extra);

  const std::string full_name = project.FullNameOfFile(file.file_name());
  const CGlobalOptions& options = project.global_options();
  ReplaceAll(out, "$(EDNAME)", SetQuotesOnPath(EditedName(project, full_name, env)));
  ReplaceAll(out, "$(NOEXT)", SetQuotesOnPath(NameOfFile(full_name)));
  ReplaceAll(out, "$(DIR)", SetQuotesOnPath(DirOfFile(full_name)));
  ReplaceAll(out, "$(OUTPUTDIR)", SetQuotesOnPath(project.OutputDirectory(target)));
  // The output extensions are single by nature; of a list the first counts,
  // as for the object names the model computes.
  ReplaceAll(out, "$(CEXT)", SourceExtension(options.GetString(kCInpExtensions, 0), full_name));
  ReplaceAll(out, "$(COUTEXT)", FirstEntry(options.GetString(kCOutExtensions, 0)));
  ReplaceAll(out, "$(AEXT)", SourceExtension(options.GetString(kAInpExtensions, 0), full_name));
  ReplaceAll(out, "$(AOUTEXT)", FirstEntry(options.GetString(kAOutExtensions, 0)));
  ReplaceAll(out, "$(FILEGROUP)", file.group != nullptr ? file.group->name : std::string());
  return ExpandDirectoryMacros(out, env, true);
}

std::string ExpandTargetMacros(std::string_view text, const CProjectData& project,
                               const CProjectTarget& target, const MacroEnvironment& env,
                               std::string_view target_string) {
  std::string out(text);
  const std::string output_path = project.OutputFile(target);
  const std::string quoted_path = SetQuotesOnPath(output_path);
  // Like the file expansion's extra argument: nothing given, "%1" stays.
  if (!target_string.empty()) ReplaceAll(out, "%1", target_string);
  ReplaceAll(out, "%2", quoted_path);
  ReplaceAll(out, "$(OUTPUTPATH)", quoted_path);
  ReplaceAll(out, "$(OUTPUTFILE)", SetQuotesOnPath(NameAndExtOfFile(output_path)));
  ReplaceAll(out, "$(OUTPUTNOEXT)", DirOfFile(output_path) + NameOfFile(output_path));
  ReplaceAll(out, "$(OUTPUTDIR)", SetQuotesOnPath(project.OutputDirectory(target)));
  ReplaceAll(out, "$(INDPATH)", LinkerCommandFilePath(project, target));
  return ExpandDirectoryMacros(out, env, true);
}

std::string ExpandDirectoryMacros(std::string_view text, const MacroEnvironment& env,
                                  bool join_paths) {
  std::string out(text);
  for (const DirectoryMacro& macro : kDirectoryMacros) {
    ExpandOneDirectoryMacro(out, macro.name, env.*macro.directory, join_paths);
  }
  return out;
}

std::string MakeAbsoluteForBuild(std::string_view path, const MacroEnvironment& env) {
  std::string_view trimmed = TrimBlanks(path);
  if (trimmed.size() >= 2 && trimmed.front() == '"' && trimmed.back() == '"') {
    trimmed = TrimBlanks(trimmed.substr(1, trimmed.size() - 2));
  }
  if (trimmed.empty() || IsAbsolutePath(trimmed)) return std::string(trimmed);
  std::string base = env.working_directory;
  for (const DirectoryMacro& macro : kDirectoryMacros) {
    if (trimmed.substr(0, macro.name.size()) != macro.name) continue;
    trimmed.remove_prefix(macro.name.size());
    // The directory is written in front of the rest, as the macro would be
    // replaced; a relative directory itself counts from the working one.
    const std::string joined = env.*macro.directory + std::string(trimmed);
    if (IsAbsolutePath(joined)) return NormalizePath(joined);
    return AbsolutePath(base, joined);
  }
  return AbsolutePath(base, trimmed);
}

std::string ParametersDisplay(bool display, std::string_view executable,
                              std::string_view parameters) {
  if (!display) return std::string();
  std::string out = " ...  with parameters  \"";
  out.append(executable);
  out += ' ';
  out.append(parameters);
  out += '"';
  return out;
}

}  // namespace quillon
