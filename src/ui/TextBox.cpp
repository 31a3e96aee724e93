#include "ui/TextBox.h"

#include <algorithm>

namespace ui {

TextBox::TextBox(Control* parent, std::string name, Style style)
    : Control(Kind::kTextBox, parent, std::move(name)), style_(style) {}

void TextBox::Text(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  selStart_ = selLength_ = 0;
  Notify(Aspect::kText);
  Change.Raise();
}

void TextBox::Locked(bool locked) {
  if (locked == locked_) return;
  locked_ = locked;
  Notify(Aspect::kReadOnly);
}

void TextBox::SelStart(std::int32_t start) {
  selStart_ = start;
  selLength_ = 0;
  ClampSelection();
  Notify(Aspect::kSelection);
}

void TextBox::SelLength(std::int32_t length) {
  selLength_ = length;
  ClampSelection();
  Notify(Aspect::kSelection);
}

void TextBox::UserText(std::string text) {
  if (locked_ || text == text_) return;
  text_ = std::move(text);
  ClampSelection();
  FromUser("Change", [this] { Change.Raise(); });
}

void TextBox::UserSelection(std::int32_t start, std::int32_t length) {
  selStart_ = start;
  selLength_ = length;
  ClampSelection();
}

void TextBox::ClampSelection() {
  const auto end = static_cast<std::int32_t>(text_.size());
  selStart_ = std::clamp(selStart_, 0, end);
  selLength_ = std::clamp(selLength_, 0, end - selStart_);
}

}  // namespace ui
