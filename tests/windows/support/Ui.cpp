#include "support/Ui.h"

namespace support {
namespace {

struct WindowSearch {
  std::string className;
  const char* title;
  HWND found = nullptr;
};

BOOL CALLBACK OnWindow(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<WindowSearch*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return TRUE;
  char text[256];
  GetClassNameA(window, text, sizeof text);
  if (search.className != text) return TRUE;
  GetWindowTextA(window, text, sizeof text);
  if (search.title && std::string(search.title) != text) return TRUE;
  search.found = window;
  return FALSE;
}

}  // namespace

TestForm::TestForm(std::string name, Style style, ui::Twips width, ui::Twips height)
    : Form(std::move(name), "A test", style, width, height) {}

void TestForm::OnQueryUnload(bool& cancel, ui::CloseReason reason) {
  asked.push_back(reason);
  cancel = refuses;
}

void UiTest::RunFor(ULONGLONG milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  RunUntil([end] { return GetTickCount64() >= end; });
}

std::string ControlNameOf(HWND window) {
  const auto atom = reinterpret_cast<std::uintptr_t>(GetPropA(window, "HarbourlineControl"));
  char name[256] = "";
  if (atom != 0) GlobalGetAtomNameA(static_cast<ATOM>(atom), name, sizeof name);
  return name;
}

SIZE InnerSize(HWND window) {
  RECT inner{};
  GetClientRect(window, &inner);
  return {inner.right, inner.bottom};
}

std::string TextOf(HWND window) {
  std::string text(static_cast<std::size_t>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
  const LRESULT length = SendMessageA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

void PressKey(WORD key) {
  INPUT inputs[2]{};
  for (INPUT& input : inputs) {
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC));
  }
  inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
  SendInput(2, inputs, sizeof inputs[0]);
}

void MoveMouse(int x, int y) {
  INPUT input{};
  input.mi.dx = MulDiv(x, 65536, GetSystemMetrics(SM_CXSCREEN)) + 1;
  input.mi.dy = MulDiv(y, 65536, GetSystemMetrics(SM_CYSCREEN)) + 1;
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
  SendInput(1, &input, sizeof input);
}

void PressMouse(bool down) {
  INPUT input{};
  input.mi.dwFlags = down ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP;
  SendInput(1, &input, sizeof input);
}

void ClickAt(int x, int y) {
  MoveMouse(x, y);
  PressMouse(true);
  PressMouse(false);
}

HWND FindOwnWindow(const char* className, const char* title) {
  WindowSearch search{className, title};
  EnumWindows(OnWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

}  // namespace support
