#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "base/Error.h"

namespace platform::win32 {

/// The system's own text for a COM code, or the code itself where the system has none.
std::string SystemMessage(HRESULT code);

/// `what` says what couldn't be done; the system's message follows. The error's number is the code.
base::Error ComError(std::string_view what, HRESULT code);
/// For the codes of the Windows API, which become COM codes, so that they can't be taken for the program's
/// own.
base::Error WindowsError(std::string_view what, LSTATUS code);

}  // namespace platform::win32
