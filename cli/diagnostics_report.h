// The error list of a build or a filter run as JSON or SARIF, for tools
// beyond the IDE: code-scanning services, SARIF viewers, scripts.
#ifndef QUILLON_CLI_DIAGNOSTICS_REPORT_H
#define QUILLON_CLI_DIAGNOSTICS_REPORT_H

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "interface/host_build.h"
#include "platform/status.h"

namespace quillon::qpm {

// Whether `path` names a SARIF log (".sarif") or either report (".json" too).
bool IsSarifName(std::string_view path);
bool IsDiagnosticsName(std::string_view path);

const char* KindName(int kind);
const char* SeverityName(int severity);

// One entry: kind, file, line, column, severity, text, code.
nlohmann::json EntryJson(const host::FilterEntry& entry);

// "file:///..." for a full path; a relative one is taken from `base_dir`.
std::string FileUri(std::string_view path, std::string_view base_dir);

// A SARIF 2.1.0 log: one run per kind of translator that reported, each
// result with the message code as its rule, the severity as its level and
// the file and line where the entry has them.
nlohmann::json SarifLog(const std::vector<host::FilterEntry>& entries,
                        std::string_view base_dir);

// Writes the entries to `path`: SARIF for a ".sarif" name, a JSON array of
// entries for ".json".
Status WriteDiagnostics(const std::string& path, const std::vector<host::FilterEntry>& entries,
                        std::string_view base_dir);

// Dumps keeping invalid UTF-8 from a tool's output as replacement characters.
std::string Dump(const nlohmann::json& value, int indent);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_DIAGNOSTICS_REPORT_H
