#include "qpm_fixture.h"

#include <fstream>
#include <random>
#include <sstream>

#include "cli/cli.h"

namespace quillon::qpm {

void QpmTest::SetUp() {
  std::random_device random;
  dir_ = std::filesystem::temp_directory_path() /
         ("qpm_test_" + std::to_string(random()) + std::to_string(random()));
  std::filesystem::create_directories(dir_);
  old_cwd_ = std::filesystem::current_path();
  std::filesystem::current_path(dir_);
}

void QpmTest::TearDown() {
  std::filesystem::current_path(old_cwd_);
  std::error_code ignored;
  std::filesystem::remove_all(dir_, ignored);
}

QpmResult QpmTest::Run(const std::vector<std::string>& args) {
  std::ostringstream out, err;
  QpmResult result;
  result.code = RunQpm(args, out, err);
  result.out = out.str();
  result.err = err.str();
  return result;
}

std::string QpmTest::Ok(const std::vector<std::string>& args) {
  QpmResult result = Run(args);
  std::string command;
  for (const std::string& arg : args) command += arg + " ";
  EXPECT_EQ(result.code, 0) << command << "\n" << result.err;
  return result.out;
}

nlohmann::ordered_json QpmTest::Show(const std::string& project) {
  return nlohmann::ordered_json::parse(Ok({"show", project, "--json"}));
}

void QpmTest::MakeProject() {
  for (const char* name : {"a.c", "b.c", "s.asm"}) Write(dir_ / name, "");
  Ok({"new", "p.qpj"});
  Ok({"group", "add", "p.qpj", "Startup"});
  Ok({"file", "add", "p.qpj", "Source files", "a.c", "b.c"});
  Ok({"file", "add", "p.qpj", "Startup", "s.asm"});
}

std::string QpmTest::Bytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

void QpmTest::Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> TargetNames(const nlohmann::ordered_json& show) {
  std::vector<std::string> names;
  for (const auto& target : show["targets"]) names.push_back(target["name"]);
  return names;
}

std::vector<std::string> GroupNames(const nlohmann::ordered_json& target) {
  std::vector<std::string> names;
  for (const auto& group : target["groups"]) names.push_back(group["name"]);
  return names;
}

std::vector<std::string> FileNames(const nlohmann::ordered_json& group) {
  std::vector<std::string> names;
  for (const auto& file : group["files"]) names.push_back(file["path"]);
  return names;
}

const nlohmann::ordered_json& TargetNamed(const nlohmann::ordered_json& show,
                                          const std::string& name) {
  for (const auto& target : show["targets"]) {
    if (target["name"] == name) return target;
  }
  ADD_FAILURE() << "no target " << name;
  static const nlohmann::ordered_json* none = new nlohmann::ordered_json();
  return *none;
}

}  // namespace quillon::qpm
