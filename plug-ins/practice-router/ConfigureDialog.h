#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "Look.h"
#include "Settings.h"

namespace practice {

/// The dialog behind IServer_Configure.
class ConfigureDialog {
 public:
  explicit ConfigureDialog(const Settings& settings) : settings_(settings) {}

  /// Runs until the user is done, over `owner`, which may be null. True when the user accepted.
  bool Run(HWND owner);
  /// What the user accepted.
  const Settings& Result() const { return settings_; }

  /// The dialog on the screen, null outside Run.
  HWND Handle() const { return dialog_; }

 private:
  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  HWND AddChild(const wchar_t* className, const std::wstring& text, DWORD style, int id);
  void CreateControls();
  void ApplyLook();
  void Layout();
  void Accept();

  Settings settings_;
  std::unique_ptr<Look> look_;
  HWND dialog_ = nullptr;
};

}  // namespace practice
