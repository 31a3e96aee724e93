#include "base/Error.h"

namespace base {

Error TypeMismatch(std::string_view what) {
  return Error(ErrorNumber::kTypeMismatch, "Type mismatch: \"" + std::string(what) + "\"");
}

Error Overflow(std::string_view what) {
  return Error(ErrorNumber::kOverflow, "Overflow: \"" + std::string(what) + "\"");
}

}  // namespace base
