#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <memory>

#include "HarbourlineLook.h"

namespace upnp {

struct ProgressSteps {
  std::size_t done = 0;
  std::size_t total = 0;
};

/// Waits on the thread of the interface until `done` is set, `milliseconds` at most. After a second a small
/// window tells how far the work is. No input and no timer gets through meanwhile: the caller is in the
/// middle of a call. True when the event was set.
bool WaitWithProgress(HANDLE done, DWORD milliseconds, const std::function<ProgressSteps()>& look);

}  // namespace upnp
