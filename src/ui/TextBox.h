#pragma once

#include <cstdint>
#include <string>

#include "ui/Control.h"

namespace ui {

/// A change of the text raises Change, whether by code or by the user.
class TextBox : public Control {
 public:
  struct Style {
    bool multiLine = false;
    bool verticalScrollBar = false;
    /// Without, the box looks like plain text.
    bool border = true;
  };

  TextBox(Control* parent, std::string name) : TextBox(parent, std::move(name), Style{}) {}
  TextBox(Control* parent, std::string name, Style style);

  const Style& GetStyle() const { return style_; }
  const std::string& Text() const { return text_; }
  void Text(std::string text);
  /// A locked box shows its text and can't be typed in.
  bool Locked() const { return locked_; }
  void Locked(bool locked);
  /// Positions count characters from 0; both are kept within the text.
  std::int32_t SelStart() const { return selStart_; }
  void SelStart(std::int32_t start);
  std::int32_t SelLength() const { return selLength_; }
  void SelLength(std::int32_t length);

  base::Event<> Change;

  void UserText(std::string text);
  void UserSelection(std::int32_t start, std::int32_t length);

 private:
  void ClampSelection();

  Style style_;
  std::string text_;
  bool locked_ = false;
  std::int32_t selStart_ = 0;
  std::int32_t selLength_ = 0;
};

}  // namespace ui
