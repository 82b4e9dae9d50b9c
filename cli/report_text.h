// The text form of `qpm show`, printed from the report document.
#ifndef QUILLON_CLI_REPORT_TEXT_H
#define QUILLON_CLI_REPORT_TEXT_H

#include <iosfwd>

#include "cli/project_report.h"

namespace quillon::qpm {

// Lists every target, then details the default target, or every target
// with `all` (or when there is no default).
void PrintReport(const Json& report, bool all, std::ostream& out);

}  // namespace quillon::qpm

#endif  // QUILLON_CLI_REPORT_TEXT_H
