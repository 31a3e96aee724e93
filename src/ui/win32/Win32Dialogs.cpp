#include "ui/win32/Win32Dialogs.h"

#include <windows.h>

#include <commdlg.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/FileDialog.h"
#include "ui/Form.h"
#include "ui/Menu.h"
#include "ui/MessageBox.h"
#include "ui/win32/ModalBlock.h"
#include "ui/win32/PopupMenu.h"
#include "ui/win32/Surroundings.h"

namespace ui::win32 {
namespace {

UINT IconFlag(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kCritical:
      return MB_ICONERROR;
    case MessageIcon::kQuestion:
      return MB_ICONQUESTION;
    case MessageIcon::kWarning:
      return MB_ICONWARNING;
    case MessageIcon::kInformation:
      break;
  }
  return MB_ICONINFORMATION;
}

/// The window that a box stands over: the active one of this thread, if the user sees it.
HWND BoxOwner() {
  const HWND active = GetActiveWindow();
  return active && IsWindowVisible(active) && IsWindowEnabled(active) ? active : nullptr;
}

const Form* FormOf(HWND window) {
  for (const Form* form : Form::LoadedForms()) {
    if (window && reinterpret_cast<HWND>(form->Handle()) == window) return form;
  }
  return nullptr;
}

bool IsProgramInFront() {
  DWORD process = 0;
  GetWindowThreadProcessId(GetForegroundWindow(), &process);
  return process == GetCurrentProcessId();
}

bool IsLoaded(const Form* form) {
  const std::vector<Form*> loaded = Form::LoadedForms();
  return form && std::find(loaded.begin(), loaded.end(), form) != loaded.end();
}

bool StandsBelow(const Control& top, const Control* wanted) {
  return std::any_of(top.Children().begin(), top.Children().end(),
                     [&](const Control* child) { return child == wanted || StandsBelow(*child, wanted); });
}

}  // namespace

MessageResult Win32Dialogs::ShowMessage(const Message& message) {
  const bool question = message.buttons == MessageButtons::kYesNo;
  UINT flags = IconFlag(message.icon) | (question ? MB_YESNO : MB_OK);
  if (!IsProgramInFront()) flags |= MB_SETFOREGROUND;
  const HWND owner = BoxOwner();
  // The box itself keeps the user from its owner.
  const ModalBlock block(FormOf(owner));
  const int answer = MessageBoxA(owner, message.text.c_str(), message.title.c_str(), flags);
  if (answer == IDYES) return MessageResult::kYes;
  return question ? MessageResult::kNo : MessageResult::kOk;
}

Menu* Win32Dialogs::ShowPopupMenu(Menu& menu, Control& owner) {
  Form* const form = owner.ParentForm();
  if (!IsLoaded(form)) return nullptr;
  const PopupMenu native(menu);
  // A window that the user works in keeps its place in front; one that lies behind others isn't brought up
  // for a menu.
  const auto formWindow = reinterpret_cast<HWND>(form->Handle());
  const HWND window = GetForegroundWindow() == formWindow ? formWindow : surroundings_.utility.Window();
  POINT mouse{};
  GetCursorPos(&mouse);
  const POINT place = std::exchange(surroundings_.menuPlace, std::nullopt).value_or(mouse);
  const int command = native.Show(window, place);
  if (command == 0 || !IsLoaded(form) || !StandsBelow(*form, &menu)) return nullptr;
  return native.Find(menu, command);
}

bool Win32Dialogs::ShowFileDialog(FileDialog& dialog) {
  std::string filter = dialog.filter;
  std::replace(filter.begin(), filter.end(), '|', '\0');
  // The list of filters ends by an empty text.
  filter.append(2, '\0');
  // A name with a folder would take the dialog there.
  const std::size_t folderEnd =
      dialog.folder.empty() ? dialog.fileName.npos : dialog.fileName.find_last_of("\\/");
  const std::string name = dialog.fileName.substr(folderEnd == dialog.fileName.npos ? 0 : folderEnd + 1);
  std::vector<char> path(32768);
  name.copy(path.data(), path.size() - 1);
  OPENFILENAMEA request{};
  request.lStructSize = sizeof request;
  request.hwndOwner = BoxOwner();
  request.lpstrFilter = filter.c_str();
  request.nFilterIndex = static_cast<DWORD>(std::max<int>(dialog.filterIndex, 0));
  request.lpstrFile = path.data();
  request.nMaxFile = static_cast<DWORD>(path.size());
  request.lpstrInitialDir = dialog.folder.empty() ? nullptr : dialog.folder.c_str();
  request.lpstrTitle = dialog.title.c_str();
  request.lpstrDefExt = dialog.defaultExtension.empty() ? nullptr : dialog.defaultExtension.c_str();
  // The current folder is the program's own affair.
  request.Flags = dialog.flags | OFN_NOCHANGEDIR | OFN_EXPLORER;
  const ModalBlock block(FormOf(request.hwndOwner));
  if (!(dialog.save ? GetSaveFileNameA(&request) : GetOpenFileNameA(&request))) return false;
  dialog.fileName = path.data();
  dialog.filterIndex = static_cast<std::int16_t>(request.nFilterIndex);
  return true;
}

}  // namespace ui::win32
