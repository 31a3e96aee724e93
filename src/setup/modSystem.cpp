#include "setup/modSystem.h"

#include "platform/Machine.h"
#include "shell/modCommon.h"

namespace modSystem {

void ShowHelp(std::uintptr_t, std::int32_t) {
  std::string folder = modCommon::HelpFile();
  folder.resize(folder.find_last_of('\\') + 1);
  platform::TheMachine().shell->Open(folder + "Help\\index.html");
}

std::intptr_t OpenWebAddress(const std::string& sAddress) {
  return platform::TheMachine().shell->Open(sAddress);
}

}  // namespace modSystem
