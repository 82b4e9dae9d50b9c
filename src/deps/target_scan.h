// What a dependency update of one target scans, taken from the project: the
// target's files with their scan styles, the include paths and the
// include-keyword settings.
#ifndef QUILLON_DEPS_TARGET_SCAN_H
#define QUILLON_DEPS_TARGET_SCAN_H

#include <string>

#include "deps/scan_request.h"

namespace quillon {

class CProjectData;
class CProjectTarget;

ScanRequest MakeScanRequest(const CProjectData& project, const CProjectTarget& target);

// ScanSettingsFingerprint of that request, without making every file's full
// path: the fingerprint takes only the sources' extensions.
std::string ScanSettingsFingerprint(const CProjectData& project, const CProjectTarget& target);

}  // namespace quillon

#endif  // QUILLON_DEPS_TARGET_SCAN_H
