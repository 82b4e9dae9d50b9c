// The pure parts of running a translator: command-file names, the
// parameters of the compiler, assembler and linker, template batch files and
// the linker's command file with its repeated parts.
//
// Nothing here runs a process; files are written through FileSystem. Any
// thread that may read the project can call these.
#ifndef QUILLON_BUILD_TRANSLATOR_COMMAND_H
#define QUILLON_BUILD_TRANSLATOR_COMMAND_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "build/macro_expansion.h"
#include "model/project_data.h"
#include "platform/file_system.h"
#include "quillon/quillon.h"  // TranslatorKind

namespace quillon {

inline constexpr std::string_view kCompilerOptionFile = "___Cmp.opt";
// The compiler's and the assembler's template batch files both expand to it.
inline constexpr std::string_view kCompilerBatchFile = "___Cmp.bat";
inline constexpr std::string_view kAssemblerOptionFile = "___Asm.opt";
inline constexpr std::string_view kLinkerBatchFile = "___Lnk.bat";
// Followed by the extension of the linker's command-file template.
inline constexpr std::string_view kLinkerCommandFileStem = "___Lnk";

// Text files written here end their lines the host's way: cmd.exe misreads
// labels in batch files with bare LF line ends.
inline constexpr std::string_view kCommandFileLineEnd = kPathSeparator == '\\' ? "\r\n" : "\n";

// `name` in the command-file directory, which is the target's output
// directory.
std::string CommandFilePath(const CProjectData& project, const CProjectTarget& target,
                            std::string_view name);
// "___Lnk." and the template's extension in the command-file directory, what
// $(INDPATH) names; "" when the target has no indirection file. A template
// without extension gives "___Lnk": a name ending in a dot does not survive
// on Windows.
std::string LinkerCommandFilePath(const CProjectData& project, const CProjectTarget& target);

// One line of compiler or assembler option text (or of a template batch
// file) expanded for `file`. For the assembler, a compiler source that
// produces an intermediate assembler file is named by that file instead:
// $(EDNAME) becomes $(OUTPUTDIR)$(NOEXT).$(AEXT) before the file expansion.
std::string ExpandTranslatorLine(std::string_view line, TranslatorKind kind,
                                 const CProjectData& project, const CProjectTarget& target,
                                 const CProjectFile& file, const MacroEnvironment& env);

// The file's compiler or assembler option text, trimmed and expanded by
// ExpandTranslatorLine. Only those two kinds have per-file options: any
// other kind gives "".
std::string TranslatorParameters(TranslatorKind kind, const CProjectData& project,
                                 const CProjectTarget& target, const CProjectFile& file,
                                 const MacroEnvironment& env);

// Whether the translator's executable is a template batch file (extension
// "BAT" in any case); quotes around the name are allowed.
bool IsTemplateBatchFile(std::string_view executable);

// How writing an expanded command file ended. `file` names the file that
// failed; `system_text` is the OS's reason, for "Can't open file for
// reading." (message 14) or "Can't create file." (message 15).
struct CommandFileResult {
  enum Outcome { kOk, kCannotRead, kCannotCreate } outcome = kOk;
  std::string file;
  std::string system_text;
  bool ok() const { return outcome == kOk; }
};

// Reads `template_path`, expands each of its lines with `expand_line` and
// writes the result to `output_path`. With `crlf` every item is a line of its
// own; without, the items of one template line are joined with nothing
// between them into one line. A failed write counts as a failed creation.
CommandFileResult WriteExpandedFile(
    FileSystem& fs, const std::string& template_path, const std::string& output_path,
    const std::function<std::vector<std::string>(std::string_view line)>& expand_line, bool crlf);

// The target's separator of repeated parts (its TranslateCharacter), or '\0'
// when that option is no usable character.
char RepeatedPartsSeparator(const CProjectTarget& target);

// A linker line with two to five separators (looking at the first five only)
// repeated for each file to link; any other line is one item, as written.
//
//   prefix SEP field1 [SEP field2 [SEP field3 [SEP field4]]] SEP suffix
//
// The prefix and the suffix are written once, as items of their own (left
// out when empty). Each file gives one item, by the number of fields:
//   1  field1 + file                      "-o out &-l:& -Map m"
//   2  field1 + file + field2             "-L. &INPUT(&)& -o out"
//   3  as 2, field3 after every file but the last (a list separator)
//                                          "BL51 &&&, & TO out" -> "a.obj, b.obj"
//   4  as 3, field4 after the last file (a list terminator)
// The files are those of every link group in link order, without those
// excluded from the make, each output name at most once.
std::vector<std::string> ExpandRepeatedParts(std::string_view line, char separator,
                                             const CProjectData& project,
                                             const CProjectTarget& target);

// The names ExpandRepeatedParts puts in, in order: each compiler or
// assembler source's object, each linker input's full name; quoted when they
// hold a blank, backslashes turned into the PathSeparator option.
std::vector<std::string> LinkedFileNames(const CProjectData& project, const CProjectTarget& target);

// One line of the linker's option text or command-file template: target
// expansion, then repeated parts.
std::vector<std::string> ExpandLinkerLine(std::string_view line, const CProjectData& project,
                                          const CProjectTarget& target,
                                          const MacroEnvironment& env);

// The linker's option text, trimmed and expanded by ExpandLinkerLine, the
// items trimmed and joined with single blanks. `crlf_misused` (may be null)
// tells that the text has repeated parts while the target's CRLF option is
// set: a command line cannot hold line breaks ("Illegal use of CR-LF in
// linker command line.").
std::string LinkerParameters(const CProjectData& project, const CProjectTarget& target,
                             const MacroEnvironment& env, bool* crlf_misused);

}  // namespace quillon

#endif  // QUILLON_BUILD_TRANSLATOR_COMMAND_H
