#include "ui/settings/settings_pages.h"

#include "platform/path.h"

namespace quillon {
namespace {

using P = SettingsPage;
using C = FieldControl;
using M = MacroSet;

const std::vector<SettingsField>& Table() {
  static const std::vector<SettingsField> fields = {
      {P::kGeneral, "ExecutableFileName", "&Output file name:", C::kEdit, M::kNone, nullptr, false},
      {P::kGeneral, "TargetDirectory", "&Target directory:", C::kEdit, M::kDirectory, nullptr, false},
      {P::kGeneral, "CompilerDirectory", "Tool &chain directory:", C::kEdit, M::kNone, nullptr,
       false},
      {P::kGeneral, "RootDir", "&Root directory:", C::kEdit, M::kNone, nullptr, false},
      {P::kGeneral, "FilterName", "Error &Filter:", C::kFilterCombo, M::kNone, nullptr, false},
      {P::kGeneral, "CmpUseDefaultName", "Compiler: Use default error file", C::kCheckBox, M::kNone,
       nullptr, true},
      {P::kGeneral, "CmpCustomFilterName", "Compiler: Custom error file:", C::kEdit, M::kFile,
       nullptr, true},
      {P::kGeneral, "AsmUseDefaultName", "Assembler: Use default error file", C::kCheckBox,
       M::kNone, nullptr, true},
      {P::kGeneral, "AsmCustomFilterName", "Assembler: Custom error file:", C::kEdit, M::kFile,
       nullptr, true},
      {P::kGeneral, "LinkUseDefaultName", "Linker: Use default error file", C::kCheckBox, M::kNone,
       nullptr, true},
      {P::kGeneral, "LinkCustomFilterName", "Linker: Custom error file:", C::kEdit, M::kTarget,
       nullptr, true},
      {P::kGeneral, "ExternalMake", "Build with an e&xternal make", C::kCheckBox, M::kNone, nullptr,
       false},
      {P::kGeneral, "ExternalMakeFile", "&Make program:", C::kEdit, M::kNone, nullptr, false},
      {P::kGeneral, "ExternalMakeFileParameters", "Make &parameters:", C::kEdit, M::kNone, nullptr,
       false},

      {P::kCompiler, "CompilerRelPath", "&Compiler:", C::kEdit, M::kNone, nullptr, false},
      {P::kCompiler, "CompilerOptions", "&Options:", C::kEdit, M::kFile, nullptr, false},
      {P::kCompiler, "RunAssembler", "&Assemble the compiler's output", C::kCheckBox, M::kNone,
       nullptr, false},
      {P::kCompiler, "CaptureTranslatorsOutputCmp", "Ca&pture output", C::kCheckBox, M::kNone,
       nullptr, false},
      {P::kCompiler, "RunCommandInterpreterCmp", "Run through the command &interpreter",
       C::kCheckBox, M::kNone, nullptr, false},

      {P::kAssembler, "AssemblerRelPath", "&Assembler:", C::kEdit, M::kNone, nullptr, false},
      {P::kAssembler, "AssemblerOptions", "&Options:", C::kEdit, M::kFile, nullptr, false},
      {P::kAssembler, "CaptureTranslatorsOutputAsm", "Ca&pture output", C::kCheckBox, M::kNone,
       nullptr, false},
      {P::kAssembler, "RunCommandInterpreterAsm", "Run through the command &interpreter",
       C::kCheckBox, M::kNone, nullptr, false},

      {P::kLinker, "LinkerRelPath", "&Linker:", C::kEdit, M::kNone, nullptr, false},
      {P::kLinker, "LinkerOptions", "&Options:", C::kEdit, M::kTarget, nullptr, false},
      {P::kLinker, "IndirectionFile", "&Command file:", C::kEdit, M::kDirectory, nullptr, false},
      {P::kLinker, "CRLF", "One command file &line per file", C::kCheckBox, M::kNone, nullptr,
       false},
      {P::kLinker, "TranslateCharacter", "Code of the file list &separator character:", C::kNumber,
       M::kNone, nullptr, false},
      {P::kLinker, "CaptureTranslatorsOutputLnk", "Ca&pture output", C::kCheckBox, M::kNone,
       nullptr, false},
      {P::kLinker, "RunCommandInterpreterLnk", "Run through the command &interpreter",
       C::kCheckBox, M::kNone, nullptr, false},

      {P::kFileTypes, "CInpExtensions", "&C sources:", C::kEdit, M::kNone, nullptr, false},
      {P::kFileTypes, "HeaderExtension", "C &headers:", C::kEdit, M::kNone, nullptr, false},
      {P::kFileTypes, "COutExtensions", "Compiler o&utput:", C::kEdit, M::kNone, nullptr, false},
      {P::kFileTypes, "CmpAdditionalOutExt", "Further compiler outputs:", C::kEdit, M::kNone,
       nullptr, false},
      {P::kFileTypes, "AInpExtensions", "&Assembler sources:", C::kEdit, M::kNone, nullptr, false},
      {P::kFileTypes, "AHeaderExtension", "Assembler &includes:", C::kEdit, M::kNone, nullptr,
       false},
      {P::kFileTypes, "AOutExtensions", "Assembler ou&tput:", C::kEdit, M::kNone, nullptr, false},
      {P::kFileTypes, "AsmAdditionalOutExt", "Further assembler outputs:", C::kEdit, M::kNone,
       nullptr, false},
      {P::kFileTypes, "LInpExtensions", "&Linker inputs:", C::kEdit, M::kNone, nullptr, false},
      {P::kFileTypes, "LnkAdditionalOutExt", "Further linker outputs:", C::kEdit, M::kNone, nullptr,
       false},

      {P::kIncludes, "IncludePaths", "&Include paths:", C::kIncludeList, M::kNone,
       "IncludeSearchSubDirs", false},
      {P::kIncludes, "DF_Valid", "Check Assembler Includes", C::kCheckBox, M::kNone, nullptr, false},
      {P::kIncludes, "DF_Keyword", "Include Keyword", C::kEdit, M::kNone, nullptr, false},
      {P::kIncludes, "DF_ReqBlanks", "Require leading blank(s)", C::kCheckBox, M::kNone, nullptr,
       false},
      {P::kIncludes, "DF_AllowBlanks", "Allow leading blank(s)", C::kCheckBox, M::kNone, nullptr,
       false},
      {P::kIncludes, "DF_Start", "Path start char", C::kEdit, M::kNone, nullptr, false},
      {P::kIncludes, "DF_End", "Path end char", C::kEdit, M::kNone, nullptr, false},

      {P::kCustomize, "ExcludeFromMake", "&Exclude from build", C::kCheckBox, M::kNone, nullptr,
       false},
      {P::kCustomize, "EnvironmentSettings", "E&nvironment (NAME=value, one per line):",
       C::kStringList, M::kNone, nullptr, false},
      {P::kCustomize, "PathSeparator", "&Path separator:", C::kEdit, M::kNone, nullptr, false},

      {P::kAdvanced, "RunWithRelativePath", "Pass file names &relative to the project",
       C::kCheckBox, M::kNone, nullptr, false},
      {P::kAdvanced, "ChangeWorkingDirectory", "Run translators in the project's &directory",
       C::kCheckBox, M::kNone, nullptr, false},
      {P::kAdvanced, "CopyOutputFilesToTargetDir", "&Copy the linker's outputs to the target directory",
       C::kCheckBox, M::kNone, nullptr, false},
      {P::kAdvanced, "DeleteTemporalyFiles", "De&lete temporary files after a build", C::kCheckBox,
       M::kNone, nullptr, false},
      {P::kAdvanced, "DisplayParameters", "Show the &command lines", C::kCheckBox, M::kNone,
       nullptr, false},
      {P::kAdvanced, "ShowToolWindow", "Show the &tool window while building", C::kCheckBox,
       M::kNone, nullptr, false},
      {P::kAdvanced, "BeepWhenDone", "&Beep when a build ends", C::kCheckBox, M::kNone, nullptr,
       false},

      {P::kRunBeforeAfter, "RunBeforeMake", "Before &make:", C::kEdit, M::kNone, nullptr, false},
      {P::kRunBeforeAfter, "RunBeforeMakeParam", "Parameters:", C::kEdit, M::kTarget, nullptr,
       false},
      {P::kRunBeforeAfter, "RunAfterComp", "After each &compile:", C::kEdit, M::kNone, nullptr,
       false},
      {P::kRunBeforeAfter, "RunAfterCompParam", "Parameters:", C::kEdit, M::kFile, nullptr, false},
      {P::kRunBeforeAfter, "RunAfterAsm", "After each &assembly:", C::kEdit, M::kNone, nullptr,
       false},
      {P::kRunBeforeAfter, "RunAfterAsmParam", "Parameters:", C::kEdit, M::kFile, nullptr, false},
      {P::kRunBeforeAfter, "RunAfterLinker", "After the &link:", C::kEdit, M::kNone, nullptr, false},
      {P::kRunBeforeAfter, "RunAfterLinkerParam", "Parameters:", C::kEdit, M::kTarget, nullptr,
       false},
  };
  return fields;
}

}  // namespace

const char* PageTitle(SettingsPage page) {
  static const char* const kTitles[kSettingsPageCount] = {
      "General",    "Compiler",  "Assembler", "Linker",          "File Types",
      "Includes",   "Customize", "Advanced",  "Run Before/After",
  };
  return kTitles[static_cast<int>(page)];
}

const std::vector<SettingsField>& SettingsFields() { return Table(); }

std::vector<const SettingsField*> FieldsOfPage(SettingsPage page) {
  std::vector<const SettingsField*> fields;
  for (const SettingsField& field : Table()) {
    if (field.page == page) fields.push_back(&field);
  }
  return fields;
}

const SettingsField* FindField(std::string_view key) {
  for (const SettingsField& field : Table()) {
    if (EqualsNoCase(field.key, key) ||
        (field.companion != nullptr && EqualsNoCase(field.companion, key))) {
      return &field;
    }
  }
  return nullptr;
}

}  // namespace quillon
