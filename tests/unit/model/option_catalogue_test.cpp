// File options falling back to their target's value. Finding, parsing and
// checking values by key is what qpm's option commands test (tests/unit/cli).
#include <gtest/gtest.h>

#include "model/option_catalogue.h"
#include "model/option_fallback.h"
#include "model/project_data.h"

namespace quillon {
namespace {

class OptionCatalogueTest : public ::testing::Test {
 protected:
  OptionCatalogueTest() {
    project.Initialise(0);
    target = project.AddTarget("T", "");
    project.AddLinkGroup("g");
    project.AddFile("a.c", "g");
    project.AddFile("b.c", "g");
    project.AddFile("s.asm", "g");
  }
  CProjectFile* File(int i) { return target->files[i]; }
  std::string CompilerOptionsOf(CProjectFile* file) {
    return file->options().GetString(kCompilerOptionsId, 0);
  }

  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  CProjectTarget* target;
  const OptionInfo& compiler = *FindOption("CompilerOptions");
};

TEST_F(OptionCatalogueTest, TargetEditReachesFilesThatStillInherit) {
  File(1)->options().SetString(kCompilerOptionsId, "-own", Own);
  std::string error;
  ASSERT_TRUE(SetTargetFileOption(project, *target, compiler, {"-O2"}, &error));
  EXPECT_EQ(target->file_options().GetString(kCompilerOptionsId, 1), "1");
  EXPECT_EQ(CompilerOptionsOf(File(0)), "-O2");
  EXPECT_EQ(CompilerOptionsOf(File(1)), "-own");
  EXPECT_EQ(CompilerOptionsOf(File(2)), "$(EDNAME)");  // assembler source
  ASSERT_TRUE(
      SetTargetFileOption(project, *target, *FindOption("AssemblerOptions"), {"-g"}, &error));
  EXPECT_EQ(File(2)->options().GetString(kAssemblerOptionsId, 0), "-g");
  EXPECT_EQ(File(0)->options().GetString(kAssemblerOptionsId, 0), "$(EDNAME)");
  EXPECT_FALSE(SetTargetFileOption(project, *target, *FindOption("LinkerOptions"), {"x"}, &error));
}

TEST_F(OptionCatalogueTest, ResetsWriteTheLevelAboveDown) {
  std::string error;
  SetTargetFileOption(project, *target, compiler, {"-O2"}, &error);
  File(1)->options().SetString(kCompilerOptionsId, "-own", Own);

  ResetFilesToTarget(project, {}, {File(1)}, compiler);
  EXPECT_EQ(CompilerOptionsOf(File(1)), "-O2");
  EXPECT_EQ(File(1)->options().GetString(kCompilerOptionsId, 1), "0");
  EXPECT_TRUE(File(1)->is_changed);

  // An assembler file in the selection stops a compiler-page reset.
  File(0)->options().SetString(kCompilerOptionsId, "-x", Own);
  ResetFilesToTarget(project, {}, {File(0), File(2)}, compiler);
  EXPECT_EQ(CompilerOptionsOf(File(0)), "-x");

  ResetTargetsToDefault(project, {target}, compiler);
  EXPECT_EQ(target->file_options().GetString(kCompilerOptionsId, 0), "$(EDNAME)");
  EXPECT_EQ(target->file_options().GetString(kCompilerOptionsId, 1), "0");
  EXPECT_EQ(CompilerOptionsOf(File(0)), "-x");          // keeps its own value
  EXPECT_EQ(CompilerOptionsOf(File(1)), "$(EDNAME)");  // inherited
}

}  // namespace
}  // namespace quillon
