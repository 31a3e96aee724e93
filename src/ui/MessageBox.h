#pragma once

#include <string>
#include <string_view>

namespace ui {

enum class MessageIcon { kCritical, kQuestion, kWarning, kInformation };
enum class MessageButtons { kOk, kYesNo };
enum class MessageResult { kOk, kYes, kNo };

inline constexpr std::string_view kApplicationTitle = "Harbourline";

struct Message {
  std::string text;
  MessageIcon icon = MessageIcon::kInformation;
  MessageButtons buttons = MessageButtons::kOk;
  std::string title{kApplicationTitle};
};

/// Shows the message and waits for the answer. Lines are separated by CR LF.
MessageResult ShowMessage(std::string text, MessageIcon icon, MessageButtons buttons = MessageButtons::kOk);

/// What a user typed, as it may stand in a message: a text so long that the box would outgrow the screen ends
/// in "..." instead.
std::string ForMessage(std::string_view text);

}  // namespace ui
