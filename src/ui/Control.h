#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Event.h"
#include "ui/Color.h"
#include "ui/EventGuard.h"
#include "ui/Font.h"
#include "ui/Geometry.h"
#include "ui/Peer.h"

namespace ui {

class Form;

/// The kinds of control, by which the machine's side chooses the peer.
enum class Kind {
  kForm,
  kUserControl,
  kFrame,
  kLabel,
  kButton,
  kCheckBox,
  kTextBox,
  kComboBox,
  kListBox,
  kListView,
  kTreeView,
  kRichTextBox,
  kImage,
  kToolBar,
  kTimer,
  kMenu,
};

/// Base of everything that stands on a window. A control owns its state: it is complete without a screen, and
/// a peer that is attached to it only shows it. Setting a property to the value that it has does nothing. A
/// control registers with its parent at construction and leaves it at destruction; the order of construction
/// is the order of the tab key. Bounds are relative to the parent's inner area. At most one control of a
/// window has the focus.
class Control {
 public:
  /// `name` is the settled name, by which tests and tools find the control; one of an array is "txtName(3)".
  Control(Kind kind, Control* parent, std::string name);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Kind GetKind() const { return kind_; }
  const std::string& Name() const { return name_; }
  /// The names from the window down, joined by ".", for messages.
  std::string Path() const;
  Control* Parent() const { return parent_; }
  const std::vector<Control*>& Children() const { return children_; }
  /// The window that it stands on, itself for a window; null when it stands on none.
  Form* ParentForm();

  const Bounds& GetBounds() const { return bounds_; }
  /// A width or height below 0 counts as 0, so that a page may be laid out at any size.
  void Move(const Bounds& to);
  void Move(Twips left, Twips top, Twips width, Twips height) { Move(Bounds{left, top, width, height}); }
  Twips Left() const { return bounds_.left; }
  Twips Top() const { return bounds_.top; }
  Twips Width() const { return bounds_.width; }
  Twips Height() const { return bounds_.height; }
  Twips Right() const { return bounds_.left + bounds_.width; }
  Twips Bottom() const { return bounds_.top + bounds_.height; }

  /// The control's own switch; it is seen when all its parents are visible too.
  bool Visible() const { return visible_; }
  virtual void Visible(bool visible);
  bool IsSeen() const;
  bool Enabled() const { return enabled_; }
  void Enabled(bool enabled);

  Color ForeColor() const { return foreColor_; }
  void ForeColor(Color color);
  Color BackColor() const { return backColor_; }
  void BackColor(Color color);
  /// A transparent control shows what lies behind it in place of its own ground.
  bool Transparent() const { return transparent_; }
  void Transparent(bool transparent);
  const ui::Font& Font() const { return font_; }
  void Font(const ui::Font& font);

  /// Caption or text, by kind; "&" marks the letter of the access key in captions.
  const std::string& ToolTipText() const { return toolTipText_; }
  void ToolTipText(std::string text);
  /// Topic of the help key; 0 means that the parent's holds.
  std::int32_t HelpContextID() const { return helpContextID_; }
  void HelpContextID(std::int32_t id) { helpContextID_ = id; }
  /// Behind all others that stand on the same control.
  void SendToBack() { Notify(Aspect::kOrder); }
  bool TabStop() const { return tabStop_; }
  void TabStop(bool tabStop) { tabStop_ = tabStop; }

  bool HasFocus() const { return hasFocus_; }
  void SetFocus();

  base::Event<> GotFocus;
  base::Event<> LostFocus;

  /// Called by the peer when the focus comes or goes. No handler runs when it goes because the window goes.
  void UserFocus(bool focus);

  Peer* GetPeer() const { return peer_.get(); }
  /// Makes the peers of this control and of all that stands on it. The window does that when it loads.
  void AttachPeers();
  void DetachPeers();
  /// Tells this control and all that stands on it that the window is loaded.
  void TellShown();
  /// Reports to this control and all that is on it that the monitor's scale is another one.
  void TellScaleChanged();
  /// Ends this control and all that stands on it: the window that they stand on has been unloaded.
  void End();

 protected:
  /// Tells the peer, when there is one.
  void Notify(Aspect aspect);
  /// The door for what the user does: runs the handlers of `event` under the guard.
  template <typename Handler>
  void FromUser(std::string_view event, Handler&& handler) const {
    EventGuard::Run(*this, event, EventGuard::Repeats::kNo, std::forward<Handler>(handler));
  }
  /// Called after the size changed, by code or by the user.
  virtual void OnResize() {}
  virtual void OnPeerAttached() {}
  /// Called when the window is loaded and everything on it has its peer.
  virtual void OnShow() {}
  /// The window has come to a monitor of another scale.
  virtual void OnScaleChanged() {}
  /// A page's last act: it lets go of what it holds and saves what it keeps.
  virtual void OnEnd() {}
  void BoundsFromPeer(const Bounds& bounds);
  /// The parent knows this control no more, as after its destruction.
  void LeaveParent();
  /// This control, or the one below it, that has the focus; null for none.
  Control* FocusHolder();

 private:
  Kind kind_;
  std::string name_;
  Control* parent_;
  std::vector<Control*> children_;
  Bounds bounds_;
  bool visible_ = true;
  bool enabled_ = true;
  bool transparent_ = false;
  bool tabStop_ = true;
  bool hasFocus_ = false;
  Color foreColor_ = kDefaultColor;
  Color backColor_ = kDefaultColor;
  ui::Font font_;
  std::string toolTipText_;
  std::int32_t helpContextID_ = 0;
  std::unique_ptr<Peer> peer_;
};

}  // namespace ui
