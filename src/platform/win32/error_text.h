// The system's own words for a Win32 error code, shared by the Win32 files
// of the platform layer.
#ifndef QUILLON_PLATFORM_WIN32_ERROR_TEXT_H
#define QUILLON_PLATFORM_WIN32_ERROR_TEXT_H

#include <windows.h>

#include <string>

namespace quillon {

// FormatMessage's text without its trailing line end; "error N" when the
// system has none.
std::string Win32ErrorText(DWORD error);

}  // namespace quillon

#endif  // QUILLON_PLATFORM_WIN32_ERROR_TEXT_H
