#pragma once

#include <gtest/gtest.h>

#include "base/Error.h"

namespace support {

/// The failure of `action`; a failed expectation when there is none.
template <typename Action>
base::Error FailureOf(Action action) {
  try {
    action();
  } catch (const base::Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing failed";
  return base::Error(0, "");
}

}  // namespace support
