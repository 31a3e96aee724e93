// The least program that has an icon in the notification area: a hidden window, the icon, a message loop.
// What it costs no program with an icon can save, so the start and the memory of Harbourline are compared
// with it.

#include <windows.h>

#include <shellapi.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = DefWindowProcA;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = "BareIcon";
  RegisterClassA(&windowClass);
  const HWND window = CreateWindowExA(0, "BareIcon", "", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                      nullptr, instance, nullptr);

  NOTIFYICONDATAA icon{};
  icon.cbSize = sizeof icon;
  icon.hWnd = window;
  icon.uFlags = NIF_ICON;
  icon.hIcon = LoadIconA(nullptr, IDI_APPLICATION);
  if (!Shell_NotifyIconA(NIM_ADD, &icon)) return 1;

  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
  return 0;
}
