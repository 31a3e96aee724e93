#include "ui/Form.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "ui/Toolkit.h"

namespace ui {
namespace {

std::vector<Form*>& Loaded() {
  static std::vector<Form*> forms;
  return forms;
}

bool IsAmongLoaded(const Form* form) {
  return std::find(Loaded().begin(), Loaded().end(), form) != Loaded().end();
}

/// True while it lives.
class Flag {
 public:
  explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
  ~Flag() { flag_ = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& flag_;
};

}  // namespace

Form::Form(std::string name, std::string caption, Style style, Twips width, Twips height)
    : Control(Kind::kForm, nullptr, std::move(name)), style_(style), caption_(std::move(caption)) {
  // The list is made before the first window is complete, so that it outlives a window that lives until the
  // process ends.
  Loaded();
  Control::Visible(false);
  Move(0, 0, width, height);
}

Form::~Form() {
  std::erase(Loaded(), this);
  for (Form* owned : OwnedForms()) owned->owner_ = nullptr;
  DetachPeers();
}

void Form::Caption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Notify(Aspect::kText);
}

void Form::Icon(PictureRef icon) {
  Load();
  if (icon == icon_) return;
  icon_ = std::move(icon);
  Notify(Aspect::kValue);
}

float Form::TwipsPerPixel() const {
  const float twips = GetPeer() ? GetPeer()->TwipsPerPixel() : 0;
  return twips > 0 ? twips : TheInterface().screen->TwipsPerPixelX();
}

void Form::UserScaleChanged() {
  FromUser("ScaleChanged", [this] { TellScaleChanged(); });
}

void Form::Load() {
  if (loaded_) return;
  loaded_ = true;
  Loaded().push_back(this);
  try {
    AttachPeers();
  } catch (...) {
    DetachPeers();
    std::erase(Loaded(), this);
    loaded_ = false;
    throw;
  }
  TellShown();
  OnLoad();
}

void Form::Show(Form* owner) {
  owner_ = owner;
  Visible(true);
  SetFocus();
}

void Form::ShowModal(Form* owner) {
  owner_ = owner;
  Load();
  if (!loaded_) return;
  const Flag modal(modal_);
  Visible(true);
  TheInterface().toolkit->RunWhile([this] { return loaded_ && Visible(); });
}

void Form::Visible(bool visible) {
  if (visible) {
    Load();
    if (!loaded_) return;
  }
  Control::Visible(visible);
}

bool Form::Unload(CloseReason reason) {
  if (!loaded_) return true;
  if (unloading_) return false;
  const Flag unloading(unloading_);
  bool cancel = false;
  OnQueryUnload(cancel, reason);
  if (cancel) return false;
  for (Form* owned : OwnedForms()) {
    if (IsAmongLoaded(owned) && !owned->Unload(CloseReason::kOwnerCloses)) return false;
  }
  // What the window tells on its way out may fail; the window goes all the same.
  struct Closing {
    Form& form;
    ~Closing() {
      form.Control::Visible(false);
      for (Control* child : form.Children()) child->End();
      form.DetachPeers();
      form.owner_ = nullptr;
      form.loaded_ = false;
      std::erase(Loaded(), &form);
    }
  } closing{*this};
  OnUnload();
  return true;
}

void Form::UserClose(CloseReason reason) {
  FromUser("Close", [&] { Unload(reason); });
}

void Form::Shape(std::vector<PixelRun> shape) {
  shape_ = std::move(shape);
  Notify(Aspect::kShape);
}

void Form::DragByMouse() {
  if (GetPeer()) GetPeer()->DragByMouse();
}

void Form::UserHelp() {
  const Control* control = FocusHolder();
  if (!control) control = this;
  while (control->HelpContextID() == 0 && control->Parent()) control = control->Parent();
  if (TheInterface().help) FromUser("Help", [&] { TheInterface().help(Handle(), control->HelpContextID()); });
}

void Form::UserMouseMove(float x, float y) {
  FromUser("MouseMove", [&] { MouseMove.Raise(x, y); });
}

void Form::UserShellRestarted() {
  FromUser("ShellRestarted", [this] { ShellRestarted.Raise(); });
}

void Form::UserResize(const Bounds& bounds) {
  if (resizing_) {
    FromUser("Resize", [&] { BoundsFromPeer(bounds); });
    return;
  }
  {
    const Flag resizing(resizing_);
    FromUser("Resize", [&] { BoundsFromPeer(bounds); });
  }
  ShowVisibility(*this, std::exchange(putOff_, {}));
}

bool Form::PutsOffVisibility(Control& control) {
  if (!resizing_) return false;
  if (std::erase(putOff_, &control) == 0) putOff_.push_back(&control);
  return true;
}

void Form::ShowVisibility(const Control& control, const std::vector<Control*>& changed) {
  // Addresses are compared only: a control may have gone meanwhile.
  for (Control* child : control.Children()) {
    if (std::find(changed.begin(), changed.end(), child) != changed.end() && child->GetPeer()) {
      child->GetPeer()->Changed(Aspect::kVisible);
    }
    ShowVisibility(*child, changed);
  }
}

void Form::OnQueryUnload(bool&, CloseReason) {}

std::vector<Form*> Form::OwnedForms() const {
  std::vector<Form*> owned;
  std::copy_if(Loaded().begin(), Loaded().end(), std::back_inserter(owned),
               [this](const Form* form) { return form->owner_ == this; });
  return owned;
}

std::vector<Form*> Form::LoadedForms() {
  return Loaded();
}

bool Form::QuerySessionEnd() {
  const EventGuard::Unattended nobodyAnswers;
  for (Form* form : LoadedForms()) {
    // One that was asked before may have taken this one away.
    if (!IsAmongLoaded(form)) continue;
    bool cancel = false;
    form->FromUser("QueryUnload", [&] { form->OnQueryUnload(cancel, CloseReason::kSessionEnds); });
    if (cancel) return false;
  }
  return true;
}

}  // namespace ui
