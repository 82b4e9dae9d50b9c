#include "build/translator_command.h"

#include <set>
#include <utility>

#include "platform/path.h"

namespace quillon {
namespace {

// The OS's reason from a Status message of the form "action 'path': reason".
std::string SystemText(const Status& status, const std::string& path) {
  const std::string& message = status.message();
  const std::string marker = "'" + path + "': ";
  const size_t at = message.find(marker);
  return at == std::string::npos ? message : message.substr(at + marker.size());
}

// The template's lines without their line ends; a last line without one
// still counts.
std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::string JoinItems(const std::vector<std::string>& items, bool crlf) {
  std::string out;
  for (const std::string& item : items) {
    out += item;
    if (crlf) out += kCommandFileLineEnd;
  }
  if (!crlf) out += kCommandFileLineEnd;
  return out;
}

// The name a file contributes to the link, or "" when it contributes none.
std::string LinkedName(const CProjectData& project, const CProjectTarget& target,
                       const CProjectFile& file) {
  if (project.ClassifyFile(file.file_name()) == kFileLinkerInput) {
    return project.FullNameOfFile(file.file_name());
  }
  return project.OutputFileOf(target, file);
}

// The separator positions of a repeated line, at most five.
std::vector<size_t> SeparatorPositions(std::string_view line, char separator) {
  constexpr size_t kMaxSeparators = 5;
  std::vector<size_t> positions;
  if (separator == '\0') return positions;
  for (size_t pos = line.find(separator);
       pos != std::string_view::npos && positions.size() < kMaxSeparators;
       pos = line.find(separator, pos + 1)) {
    positions.push_back(pos);
  }
  return positions;
}

}  // namespace

std::string CommandFilePath(const CProjectData& project, const CProjectTarget& target,
                            std::string_view name) {
  return AddBackslash(project.OutputDirectory(target)) + std::string(name);
}

std::string LinkerCommandFilePath(const CProjectData& project, const CProjectTarget& target) {
  const std::string template_path = project.IndirectionFile(target);
  if (template_path.empty()) return std::string();
  std::string name(kLinkerCommandFileStem);
  const std::string ext = ExtOfFile(template_path);
  if (!ext.empty()) name += "." + ext;
  return CommandFilePath(project, target, name);
}

std::string ExpandTranslatorLine(std::string_view line, TranslatorKind kind,
                                 const CProjectData& project, const CProjectTarget& target,
                                 const CProjectFile& file, const MacroEnvironment& env) {
  std::string text(line);
  if (kind == TranslatorAssembler &&
      project.ClassifyFile(file.file_name()) == kFileCompilerSource &&
      project.ProducesIntermediateAssemblerFile(file)) {
    ReplaceAll(text, "$(EDNAME)", "$(OUTPUTDIR)$(NOEXT).$(AEXT)");
  }
  return ExpandFileMacros(text, project, target, file, env);
}

std::string TranslatorParameters(TranslatorKind kind, const CProjectData& project,
                                 const CProjectTarget& target, const CProjectFile& file,
                                 const MacroEnvironment& env) {
  int id;
  switch (kind) {
    case TranslatorCompiler:
      id = kCompilerOptionsId;
      break;
    case TranslatorAssembler:
      id = kAssemblerOptionsId;
      break;
    default:
      return std::string();
  }
  const std::string options = file.options().GetString(id, 0);
  return ExpandTranslatorLine(TrimBlanks(options), kind, project, target, file, env);
}

bool IsTemplateBatchFile(std::string_view executable) {
  std::string name = ExtOfFile(TrimBlanks(executable));
  if (!name.empty() && name.back() == '"') name.pop_back();
  for (char& c : name) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return name == "BAT";
}

CommandFileResult WriteExpandedFile(
    FileSystem& fs, const std::string& template_path, const std::string& output_path,
    const std::function<std::vector<std::string>(std::string_view line)>& expand_line, bool crlf) {
  std::string contents;
  Status status = fs.ReadFile(template_path, &contents);
  if (!status.ok()) {
    return {CommandFileResult::kCannotRead, template_path, SystemText(status, template_path)};
  }
  std::string text;
  for (std::string_view line : SplitLines(contents)) text += JoinItems(expand_line(line), crlf);

  std::unique_ptr<WritableFile> file;
  status = fs.NewWritableFile(output_path, &file);
  if (status.ok()) status = file->Write(text.data(), text.size());
  if (file != nullptr) {
    Status closed = file->Close();
    if (status.ok()) status = std::move(closed);
  }
  if (!status.ok()) {
    return {CommandFileResult::kCannotCreate, output_path, SystemText(status, output_path)};
  }
  return {CommandFileResult::kOk, output_path, std::string()};
}

char RepeatedPartsSeparator(const CProjectTarget& target) {
  const int code = target.target_options().GetInt(kTranslateCharacterId, 0);
  return code > 0 && code < 256 ? static_cast<char>(code) : '\0';
}

std::vector<std::string> LinkedFileNames(const CProjectData& project,
                                         const CProjectTarget& target) {
  std::string separator = project.global_options().GetString(kPathSeparatorString, 0);
  if (separator == "\\") separator.clear();
  std::vector<std::string> names;
  // "a.c" and "a.asm" give the same object; it is linked once.
  auto path_less = [](const std::string& a, const std::string& b) {
    return ComparePaths(a, b) < 0;
  };
  std::set<std::string, decltype(path_less)> seen(path_less);
  for (const auto& group : target.groups) {
    for (const auto& file : group->files) {
      if (project.IsExcludedFromBuild(*file)) continue;
      std::string name = LinkedName(project, target, *file);
      if (name.empty()) continue;
      if (!separator.empty()) ReplaceAll(name, "\\", separator);
      name = SetQuotesOnPath(name);
      if (seen.insert(name).second) names.push_back(std::move(name));
    }
  }
  return names;
}

std::vector<std::string> ExpandRepeatedParts(std::string_view line, char separator,
                                             const CProjectData& project,
                                             const CProjectTarget& target) {
  const std::vector<size_t> at = SeparatorPositions(line, separator);
  if (at.size() < 2) return {std::string(line)};

  std::vector<std::string_view> fields;
  for (size_t i = 0; i + 1 < at.size(); ++i) {
    fields.push_back(line.substr(at[i] + 1, at[i + 1] - at[i] - 1));
  }
  const std::string_view prefix = line.substr(0, at.front());
  const std::string_view suffix = line.substr(at.back() + 1);
  const std::string_view before = fields[0];
  const std::string_view after = fields.size() >= 2 ? fields[1] : std::string_view();
  const std::string_view between = fields.size() >= 3 ? fields[2] : std::string_view();
  const std::string_view last = fields.size() >= 4 ? fields[3] : std::string_view();

  std::vector<std::string> items;
  if (!prefix.empty()) items.emplace_back(prefix);
  const std::vector<std::string> names = LinkedFileNames(project, target);
  for (size_t i = 0; i < names.size(); ++i) {
    std::string item(before);
    item += names[i];
    item += after;
    item += i + 1 < names.size() ? between : last;
    items.push_back(std::move(item));
  }
  if (!suffix.empty()) items.emplace_back(suffix);
  return items;
}

std::vector<std::string> ExpandLinkerLine(std::string_view line, const CProjectData& project,
                                          const CProjectTarget& target,
                                          const MacroEnvironment& env) {
  return ExpandRepeatedParts(ExpandTargetMacros(line, project, target, env),
                             RepeatedPartsSeparator(target), project, target);
}

std::string LinkerParameters(const CProjectData& project, const CProjectTarget& target,
                             const MacroEnvironment& env, bool* crlf_misused) {
  const std::string options = target.target_options().GetString(kLinkerOptionsId, 0);
  const std::string expanded = ExpandTargetMacros(TrimBlanks(options), project, target, env);
  const char separator = RepeatedPartsSeparator(target);
  if (crlf_misused != nullptr) {
    *crlf_misused = SeparatorPositions(expanded, separator).size() >= 2 &&
                    target.target_options().GetInt(kCrLfId, 0) != 0;
  }
  std::string out;
  for (const std::string& item : ExpandRepeatedParts(expanded, separator, project, target)) {
    const std::string_view piece = TrimBlanks(item);
    if (piece.empty()) continue;
    if (!out.empty()) out += ' ';
    out.append(piece);
  }
  return out;
}

}  // namespace quillon
