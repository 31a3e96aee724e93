#include "ui/SocketControl.h"

#include "platform/Machine.h"

namespace ui {

std::string SocketControl::LocalIP() const {
  return platform::TheMachine().network->LocalIP();
}

}  // namespace ui
