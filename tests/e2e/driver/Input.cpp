#include "driver/Input.h"

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace desktop {
namespace {

// The system takes positions as parts of the screen's width and height.
constexpr int kWholeScreen = 65536;

bool Send(std::vector<INPUT> inputs) {
  const UINT count = static_cast<UINT>(inputs.size());
  return SendInput(count, inputs.data(), sizeof(INPUT)) == count;
}

INPUT Key(WORD code, bool down) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(code, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
  return input;
}

INPUT Mouse(DWORD flags, LONG x, LONG y) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  input.mi.dx = x;
  input.mi.dy = y;
  return input;
}

// The code of the key that stands at the left of `keys`, which loses it; 0 for an unknown one.
WORD TakeKey(std::string_view& keys) {
  static const std::map<std::string_view, WORD> names = {
      {"ENTER", WORD{VK_RETURN}}, {"ESC", WORD{VK_ESCAPE}},  {"TAB", WORD{VK_TAB}},
      {"SPACE", WORD{VK_SPACE}},  {"UP", WORD{VK_UP}},       {"DOWN", WORD{VK_DOWN}},
      {"LEFT", WORD{VK_LEFT}},    {"RIGHT", WORD{VK_RIGHT}}, {"HOME", WORD{VK_HOME}},
      {"END", WORD{VK_END}},      {"ALT", WORD{VK_MENU}},    {"F1", WORD{VK_F1}},
      {"F2", WORD{VK_F2}},        {"F4", WORD{VK_F4}}};
  if (keys.front() != '{') {
    const SHORT code = VkKeyScanA(keys.front());
    keys.remove_prefix(1);
    return code == -1 ? WORD{0} : static_cast<WORD>(code & 0xFF);
  }
  const std::size_t end = keys.find('}');
  if (end == std::string_view::npos) return 0;
  const auto found = names.find(keys.substr(1, end - 1));
  keys.remove_prefix(end + 1);
  return found == names.end() ? WORD{0} : found->second;
}

}  // namespace

bool Type(std::string_view keys) {
  while (!keys.empty()) {
    const WORD code = TakeKey(keys);
    if (code == 0 || !Send({Key(code, true), Key(code, false)})) return false;
  }
  return true;
}

bool Click(int x, int y, MouseButton button) {
  const bool left = button == MouseButton::kLeft;
  const LONG partX = MulDiv(x, kWholeScreen, GetSystemMetrics(SM_CXSCREEN)) + 1;
  const LONG partY = MulDiv(y, kWholeScreen, GetSystemMetrics(SM_CYSCREEN)) + 1;
  return Send({Mouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, partX, partY),
               Mouse(left ? DWORD{MOUSEEVENTF_LEFTDOWN} : DWORD{MOUSEEVENTF_RIGHTDOWN}, 0, 0),
               Mouse(left ? DWORD{MOUSEEVENTF_LEFTUP} : DWORD{MOUSEEVENTF_RIGHTUP}, 0, 0)});
}

}  // namespace desktop
