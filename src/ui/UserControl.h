#pragma once

#include <string>

#include "ui/Control.h"

namespace ui {

/// A page or another composite: a control made of controls. BackgroundColor is the property of all pages.
class UserControl : public Control {
 public:
  UserControl(Control* parent, std::string name, Twips designWidth, Twips designHeight);

  Color BackgroundColor() const { return BackColor(); }
  /// A page passes the colour on to those of its controls that take it.
  virtual void BackgroundColor(Color color) { BackColor(color); }

  /// A property that is stored has been set; with the key that is marked as changed.
  base::Event<const std::string&> PropertyChanged;

 protected:
  /// A page whose size nobody changes is laid out all the same when its window comes up.
  void OnPeerAttached() override { OnResize(); }
};

}  // namespace ui
