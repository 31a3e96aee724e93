#include "setup/modSystem.h"

#include "platform/FilePath.h"
#include "platform/Machine.h"
#include "shell/modCommon.h"

namespace modSystem {

namespace {

void ShowHelpPage(std::uintptr_t window, const std::string& name) {
  const std::string folder = modCommon::MakeFullPath(platform::FolderOf(modCommon::HelpFile()), "Help");
  platform::TheMachine().shell->Show(window, modCommon::MakeFullPath(folder, name + ".html"));
}

}  // namespace

void ShowHelp(std::uintptr_t window, std::int32_t) {
  ShowHelpPage(window, "index");
}

void ShowTopic(std::uintptr_t window, std::int32_t topic) {
  ShowHelpPage(window, topic == 0 ? "index" : std::to_string(topic));
}

std::intptr_t OpenWebAddress(const std::string& sAddress) {
  return platform::TheMachine().shell->Open(sAddress);
}

}  // namespace modSystem
