// window_program CLASS TITLE [X Y]
//
// Shows one window of that class with that title, at that place of the screen when one is given, until the
// user closes it. Exit code 0 when it was closed, 2 for a wrong use.

#include <windows.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int kWrongUse = 2;
constexpr int kWidth = 320;
constexpr int kHeight = 140;
constexpr int kLetterHeight = 24;
constexpr COLORREF kGround = RGB(253, 235, 200);
constexpr COLORREF kLetters = RGB(0, 0, 128);

/// The title once more, large: a small window's own title is soon cut.
void Paint(HWND window) {
  PAINTSTRUCT paint;
  const HDC device = BeginPaint(window, &paint);
  RECT place;
  GetClientRect(window, &place);
  char title[256] = "";
  GetWindowTextA(window, title, sizeof title);
  const HFONT font = CreateFontA(kLetterHeight, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0,
                                 0, 0, "Comic Sans MS");
  const HGDIOBJ before = SelectObject(device, font);
  SetTextColor(device, kLetters);
  SetBkMode(device, TRANSPARENT);
  DrawTextA(device, title, -1, &place,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
  SelectObject(device, before);
  DeleteObject(font);
  EndPaint(window, &paint);
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      Paint(window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

int Show(const std::vector<std::string>& arguments) {
  if (arguments.size() != 2 && arguments.size() != 4) return kWrongUse;
  const bool placed = arguments.size() == 4;
  const HINSTANCE module = GetModuleHandleA(nullptr);
  const HBRUSH ground = CreateSolidBrush(kGround);
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = module;
  windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
  windowClass.hbrBackground = ground;
  windowClass.lpszClassName = arguments[0].c_str();
  if (!RegisterClassA(&windowClass)) return kWrongUse;
  if (!CreateWindowA(arguments[0].c_str(), arguments[1].c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                     placed ? std::atoi(arguments[2].c_str()) : CW_USEDEFAULT,
                     placed ? std::atoi(arguments[3].c_str()) : CW_USEDEFAULT, kWidth, kHeight, nullptr,
                     nullptr, module, nullptr)) {
    return kWrongUse;
  }
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  DeleteObject(ground);
  return static_cast<int>(message.wParam);
}

}  // namespace

int main(int count, char** values) {
  return Show({values + 1, values + count});
}
