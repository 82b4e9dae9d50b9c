#include "cli/report_text.h"

#include <ostream>
#include <string>

#include "cli/text_format.h"
#include "interface/host_api.h"

namespace quillon::qpm {
namespace {

// Flags in the words the store keeps them in.
std::string FlagText(const OptionInfo& info, bool flag) {
  if (info.type == OptionType::kYesNo) return flag ? "Yes" : "No";
  return flag ? "True" : "False";
}

std::string ValueText(const OptionInfo& info, const Json& value) {
  if (value.is_boolean()) return FlagText(info, value.get<bool>());
  if (value.is_number()) return std::to_string(value.get<int>());
  if (value.is_string()) return Quote(value.get<std::string>());
  std::string text = "[";
  for (size_t i = 0; i < value.size(); ++i) {
    if (i > 0) text += ", ";
    text += ValueText(info, value[i]);
  }
  return text + "]";
}

void PrintOptions(const Json& options, const std::string& indent, std::ostream& out) {
  for (const auto& [key, entry] : options.items()) {
    const OptionInfo* info = FindOption(key);
    out << indent << key << " = " << ValueText(*info, entry["value"]);
    if (entry.contains("own")) out << (entry["own"].get<bool>() ? " (own)" : " (inherited)");
    out << '\n';
  }
}

void PrintSection(const char* title, const Json& options, const std::string& indent,
                  std::ostream& out) {
  if (options.empty()) return;
  out << indent << title << ":\n";
  PrintOptions(options, indent + "  ", out);
}

void PrintTarget(const Json& target, std::ostream& out) {
  out << "\ntarget " << Quote(target["name"].get<std::string>())
      << (target["default"].get<bool>() ? " (default)" : "") << '\n';
  PrintSection("target options", target["options"], "  ", out);
  PrintSection("file defaults", target["file_defaults"], "  ", out);
  for (const Json& group : target["groups"]) {
    out << "  group " << Quote(group["name"].get<std::string>()) << '\n';
    for (const Json& file : group["files"]) {
      out << "    " << QuoteIfNeeded(file["path"].get<std::string>()) << '\n';
      PrintOptions(file["options"], "      ", out);
    }
  }
}

}  // namespace

void PrintReport(const Json& report, bool all, std::ostream& out) {
  out << "project " << QuoteIfNeeded(report["project"].get<std::string>()) << '\n';
  const Json& targets = report["targets"];
  out << "targets" << (targets.empty() ? ": none" : ":") << '\n';
  for (const Json& target : targets) {
    out << (target["default"].get<bool>() ? "  * " : "    ")
        << Quote(target["name"].get<std::string>()) << '\n';
  }
  PrintSection("global options", report["options"]["global"], "", out);
  PrintSection("filter options", report["options"]["filter"], "", out);
  bool every = all || report["default_target"].is_null();
  for (const Json& target : targets) {
    if (every || target["default"].get<bool>()) PrintTarget(target, out);
  }
}

}  // namespace quillon::qpm
