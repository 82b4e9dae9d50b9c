// Runs qpm in-process in a scratch directory that is also the current
// directory, so tests use short relative names as a person would.
#ifndef QUILLON_TESTS_UNIT_CLI_QPM_FIXTURE_H
#define QUILLON_TESTS_UNIT_CLI_QPM_FIXTURE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace quillon::qpm {

struct QpmResult {
  int code = -1;
  std::string out;
  std::string err;
};

class QpmTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  QpmResult Run(const std::vector<std::string>& args);
  // Runs a command that must succeed; its output.
  std::string Ok(const std::vector<std::string>& args);
  // `qpm show --json` of the project.
  nlohmann::ordered_json Show(const std::string& project = "p.qpj");

  // p.qpj with one target "p - Debug" (default) and its group "Source
  // files" holding a.c and b.c, a second group "Startup" with s.asm.
  void MakeProject();

  static std::string Bytes(const std::filesystem::path& path);
  static void Write(const std::filesystem::path& path, const std::string& bytes);

  std::filesystem::path dir_;

 private:
  std::filesystem::path old_cwd_;
};

// Names of the targets, of a target's groups, of a group's files (stored).
std::vector<std::string> TargetNames(const nlohmann::ordered_json& show);
std::vector<std::string> GroupNames(const nlohmann::ordered_json& target);
std::vector<std::string> FileNames(const nlohmann::ordered_json& group);
const nlohmann::ordered_json& TargetNamed(const nlohmann::ordered_json& show,
                                          const std::string& name);

}  // namespace quillon::qpm

#endif  // QUILLON_TESTS_UNIT_CLI_QPM_FIXTURE_H
