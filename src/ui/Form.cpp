#include "ui/Form.h"

#include <algorithm>

#include "ui/Toolkit.h"

namespace ui {
namespace {

std::vector<Form*>& Loaded() {
  static std::vector<Form*> forms;
  return forms;
}

}  // namespace

Form::Form(std::string name, std::string caption, Style style, Twips width, Twips height)
    : Control(Kind::kForm, nullptr, std::move(name)), style_(style), caption_(std::move(caption)) {
  Control::Visible(false);
  Move(0, 0, width, height);
}

Form::~Form() {
  std::erase(Loaded(), this);
  DetachPeers();
}

void Form::Caption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Notify(Aspect::kText);
}

void Form::Icon(PictureRef icon) {
  Load();
  icon_ = std::move(icon);
  Notify(Aspect::kValue);
}

void Form::Load() {
  if (loaded_) return;
  loaded_ = true;
  Loaded().push_back(this);
  AttachPeers();
  OnLoad();
}

void Form::Show(Form* owner) {
  owner_ = owner;
  Visible(true);
}

void Form::ShowModal(Form* owner) {
  owner_ = owner;
  Load();
  if (!loaded_) return;
  modal_ = true;
  Visible(true);
  TheInterface().toolkit->RunWhile([this] { return loaded_ && Visible(); });
  modal_ = false;
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
  bool cancel = false;
  OnQueryUnload(cancel, reason);
  if (cancel) return false;
  // What the window tells on its way out may fail; the window goes all the same.
  struct Closing {
    Form& form;
    ~Closing() {
      form.Control::Visible(false);
      for (Control* child : form.Children()) child->End();
      form.DetachPeers();
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

void Form::UserMouseMove(float x, float y) {
  FromUser("MouseMove", [&] { MouseMove.Raise(x, y); });
}

void Form::UserResize(const Bounds& bounds) {
  FromUser("Resize", [&] { BoundsFromPeer(bounds); });
}

void Form::OnQueryUnload(bool&, CloseReason) {}

std::vector<Form*> Form::LoadedForms() {
  return Loaded();
}

bool Form::QuerySessionEnd() {
  for (Form* form : LoadedForms()) {
    bool cancel = false;
    form->FromUser("QueryUnload", [&] { form->OnQueryUnload(cancel, CloseReason::kSessionEnds); });
    if (cancel) return false;
  }
  return true;
}

}  // namespace ui
