// The include graph kept in a file between processes, for hosts that are a
// new process every time (qpm). The file is a settings store:
//
//   "DependencyCache" key
//     "Version"   int      1
//     "Project"   string   the project file the graph belongs to
//     "Settings"  string   what the scan depends on besides file times
//     "Nodes", "Roots"     one key per set, each with
//        "Names"  list     node names in set order
//        "Times"  words    two words per node (low, high)
//        "Marked" words    indices of nodes carrying the no-dependencies marker
//        "Deps"   words    per node: count, then indices into Nodes\Names
//
// A file that is missing, unreadable, of another version or of another
// project or settings is ignored: the graph is then rebuilt by scanning.
#ifndef QUILLON_DEPS_DEPENDENCY_CACHE_FILE_H
#define QUILLON_DEPS_DEPENDENCY_CACHE_FILE_H

#include <string>

#include "deps/dependency_scanner.h"
#include "deps/scan_request.h"
#include "platform/file_system.h"

namespace quillon {

// What, besides file times, decides the graph: include paths, keyword
// settings and scan styles.
std::string ScanSettingsFingerprint(const ScanRequest& request);

// The cache's bytes for the scanner's graph.
std::string EncodeDependencyCache(const CDependencyScanner& scanner, const std::string& project,
                                  const std::string& settings);

// Restores the graph from `bytes`; false when they do not hold a usable
// cache for this project and settings (the graph may then be empty).
bool DecodeDependencyCache(const std::string& bytes, const std::string& project,
                           const std::string& settings, CDependencyScanner* scanner);

}  // namespace quillon

#endif  // QUILLON_DEPS_DEPENDENCY_CACHE_FILE_H
