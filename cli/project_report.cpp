#include "cli/project_report.h"

#include "cli/lookup.h"
#include "interface/host_api.h"
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

// File names come from the host API: the exports give only display names,
// which lose the directory.
Json DescribeGroup(const std::string& target, const std::string& name) {
  Json files = Json::array();
  for (const host::GroupFile& file : host::FilesOfGroup(target, name)) {
    Json options = OptionsAt(OptionLevel::kFile, file.scope, [&](const OptionInfo& info) {
      return host::FileOptionStandsOut(info, file.scope);
    });
    files.push_back({{"path", file.name}, {"options", std::move(options)}});
  }
  return {{"name", name}, {"files", std::move(files)}};
}

Json DescribeTarget(const std::string& name, bool is_default) {
  OptionScope scope = host::TargetScope(&name);
  Json groups = Json::array();
  for (const std::string& group : GroupNames(name)) groups.push_back(DescribeGroup(name, group));
  return {{"name", name},
          {"default", is_default},
          {"options", OptionsAt(OptionLevel::kTarget, scope)},
          {"file_defaults", OptionsAt(OptionLevel::kFile, scope)},
          {"groups", std::move(groups)}};
}

}  // namespace

Json DescribeProject(const std::string& path) {
  std::string default_name;
  _GetDefaultTargetName(&default_name);
  const bool has_default = host::HasDefaultTarget();
  Json targets = Json::array();
  for (const std::string& name : TargetNames()) {
    targets.push_back(DescribeTarget(name, has_default && name == default_name));
  }
  OptionScope scope = host::ProjectScope();
  Json options = {{"global", OptionsAt(OptionLevel::kGlobal, scope)},
                  {"filter", OptionsAt(OptionLevel::kFilter, scope)}};
  return {{"schema", kReportSchema},
          {"project", path},
          {"default_target", has_default ? Json(default_name) : Json(nullptr)},
          {"options", std::move(options)},
          {"targets", std::move(targets)}};
}

}  // namespace quillon::qpm
