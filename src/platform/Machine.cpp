#include "platform/Machine.h"

namespace platform {

Machine& TheMachine() {
  static Machine machine;
  return machine;
}

}  // namespace platform
