#include "cli/project_report.h"

#include "model/option_catalogue.h"
#include "model/option_fallback.h"
#include "quillon/quillon.h"

namespace quillon::qpm {
namespace {

Json FlagValue(const std::string& text) {
  int flag = 0;
  ParseFlag(text, &flag);
  return flag != 0;
}

Json TypedValue(const OptionInfo& info, const std::vector<std::string>& values) {
  switch (info.type) {
    case OptionType::kNumber: {
      int number = 0;
      ParseNumber(values.empty() ? "" : values[0], &number);
      return number;
    }
    case OptionType::kYesNo:
    case OptionType::kTrueFalse:
      return FlagValue(values.empty() ? "" : values[0]);
    case OptionType::kString:
      return values.empty() ? "" : values[0];
    case OptionType::kStringList:
      return values;
    case OptionType::kFlagList: {
      Json flags = Json::array();
      for (const std::string& value : values) flags.push_back(FlagValue(value));
      return flags;
    }
  }
  return nullptr;
}

Json OptionEntry(const OptionInfo& info, const OptionScope& scope) {
  Json entry = {{"value", TypedValue(info, GetOption(info, scope))}};
  if (info.own_key != nullptr) entry["own"] = GetOwnFlag(info, scope);
  return entry;
}

template <typename Shown>
Json OptionsAt(OptionLevel level, const OptionScope& scope, Shown shown) {
  Json options = Json::object();
  for (const OptionInfo& info : OptionCatalogue()) {
    if (info.level == level && shown(info)) options[info.key] = OptionEntry(info, scope);
  }
  return options;
}

Json OptionsAt(OptionLevel level, const OptionScope& scope) {
  return OptionsAt(level, scope,
                   [&](const OptionInfo& info) { return DiffersFromDefault(info, scope); });
}

// A file shows what sets it apart from its target: its own values, and
// values other than those the target's defaults give files of its kind.
Json FileOptions(CProjectData& project, CProjectTarget& target, CProjectFile& file) {
  OptionScope scope{&project, &target, &file};
  OptionScope target_scope{&project, &target, nullptr};
  int kind = project.ClassifyFile(file.file_name());
  return OptionsAt(OptionLevel::kFile, scope, [&](const OptionInfo& info) {
    if (GetOwnFlag(info, scope)) return true;
    return FileOptionAppliesTo(info, kind) &&
           GetOption(info, scope) != GetOption(info, target_scope);
  });
}

// File names come from the model: the export gives only display names,
// which lose the directory.
Json DescribeGroup(CProjectData& project, CProjectTarget& target, const std::string& name) {
  Json files = Json::array();
  if (CLinkGroup* group = target.FindGroup(name)) {
    for (const auto& file : group->files) {
      files.push_back(
          {{"path", file->file_name()}, {"options", FileOptions(project, target, *file)}});
    }
  }
  return {{"name", name}, {"files", std::move(files)}};
}

Json DescribeTarget(CProjectData& project, const std::string& name, bool is_default) {
  CProjectTarget* target = project.FindTarget(name);
  OptionScope scope{&project, target, nullptr};
  Json groups = Json::array();
  std::string group;
  for (int i = 0; _GetLinkGroupName(&group, i, name.c_str()) > i; ++i) {
    groups.push_back(DescribeGroup(project, *target, group));
  }
  return {{"name", name},
          {"default", is_default},
          {"options", OptionsAt(OptionLevel::kTarget, scope)},
          {"file_defaults", OptionsAt(OptionLevel::kFile, scope)},
          {"groups", std::move(groups)}};
}

}  // namespace

Json DescribeProject(CProjectData& project, const std::string& path) {
  std::string default_name;
  _GetDefaultTargetName(&default_name);
  bool has_default = project.default_target() != nullptr;
  Json targets = Json::array();
  std::string name;
  for (int i = 0; _GetTargetName(&name, i) > i; ++i) {
    targets.push_back(DescribeTarget(project, name, has_default && name == default_name));
  }
  OptionScope scope{&project, nullptr, nullptr};
  Json options = {{"global", OptionsAt(OptionLevel::kGlobal, scope)},
                  {"filter", OptionsAt(OptionLevel::kFilter, scope)}};
  return {{"schema", kReportSchema},
          {"project", path},
          {"default_target", has_default ? Json(default_name) : Json(nullptr)},
          {"options", std::move(options)},
          {"targets", std::move(targets)}};
}

}  // namespace quillon::qpm
