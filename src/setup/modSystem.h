#pragma once

#include <cstdint>
#include <string>

/// What the program hands to the user's other programs.
namespace modSystem {

/// Opens the contents page of the help, which lies in the folder of the help file. `context` is the topic;
/// the contents page serves 0 and every topic without a page. A missing page is ignored.
void ShowHelp(std::uintptr_t window, std::int32_t context);

/// Opens the address in the user's browser; the machine's result, above 32 for success.
std::intptr_t OpenWebAddress(const std::string& sAddress);

}  // namespace modSystem
