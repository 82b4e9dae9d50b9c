// The request made from a target carries the project's settings, and the
// cheap fingerprint of them equals the one made from the full request,
// whatever form the stored names take: the cache file is refused whenever
// they differ.
#include "deps/target_scan.h"

#include <gtest/gtest.h>

#include "deps/dependency_cache_file.h"
#include "model/file_options.h"
#include "model/project_data.h"
#include "support/native_path.h"

namespace quillon {
namespace {

TEST(TargetScanTest, RequestCarriesTheSettingsAndTheCheapFingerprintEqualsTheFullOne) {
  std::unique_ptr<CProjectData> owner = CProjectData::Create();
  CProjectData& project = *owner;
  project.Initialise(0);
  project.set_project_file(Rooted("/p.d/demo.qpj"));
  CProjectTarget* target = project.AddTarget("T", "");
  project.SetDefaultTarget(target);
  project.AddLinkGroup("g");
  for (const char* name : {"main.c", " padded.C ", "$(IRFDIR)sub/x.cpp", "../up/start.ASM", "noext",
                           "lib/v.v", "inc/h.h", "sub.dir/plain"}) {
    ASSERT_TRUE(project.AddFile(name, "g")) << name;
  }
  project.global_options().include_paths().push_back({"inc", true});
  project.global_options().include_keyword() = {true, false, true, "INCLUDE", "<", ">"};
  const ScanRequest request = MakeScanRequest(project, *target);
  EXPECT_EQ(request.keywords, (KeywordIncludeRules{true, false, true, "INCLUDE", "<", ">"}));
  ASSERT_EQ(request.include_paths.size(), 1u);
  EXPECT_EQ(request.include_paths[0].directory, Rooted("/p.d/inc"));
  EXPECT_TRUE(request.include_paths[0].search_subdirs);
  const auto fingerprint = [&] { return ScanSettingsFingerprint(project, *target); };
  EXPECT_EQ(fingerprint(), ScanSettingsFingerprint(MakeScanRequest(project, *target)));

  // An excluded file leaves the request, and its extension with it.
  target->FindFile("lib/v.v")->options().SetInt(kExcludeFromMakeId, 1, Own);
  EXPECT_EQ(fingerprint(), ScanSettingsFingerprint(MakeScanRequest(project, *target)));
}

}  // namespace
}  // namespace quillon
