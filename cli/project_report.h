// What `qpm show` tells about a project, gathered once as JSON in a stable
// schema; the text form is printed from the same document.
//
//   { "schema": 1, "project": path, "default_target": name or null,
//     "options": { "global": OPTIONS, "filter": OPTIONS },
//     "targets": [ { "name", "default": bool, "options": OPTIONS,
//                    "file_defaults": OPTIONS,
//                    "groups": [ { "name", "files": [ { "path", "options" } ] } ] } ] }
//
// OPTIONS holds, in catalogue order, the options that differ from a fresh
// project's; for a file, those that are its own or differ from what its
// target's file defaults give it. Each is key -> { "value", and "own" for
// options that carry an own-value flag }. Values are typed: numbers,
// booleans for flags, strings, arrays for lists. Groups are in link order;
// "path" is the file's name as stored.
#ifndef QUILLON_CLI_PROJECT_REPORT_H
#define QUILLON_CLI_PROJECT_REPORT_H

#include <nlohmann/json.hpp>
#include <string>

namespace quillon::qpm {

using Json = nlohmann::ordered_json;

inline constexpr int kReportSchema = 1;

// The library's current project, loaded from `path`.
Json DescribeProject(const std::string& path);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_PROJECT_REPORT_H
