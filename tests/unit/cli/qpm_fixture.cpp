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
  const int code = RunQpm(args, out, err);
  return {code, out.str(), err.str()};
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
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

void QpmTest::Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

using Json = nlohmann::ordered_json;
using Strings = std::vector<std::string>;

// The `field` of each item of the list `list`.
static Strings Pluck(const Json& json, const char* list, const char* field) {
  Strings names;
  for (const auto& item : json[list]) names.push_back(item[field]);
  return names;
}
Strings TargetNames(const Json& show) { return Pluck(show, "targets", "name"); }
Strings GroupNames(const Json& target) { return Pluck(target, "groups", "name"); }
Strings FileNames(const Json& group) { return Pluck(group, "files", "path"); }

const Json& TargetNamed(const Json& show, const std::string& name) {
  for (const auto& target : show["targets"])
    if (target["name"] == name) return target;
  ADD_FAILURE() << "no target " << name;
  static const Json* none = new Json();
  return *none;
}

}  // namespace quillon::qpm
