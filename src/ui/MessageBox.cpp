#include "ui/MessageBox.h"

#include "ui/Toolkit.h"

namespace ui {
namespace {

constexpr std::size_t kLongestText = 200;

}  // namespace

MessageResult ShowMessage(std::string text, MessageIcon icon, MessageButtons buttons) {
  return TheInterface().dialogs->ShowMessage(
      {std::move(text), icon, buttons, std::string(kApplicationTitle)});
}

std::string ForMessage(std::string_view text) {
  if (text.size() <= kLongestText) return std::string(text);
  return std::string(text.substr(0, kLongestText)) + "...";
}

}  // namespace ui
