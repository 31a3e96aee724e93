#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "ui/Peer.h"
#include "ui/win32/Scale.h"

namespace ui {
class Control;
}

namespace ui::win32 {

struct Surroundings;

/// The one native window that shows a control which stands on a form. A derived class makes it in its
/// constructor by CreateNative and adds what its kind has besides bounds, visibility, colours, font and
/// focus. The object may be destroyed while its window handles a message.
class ChildWindow {
 public:
  virtual ~ChildWindow();
  ChildWindow(const ChildWindow&) = delete;
  ChildWindow& operator=(const ChildWindow&) = delete;

  /// Null after Windows took the window away together with its parent.
  HWND Window() const { return window_; }

  /// What a native control tells its parent window goes to the control's own object, and the focus goes where
  /// the keyboard's letters lead it. None when the message is another.
  static std::optional<LRESULT> Reflect(UINT message, WPARAM wParam, LPARAM lParam);
  /// The object behind a native control, null for a window that is none.
  static ChildWindow* FromWindow(HWND window);

  /// The form stands on a monitor of another scale now.
  virtual void ScaleChanged();

 protected:
  ChildWindow(Control& control, Surroundings& surroundings);

  /// Makes the native window of the class and brings it to the control's state. The style says only what the
  /// kind needs. Fails with base::Error when Windows refuses.
  void CreateNative(const char* className, DWORD style, DWORD extendedStyle, const std::string& text);

  /// The control's state has changed; the window is there.
  virtual void Show(Aspect aspect);
  virtual RECT NativeBounds() const;

  /// For state of which many changes come at once: SyncLater has Sync called before the window handles its
  /// next message, so that nobody sees the window behind its control.
  void SyncLater();
  virtual void Sync() {}

  /// A message to the native window. Calls PassOn, after which the object may be gone.
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  virtual void OnCommand(WORD /*code*/, WORD /*id*/) {}
  virtual LRESULT OnNotify(NMHDR& /*header*/) { return 0; }
  /// Sets the colours of the text that the native control is about to draw; the brush for its ground.
  virtual HBRUSH OnColors(HDC context);
  LRESULT PassOn(UINT message, WPARAM wParam, LPARAM lParam) const;

  /// True as long as `child` shows its control by `window`; asked after all that runs the program's handlers.
  static bool IsAlive(HWND window, const ChildWindow* child) { return FromWindow(window) == child; }

  template <typename Result = LRESULT>
  Result Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return static_cast<Result>(SendMessageA(window_, message, wParam, lParam));
  }
  Surroundings& Around() const { return surroundings_; }
  /// The scale of the form that the control stands on.
  Scale FormScale() const;
  /// The colour that is seen behind the control's text.
  COLORREF Ground() const;
  /// The colour of what the control stands on.
  COLORREF GroundBehind() const;
  COLORREF TextColor() const;
  HFONT NativeFont() const;
  /// Hides the native window; what has the focus on it gives it to the next in the order of the tab key.
  void Hide();
  /// The ground of a control to which nobody has given a colour.
  virtual COLORREF DefaultGround() const { return GroundBehind(); }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR self);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  /// A window that is hidden or disabled with the focus on it would leave the keyboard to nobody.
  void PassFocusOn() const;

  Control& control_;
  Surroundings& surroundings_;
  HWND window_ = nullptr;
  bool stale_ = false;
};

/// The peer of a kind of control: Interface is Peer, or what the kind's control asks of its peer beyond it.
template <typename Interface = Peer>
class ChildPeer : public Interface, public ChildWindow {
 public:
  void Changed(Aspect aspect) final {
    if (Window()) Show(aspect);
  }
  void SetFocus() final {
    if (Window()) ::SetFocus(Window());
  }
  std::uintptr_t Handle() const final { return reinterpret_cast<std::uintptr_t>(Window()); }

 protected:
  using ChildWindow::ChildWindow;
};

/// True while it lives: a peer that writes to its window doesn't report what the window says to that.
class Writing {
 public:
  explicit Writing(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~Writing() { flag_ = before_; }
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;

 private:
  bool& flag_;
  bool before_;
};

/// While it lives, what a peer writes to its window isn't drawn; then all of it is drawn at once. A hidden
/// window is left alone, since being told to draw would show it.
class DrawingPause {
 public:
  explicit DrawingPause(HWND window)
      : window_((GetWindowLongA(window, GWL_STYLE) & WS_VISIBLE) != 0 ? window : nullptr) {
    if (window_) SendMessageA(window_, WM_SETREDRAW, FALSE, 0);
  }
  ~DrawingPause() {
    if (!window_) return;
    SendMessageA(window_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(window_, nullptr, TRUE);
  }
  DrawingPause(const DrawingPause&) = delete;
  DrawingPause& operator=(const DrawingPause&) = delete;

 private:
  HWND window_;
};

}  // namespace ui::win32
