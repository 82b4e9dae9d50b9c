#include "cli/diagnostics_report.h"

#include "platform/file_system.h"
#include "platform/path.h"

namespace quillon::qpm {
namespace {

constexpr const char* kSarifSchema =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";

bool Unreserved(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         c == '-' || c == '.' || c == '_' || c == '~' || c == '/';
}

const char* SarifLevel(int severity) { return severity == 1 ? "warning" : "error"; }

}  // namespace

bool IsSarifName(std::string_view path) { return EqualsNoCase(ExtOfFile(path), "sarif"); }

bool IsDiagnosticsName(std::string_view path) {
  return IsSarifName(path) || EqualsNoCase(ExtOfFile(path), "json");
}

const char* KindName(int kind) {
  switch (kind) {
    case 0: return "compiler";
    case 1: return "assembler";
    case 2: return "linker";
    default: return "scanner";
  }
}

const char* SeverityName(int severity) {
  switch (severity) {
    case 0: return "error";
    case 1: return "warning";
    default: return "fatal";
  }
}

nlohmann::json EntryJson(const host::FilterEntry& entry) {
  return {{"kind", KindName(entry.kind)},   {"file", entry.file},
          {"line", entry.line},             {"column", entry.column},
          {"severity", SeverityName(entry.severity)},
          {"text", entry.text},             {"code", entry.code}};
}

std::string FileUri(std::string_view path, std::string_view base_dir) {
  std::string full = IsAbsolutePath(path) ? std::string(path) : AbsolutePath(base_dir, path);
  for (char& c : full) {
    if (c == '\\') c = '/';
  }
  // A drive letter keeps its colon: file:///C:/src/a.c.
  std::string uri = full.empty() || full[0] != '/' ? "file:///" : "file://";
  static const char kHex[] = "0123456789ABCDEF";
  for (size_t i = 0; i < full.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(full[i]);
    if (Unreserved(c) || (c == ':' && i == 1)) {
      uri += static_cast<char>(c);
    } else {
      uri += '%';
      uri += kHex[c >> 4];
      uri += kHex[c & 15];
    }
  }
  return uri;
}

nlohmann::json SarifLog(const std::vector<host::FilterEntry>& entries,
                        std::string_view base_dir) {
  nlohmann::json runs = nlohmann::json::array();
  for (int kind = 0; kind <= 3; ++kind) {
    nlohmann::json results = nlohmann::json::array();
    for (const host::FilterEntry& entry : entries) {
      if (entry.kind != kind) continue;
      nlohmann::json result = {{"level", SarifLevel(entry.severity)},
                               {"message", {{"text", entry.text.empty() ? "(no text)" : entry.text}}}};
      if (!entry.code.empty()) result["ruleId"] = entry.code;
      if (!entry.file.empty()) {
        nlohmann::json physical = {{"artifactLocation", {{"uri", FileUri(entry.file, base_dir)}}}};
        if (entry.line > 0) {
          physical["region"] = {{"startLine", entry.line}};
          if (entry.column > 0) physical["region"]["startColumn"] = entry.column;
        }
        result["locations"] = nlohmann::json::array({{{"physicalLocation", physical}}});
      }
      results.push_back(std::move(result));
    }
    if (results.empty()) continue;
    const std::string tool = std::string("Quillon ") + KindName(kind) + " messages";
    runs.push_back({{"tool", {{"driver", {{"name", tool}}}}}, {"results", std::move(results)}});
  }
  return {{"$schema", kSarifSchema}, {"version", "2.1.0"}, {"runs", std::move(runs)}};
}

std::string Dump(const nlohmann::json& value, int indent) {
  return value.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace);
}

Status WriteDiagnostics(const std::string& path, const std::vector<host::FilterEntry>& entries,
                        std::string_view base_dir) {
  nlohmann::json document;
  if (IsSarifName(path)) {
    document = SarifLog(entries, base_dir);
  } else if (EqualsNoCase(ExtOfFile(path), "json")) {
    document = nlohmann::json::array();
    for (const host::FilterEntry& entry : entries) document.push_back(EntryJson(entry));
  } else {
    return Status::BadData("--diagnostics wants a .sarif or .json file, not " + path);
  }
  return FileSystem::Default().WriteFileAtomically(path, Dump(document, 2) + "\n");
}

}  // namespace quillon::qpm
