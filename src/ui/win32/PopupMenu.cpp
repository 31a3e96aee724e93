#include "ui/win32/PopupMenu.h"

#include <algorithm>

#include "platform/win32/SystemError.h"
#include "ui/Menu.h"

namespace ui::win32 {
namespace {

bool HasVisibleEntries(const Menu& menu) {
  return std::any_of(menu.Children().begin(), menu.Children().end(),
                     [](const Control* child) { return child->Visible(); });
}

Menu* FindByName(const Control& menu, const std::string& name) {
  for (Control* child : menu.Children()) {
    if (child->Name() == name) return static_cast<Menu*>(child);
    if (Menu* below = FindByName(*child, name)) return below;
  }
  return nullptr;
}

base::Error Failure() {
  return platform::win32::WindowsError("A menu can't be made", static_cast<LSTATUS>(GetLastError()));
}

}  // namespace

PopupMenu::PopupMenu(const Menu& menu) : native_(Build(menu)) {}

PopupMenu::~PopupMenu() {
  DestroyMenu(native_);
}

HMENU PopupMenu::Build(const Menu& menu) {
  const HMENU native = CreatePopupMenu();
  if (!native) throw Failure();
  for (const Control* child : menu.Children()) {
    if (child->Visible()) Append(native, static_cast<const Menu&>(*child));
  }
  return native;
}

void PopupMenu::Append(HMENU native, const Menu& entry) {
  if (entry.IsSeparator()) {
    AppendMenuA(native, MF_SEPARATOR, 0, nullptr);
    return;
  }
  UINT flags = MF_STRING;
  if (entry.Checked()) flags |= MF_CHECKED;
  if (!entry.Enabled()) flags |= MF_GRAYED;
  UINT_PTR item = 0;
  if (HasVisibleEntries(entry)) {
    flags |= MF_POPUP;
    item = reinterpret_cast<UINT_PTR>(Build(entry));
  } else {
    commands_.push_back({entry.Name(), entry.Caption()});
    item = commands_.size();
  }
  AppendMenuA(native, flags, item, entry.Caption().c_str());
}

int PopupMenu::Show(HWND owner, POINT place) const {
  // The menu closes at a click elsewhere only when its owner is in front...
  SetForegroundWindow(owner);
  const UINT side = GetSystemMetrics(SM_MENUDROPALIGNMENT) ? TPM_RIGHTALIGN : TPM_LEFTALIGN;
  const int command = TrackPopupMenu(native_, side | TPM_RIGHTBUTTON | TPM_RETURNCMD | TPM_NONOTIFY, place.x,
                                     place.y, 0, owner, nullptr);
  // ...and the owner has handled one more message since.
  PostMessageA(owner, WM_NULL, 0, 0);
  return command;
}

Menu* PopupMenu::Find(Menu& menu, int command) const {
  if (command < 1 || static_cast<std::size_t>(command) > commands_.size()) return nullptr;
  const Command& chosen = commands_[static_cast<std::size_t>(command - 1)];
  Menu* entry = FindByName(menu, chosen.name);
  return entry && entry->Caption() == chosen.caption ? entry : nullptr;
}

}  // namespace ui::win32
