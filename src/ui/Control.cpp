#include "ui/Control.h"

#include <algorithm>

#include "ui/Form.h"
#include "ui/Toolkit.h"

namespace ui {

Control::Control(Kind kind, Control* parent, std::string name)
    : kind_(kind), name_(std::move(name)), parent_(parent) {
  if (parent_) parent_->children_.push_back(this);
}

Control::~Control() {
  LeaveParent();
  // Controls that outlive what they stand on have no window any more.
  DetachPeers();
  for (Control* child : children_) child->parent_ = nullptr;
}

void Control::LeaveParent() {
  if (parent_) std::erase(parent_->children_, this);
  parent_ = nullptr;
}

std::string Control::Path() const {
  return parent_ ? parent_->Path() + "." + name_ : name_;
}

Form* Control::ParentForm() {
  Control* control = this;
  while (control->parent_) control = control->parent_;
  return control->kind_ == Kind::kForm ? static_cast<Form*>(control) : nullptr;
}

void Control::Move(const Bounds& to) {
  const Bounds bounds{to.left, to.top, std::max(0, to.width), std::max(0, to.height)};
  if (bounds == bounds_) return;
  const bool resized = bounds.width != bounds_.width || bounds.height != bounds_.height;
  bounds_ = bounds;
  Notify(Aspect::kBounds);
  if (resized) OnResize();
}

void Control::BoundsFromPeer(const Bounds& bounds) {
  const bool resized = bounds.width != bounds_.width || bounds.height != bounds_.height;
  bounds_ = bounds;
  if (resized) OnResize();
}

void Control::Visible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  Form* const form = ParentForm();
  if (form && form != this && form->PutsOffVisibility(*this)) return;
  Notify(Aspect::kVisible);
}

bool Control::IsSeen() const {
  for (const Control* control = this; control; control = control->parent_) {
    if (!control->visible_) return false;
  }
  return true;
}

void Control::Enabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Notify(Aspect::kEnabled);
}

void Control::ForeColor(Color color) {
  if (color == foreColor_) return;
  foreColor_ = color;
  Notify(Aspect::kColors);
}

void Control::BackColor(Color color) {
  if (color == backColor_) return;
  backColor_ = color;
  Notify(Aspect::kColors);
}

void Control::Transparent(bool transparent) {
  if (transparent == transparent_) return;
  transparent_ = transparent;
  Notify(Aspect::kColors);
}

void Control::Font(const ui::Font& font) {
  if (font == font_) return;
  font_ = font;
  Notify(Aspect::kFont);
}

void Control::ToolTipText(std::string text) {
  if (text == toolTipText_) return;
  toolTipText_ = std::move(text);
  Notify(Aspect::kText);
}

void Control::SetFocus() {
  if (!enabled_ || !IsSeen()) return;
  if (peer_) {
    peer_->SetFocus();
  } else {
    UserFocus(true);
  }
}

void Control::UserFocus(bool focus) {
  if (focus == hasFocus_) return;
  if (focus) {
    Control* top = this;
    while (top->parent_) top = top->parent_;
    if (Control* holder = top->FocusHolder()) holder->UserFocus(false);
  }
  hasFocus_ = focus;
  if (focus) {
    FromUser("GotFocus", [this] { GotFocus.Raise(); });
  } else {
    FromUser("LostFocus", [this] { LostFocus.Raise(); });
  }
}

Control* Control::FocusHolder() {
  if (hasFocus_) return this;
  for (Control* child : children_) {
    if (Control* holder = child->FocusHolder()) return holder;
  }
  return nullptr;
}

void Control::AttachPeers() {
  if (!peer_ && TheInterface().toolkit) peer_ = TheInterface().toolkit->CreatePeer(*this);
  OnPeerAttached();
  // A handler of a new peer may add controls.
  for (std::size_t i = 0; i < children_.size(); ++i) children_[i]->AttachPeers();
}

void Control::DetachPeers() {
  hasFocus_ = false;
  for (Control* child : children_) child->DetachPeers();
  peer_.reset();
}

void Control::TellShown() {
  OnShow();
  for (Control* child : children_) child->TellShown();
}

void Control::TellScaleChanged() {
  OnScaleChanged();
  for (Control* child : children_) child->TellScaleChanged();
}

void Control::End() {
  for (Control* child : children_) child->End();
  FromUser("End", [this] { OnEnd(); });
}

void Control::Notify(Aspect aspect) {
  if (peer_) peer_->Changed(aspect);
}

}  // namespace ui
