// What a dependency update of one target scans, taken from the project: the
// target's files with their scan styles, the include paths and the
// include-keyword settings.
#ifndef QUILLON_DEPS_TARGET_SCAN_H
#define QUILLON_DEPS_TARGET_SCAN_H

#include "deps/scan_request.h"

namespace quillon {

class CProjectData;
class CProjectTarget;

ScanRequest MakeScanRequest(const CProjectData& project, const CProjectTarget& target);

}  // namespace quillon

#endif  // QUILLON_DEPS_TARGET_SCAN_H
