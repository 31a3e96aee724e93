#include "driver/Controls.h"

#include <commctrl.h>

#include <array>
#include <memory>

namespace desktop {
namespace {

constexpr std::size_t kLongestText = 1024;
constexpr UINT kPatience = 2000;

/// Room in another process, for messages that carry addresses.
class Remote {
 public:
  explicit Remote(HWND window) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    process_ = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
    if (process_) room_ = VirtualAllocEx(process_, nullptr, kSize, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  }
  ~Remote() {
    if (room_) VirtualFreeEx(process_, room_, 0, MEM_RELEASE);
    if (process_) CloseHandle(process_);
  }
  Remote(const Remote&) = delete;
  Remote& operator=(const Remote&) = delete;

  bool IsThere() const { return room_ != nullptr; }
  char* Text() const { return static_cast<char*>(room_) + kSize / 2; }
  LPARAM Address() const { return reinterpret_cast<LPARAM>(room_); }

  template <typename Value>
  void Write(const Value& value) const {
    WriteProcessMemory(process_, room_, &value, sizeof value, nullptr);
  }
  template <typename Value>
  Value Read() const {
    Value value{};
    ReadProcessMemory(process_, room_, &value, sizeof value, nullptr);
    return value;
  }
  std::string ReadText() const {
    std::array<char, kLongestText> text{};
    ReadProcessMemory(process_, Text(), text.data(), text.size() - 1, nullptr);
    return text.data();
  }

 private:
  static constexpr std::size_t kSize = 2 * kLongestText;

  HANDLE process_ = nullptr;
  void* room_ = nullptr;
};

/// The control's answer; 0 when it doesn't come in time.
LRESULT Ask(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
  DWORD_PTR answer = 0;
  if (!SendMessageTimeoutA(control, message, wParam, lParam, SMTO_ABORTIFHUNG, kPatience, &answer)) return 0;
  return static_cast<LRESULT>(answer);
}

RECT OnScreen(HWND control, RECT place) {
  RECT inner{};
  GetClientRect(control, &inner);
  RECT seen{};
  if (!IntersectRect(&seen, &place, &inner)) return {};
  MapWindowPoints(control, nullptr, reinterpret_cast<POINT*>(&seen), 2);
  return seen;
}

std::vector<Item> ListViewItems(HWND list, const Remote& remote) {
  std::vector<Item> items;
  const auto count = static_cast<int>(Ask(list, LVM_GETITEMCOUNT, 0, 0));
  for (int row = 0; row < count; ++row) {
    LVITEMA question{};
    question.pszText = remote.Text();
    question.cchTextMax = static_cast<int>(kLongestText);
    remote.Write(question);
    Ask(list, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), remote.Address());
    Item item{remote.ReadText(), {}};
    RECT place{};
    place.left = LVIR_LABEL;
    remote.Write(place);
    if (Ask(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), remote.Address())) {
      item.place = OnScreen(list, remote.Read<RECT>());
    }
    items.push_back(std::move(item));
  }
  return items;
}

std::vector<Item> ListBoxItems(HWND list) {
  std::vector<Item> items;
  const auto count = static_cast<int>(Ask(list, LB_GETCOUNT, 0, 0));
  for (int row = 0; row < count; ++row) {
    // The system itself carries a list box's texts and places from one process to another.
    std::array<wchar_t, kLongestText> text{};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(list, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0, SMTO_ABORTIFHUNG, kPatience,
                        &length);
    if (length < text.size()) {
      SendMessageTimeoutW(list, LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()),
                          SMTO_ABORTIFHUNG, kPatience, nullptr);
    }
    std::array<char, kLongestText> bytes{};
    WideCharToMultiByte(CP_ACP, 0, text.data(), -1, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                        nullptr);
    RECT place{};
    Ask(list, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    items.push_back({bytes.data(), OnScreen(list, place)});
  }
  return items;
}

std::vector<Item> TreeNodes(HWND tree, const Remote& remote) {
  std::vector<Item> items;
  LRESULT node = Ask(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
  while (node) {
    TVITEMA question{};
    question.mask = TVIF_TEXT;
    question.hItem = reinterpret_cast<HTREEITEM>(node);
    question.pszText = remote.Text();
    question.cchTextMax = static_cast<int>(kLongestText);
    remote.Write(question);
    Ask(tree, TVM_GETITEMA, 0, remote.Address());
    Item item{remote.ReadText(), {}};
    // The node is named in the place where its rectangle comes.
    remote.Write(node);
    if (Ask(tree, TVM_GETITEMRECT, TRUE, remote.Address())) {
      item.place = OnScreen(tree, remote.Read<RECT>());
    }
    items.push_back(std::move(item));
    node = Ask(tree, TVM_GETNEXTITEM, TVGN_NEXTVISIBLE, node);
  }
  return items;
}

std::vector<Item> ToolBarButtons(HWND bar, const Remote& remote) {
  std::vector<Item> items;
  const auto count = static_cast<int>(Ask(bar, TB_BUTTONCOUNT, 0, 0));
  for (int button = 0; button < count; ++button) {
    Item item{std::to_string(button + 1), {}};
    if (Ask(bar, TB_GETITEMRECT, static_cast<WPARAM>(button), remote.Address())) {
      item.place = OnScreen(bar, remote.Read<RECT>());
    }
    items.push_back(std::move(item));
  }
  return items;
}

struct Search {
  std::string_view name;
  HWND found = nullptr;
};

/// The first one of the name that is visible, else the last hidden one: several pages have a "cmdBrowse".
BOOL CALLBACK IsNamed(HWND window, LPARAM argument) {
  Search& search = *reinterpret_cast<Search*>(argument);
  if (ControlName(window) != search.name) return TRUE;
  search.found = window;
  return !IsWindowVisible(window);
}

HWND FindInside(HWND parent, std::string_view name) {
  Search search{name};
  EnumChildWindows(parent, &IsNamed, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND FindBelow(HWND window, std::string_view path) {
  while (window && !path.empty()) {
    const std::size_t point = path.find('.');
    window = FindInside(window, path.substr(0, point));
    path.remove_prefix(point == path.npos ? path.size() : point + 1);
  }
  return window;
}

BOOL CALLBACK CollectAll(HWND window, LPARAM windows) {
  reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

}  // namespace

std::string ControlName(HWND window) {
  const auto atom = reinterpret_cast<std::uintptr_t>(GetPropA(window, "HarbourlineControl"));
  if (atom == 0 || atom > 0xFFFF) return {};
  std::array<char, 256> name{};
  GlobalGetAtomNameA(static_cast<ATOM>(atom), name.data(), static_cast<int>(name.size()));
  return name.data();
}

HWND FindControl(std::string_view program, std::string_view path) {
  std::vector<HWND> windows;
  EnumWindows(&CollectAll, reinterpret_cast<LPARAM>(&windows));
  const std::size_t point = path.find('.');
  const std::string_view outermost = path.substr(0, point);
  const std::string_view rest = point == path.npos ? std::string_view() : path.substr(point + 1);
  for (const HWND window : windows) {
    if (ControlName(window).empty() || ProgramOf(window) != program) continue;
    const HWND found = ControlName(window) == outermost ? FindBelow(window, rest) : FindBelow(window, path);
    if (found) return found;
  }
  return nullptr;
}

std::vector<Item> ItemsOf(HWND control) {
  const Remote remote(control);
  if (!remote.IsThere()) return {};
  std::array<char, 64> name{};
  // The kind beneath a class of our own: "SysListView32", "ListBox" and so on.
  RealGetWindowClassA(control, name.data(), static_cast<UINT>(name.size()));
  const std::string_view kind(name.data());
  if (kind == "SysListView32") return ListViewItems(control, remote);
  if (kind == "SysTreeView32") return TreeNodes(control, remote);
  if (kind == "ToolbarWindow32") return ToolBarButtons(control, remote);
  if (kind == "ListBox") return ListBoxItems(control);
  return {};
}

}  // namespace desktop
