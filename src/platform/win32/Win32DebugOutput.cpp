#include "platform/win32/Win32DebugOutput.h"

#include <windows.h>

#include <string>

namespace platform::win32 {

void Win32DebugOutput::Trace(std::string_view line) {
  OutputDebugStringA((std::string(line) + "\n").c_str());
}

}  // namespace platform::win32
