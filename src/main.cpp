#include <windows.h>

#include <exception>
#include <memory>

#include "platform/win32/Win32Machine.h"
#include "shell/frmMain.h"
#include "ui/MessageBox.h"
#include "ui/Toolkit.h"
#include "ui/win32/Win32Interface.h"

namespace {

/// No library is taken from the current folder, which may be any folder that the user works in, nor from the
/// program's own or from those of the path. A plug-in is found by its full path and may bring libraries
/// beside it.
void SearchLibrariesInSystemFoldersOnly() {
  SetDllDirectoryA("");
  // Windows 7 has it by an update only.
  using SetFolders = BOOL(WINAPI*)(DWORD);
  const auto setFolders = reinterpret_cast<SetFolders>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "SetDefaultDllDirectories")));
  if (setFolders) setFolders(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS);
}

int Run() {
  platform::win32::Win32Machine machine;
  ui::win32::Win32Interface nativeInterface;
  std::unique_ptr<frmMain> mainWindow;
  bool ending = false;
  nativeInterface.onSessionEnd = [&] {
    // The end of the program saves already.
    if (ending) return false;
    if (mainWindow) mainWindow->EndSession();
    mainWindow.reset();
    return true;
  };
  try {
    mainWindow = std::make_unique<frmMain>();
  } catch (const std::exception& failure) {
    // Settings that could not be read are not written either.
    ui::ShowMessage(failure.what(), ui::MessageIcon::kCritical);
    return 1;
  }
  mainWindow->Initialize();
  mainWindow->Load();
  ui::TheInterface().toolkit->RunWhile([&mainWindow] { return mainWindow && mainWindow->IsLoaded(); });
  ending = true;
  mainWindow.reset();
  for (ui::Form* form : ui::Form::LoadedForms()) form->Unload(ui::CloseReason::kOwnerCloses);
  return 0;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  SearchLibrariesInSystemFoldersOnly();
  try {
    return Run();
  } catch (const std::exception& failure) {
    MessageBoxA(nullptr, failure.what(), "Harbourline", MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
    return 1;
  }
}
