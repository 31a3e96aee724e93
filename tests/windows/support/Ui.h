#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ui/Form.h"
#include "ui/Toolkit.h"
#include "ui/win32/Win32Interface.h"

namespace support {

/// A window that tells what happened to it.
class TestForm : public ui::Form {
 public:
  explicit TestForm(std::string name = "frmTest", Style style = {}, ui::Twips width = 4800,
                    ui::Twips height = 3000);

  HWND Window() const { return reinterpret_cast<HWND>(Handle()); }

  bool refuses = false;
  std::vector<ui::CloseReason> asked;
  int resizes = 0;

 protected:
  void OnQueryUnload(bool& cancel, ui::CloseReason reason) override;
  void OnResize() override { ++resizes; }
};

/// Tests with real windows.
class UiTest : public testing::Test {
 protected:
  /// Runs the interface's own message loop until `done` holds; false when that takes more than ten seconds.
  template <typename Condition>
  static bool RunUntil(Condition done) {
    const UINT_PTR alarm = SetTimer(nullptr, 0, 10, nullptr);
    const ULONGLONG end = GetTickCount64() + 10'000;
    ui::TheInterface().toolkit->RunWhile([&] { return !done() && GetTickCount64() < end; });
    KillTimer(nullptr, alarm);
    return done();
  }
  /// Runs the message loop for a while in which nothing is expected.
  static void RunFor(ULONGLONG milliseconds);

  ui::win32::Win32Interface interface_;
};

/// The name that the window's property HarbourlineControl tells; empty for none.
std::string ControlNameOf(HWND window);
/// Size of the window's inner area.
SIZE InnerSize(HWND window);
/// What WM_GETTEXT gives.
std::string TextOf(HWND window);
/// Presses and releases the key as a keyboard would.
void PressKey(WORD key);

/// Moves the mouse to the place on the screen.
void MoveMouse(int x, int y);
/// Presses or releases its left button.
void PressMouse(bool down);

/// Clicks with the left button at the place on the screen as a mouse would.
void ClickAt(int x, int y);

/// Answers a menu or a box that keeps the test's own thread busy, from a thread of its own.
class Bystander {
 public:
  template <typename Act>
  explicit Bystander(Act act)
      : act_(std::move(act)), thread_(CreateThread(nullptr, 0, Run, this, 0, nullptr)) {}
  ~Bystander() {
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
  }
  Bystander(const Bystander&) = delete;
  Bystander& operator=(const Bystander&) = delete;

 private:
  static DWORD WINAPI Run(void* self) {
    static_cast<Bystander*>(self)->act_();
    return 0;
  }

  std::function<void()> act_;
  HANDLE thread_;
};

/// Asks again and again for up to ten seconds; the last answer.
template <typename Find>
auto WaitFor(Find find) {
  const ULONGLONG end = GetTickCount64() + 10'000;
  for (;;) {
    if (auto found = find(); found || GetTickCount64() > end) return found;
    Sleep(10);
  }
}

/// A visible top-level window of this process with the class and, unless it is null, the title.
HWND FindOwnWindow(const char* className, const char* title = nullptr);

}  // namespace support
