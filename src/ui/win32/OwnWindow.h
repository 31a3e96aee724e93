#pragma once

#include <windows.h>

#include <string>

namespace ui::win32 {

/// Name of the window property whose value is a global atom of the control's settled name.
inline constexpr char kControlProperty[] = "HarbourlineControl";

/// Puts the property on the window. RemoveControlName must run before the window is gone, or the atom stays.
void SetControlName(HWND window, const std::string& name);
void RemoveControlName(HWND window);

/// The module that the program's resources and window classes belong to.
HINSTANCE ThisModule();

/// A window of a class of ours, all of them 8-bit classes. The object may be destroyed while its window
/// handles a message; OnMessage then returns without touching it any more.
class OwnWindow {
 public:
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;
  virtual ~OwnWindow() { Destroy(); }

  /// Null before Create and after the window is gone.
  HWND Window() const { return window_; }

 protected:
  struct Creation {
    const char* className;
    DWORD style = 0;
    DWORD extendedStyle = 0;
    RECT place{};
    HWND parent = nullptr;
    std::string title;
    /// Empty for a window that shows no control.
    std::string controlName;
  };

  OwnWindow() = default;
  /// Fails with base::Error when Windows refuses.
  void Create(const Creation& creation);
  void Destroy();
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
};

}  // namespace ui::win32
