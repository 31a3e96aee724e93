#pragma once

#include <cstdint>
#include <string>

/// What the program hands to the user's other programs.
namespace modSystem {

/// Shows the contents page of the help, which lies in the folder "Help" beside the help file, in the user's
/// browser. Of a missing page the machine tells.
void ShowHelp(std::uintptr_t window, std::int32_t context);

/// Shows the page of a topic, which has the topic's number as its name; 0 is the contents page.
void ShowTopic(std::uintptr_t window, std::int32_t topic);

/// Opens the address in the user's browser; the machine's result, above 32 for success.
std::intptr_t OpenWebAddress(const std::string& sAddress);

}  // namespace modSystem
