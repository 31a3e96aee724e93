#include "ui/Toolkit.h"

namespace ui {

Interface& TheInterface() {
  static Interface interface;
  return interface;
}

}  // namespace ui
