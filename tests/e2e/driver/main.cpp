// The desktop for scripts: finds windows, tells their texts and places, presses keys and buttons.

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "driver/Controls.h"
#include "driver/Desktop.h"
#include "driver/Input.h"

namespace {

constexpr int kDone = 0;
constexpr int kNotFound = 1;
constexpr int kWrongUse = 2;

int Usage() {
  std::fputs(
      "driver windows [--program FILE] [--class NAME] [--title TEXT] [--within SECONDS] [--gone]\n"
      "    The visible top-level windows that match, the frontmost first, one a line:\n"
      "    handle, x, y, width, height, program, class and title, with tabs between them.\n"
      "    Waits up to so many seconds until there is one, or with --gone until there is none.\n"
      "    Exit code 0 when it is so, 1 when it isn't.\n"
      "driver inside HANDLE\n"
      "    The visible windows inside that one, in the same form. Line ends in a text are told as \\n.\n"
      "driver control PATH [--within SECONDS] [--gone]\n"
      "    The visible control of Harbourline.exe with that name, or names from the outside in with '.' "
      "between\n"
      "    them, in the same form. Waits and answers as `windows` does.\n"
      "driver items PATH\n"
      "    The rows, nodes or buttons of that control: x, y, width, height and text, with tabs between "
      "them.\n"
      "    One that isn't in view has no size.\n"
      "driver keys KEYS\n"
      "    Letters as they stand, keys by name: {ENTER} {ESC} {TAB} {SPACE} {UP} {DOWN} {LEFT} {RIGHT} ...\n"
      "driver click X Y [right]\n",
      stderr);
  return kWrongUse;
}

struct Search {
  std::optional<std::string> program;
  std::optional<std::string> className;
  std::optional<std::string> title;
  double seconds = 0;
  bool gone = false;
};

std::vector<desktop::Window> Find(const Search& search) {
  const auto matches = [](const std::optional<std::string>& wanted, const std::string& text) {
    return !wanted || lstrcmpiA(wanted->c_str(), text.c_str()) == 0;
  };
  std::vector<desktop::Window> found;
  for (desktop::Window& window : desktop::TopLevelWindows()) {
    if (matches(search.program, window.program) && matches(search.className, window.className) &&
        matches(search.title, window.text)) {
      found.push_back(std::move(window));
    }
  }
  return found;
}

std::string OnOneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '\n') {
      line += "\\n";
    } else if (c != '\r') {
      line += c == '\t' ? ' ' : c;
    }
  }
  return line;
}

void Print(const std::vector<desktop::Window>& windows) {
  for (const desktop::Window& window : windows) {
    const RECT& place = window.place;
    std::printf("%llu\t%ld\t%ld\t%ld\t%ld\t%s\t%s\t%s\n",
                static_cast<unsigned long long>(reinterpret_cast<ULONG_PTR>(window.handle)), place.left,
                place.top, place.right - place.left, place.bottom - place.top, window.program.c_str(),
                window.className.c_str(), OnOneLine(window.text).c_str());
  }
}

/// Asks until something is found, or with `gone` until nothing is, for up to so many seconds; prints what was
/// found last.
template <typename Ask>
int Await(double seconds, bool gone, Ask ask) {
  const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(seconds * 1000);
  std::vector<desktop::Window> found = ask();
  while (found.empty() != gone && GetTickCount64() < end) {
    Sleep(20);
    found = ask();
  }
  Print(found);
  return found.empty() == gone ? kDone : kNotFound;
}

int Windows(const std::vector<std::string>& arguments) {
  Search search;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--gone") {
      search.gone = true;
      continue;
    }
    if (i + 1 == arguments.size()) return Usage();
    const std::string& value = arguments[i + 1];
    if (arguments[i] == "--program") {
      search.program = value;
    } else if (arguments[i] == "--class") {
      search.className = value;
    } else if (arguments[i] == "--title") {
      search.title = value;
    } else if (arguments[i] == "--within") {
      search.seconds = std::atof(value.c_str());
    } else {
      return Usage();
    }
    ++i;
  }

  return Await(search.seconds, search.gone, [&] { return Find(search); });
}

/// The visible control as a list of one.
std::vector<desktop::Window> VisibleControl(const std::string& path) {
  const HWND control = desktop::FindControl("Harbourline.exe", path);
  if (!control || !IsWindowVisible(control)) return {};
  return {desktop::Describe(control)};
}

int Control(const std::vector<std::string>& arguments) {
  double seconds = 0;
  bool gone = false;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (arguments[i] == "--gone") {
      gone = true;
    } else if (arguments[i] == "--within" && i + 1 < arguments.size()) {
      seconds = std::atof(arguments[++i].c_str());
    } else {
      return Usage();
    }
  }
  return Await(seconds, gone, [&] { return VisibleControl(arguments[0]); });
}

int Items(const std::string& path) {
  const HWND control = desktop::FindControl("Harbourline.exe", path);
  if (!control) return kNotFound;
  for (const desktop::Item& item : desktop::ItemsOf(control)) {
    std::printf("%ld\t%ld\t%ld\t%ld\t%s\n", item.place.left, item.place.top,
                item.place.right - item.place.left, item.place.bottom - item.place.top,
                OnOneLine(item.text).c_str());
  }
  return kDone;
}

int Run(const std::vector<std::string>& arguments) {
  if (arguments.empty()) return Usage();
  const std::string& command = arguments[0];
  if (command == "windows") return Windows({arguments.begin() + 1, arguments.end()});
  if (command == "inside" && arguments.size() == 2) {
    const auto handle = reinterpret_cast<HWND>(std::strtoull(arguments[1].c_str(), nullptr, 10));
    if (!IsWindow(handle)) return kNotFound;
    Print(desktop::Inside(handle));
    return kDone;
  }
  if (command == "control" && arguments.size() >= 2) return Control({arguments.begin() + 1, arguments.end()});
  if (command == "items" && arguments.size() == 2) return Items(arguments[1]);
  if (command == "keys" && arguments.size() == 2) return desktop::Type(arguments[1]) ? kDone : kNotFound;
  if (command == "click" && (arguments.size() == 3 || (arguments.size() == 4 && arguments[3] == "right"))) {
    return desktop::Click(std::atoi(arguments[1].c_str()), std::atoi(arguments[2].c_str()),
                          arguments.size() == 4 ? desktop::MouseButton::kRight : desktop::MouseButton::kLeft)
               ? kDone
               : kNotFound;
  }
  return Usage();
}

}  // namespace

int main(int count, char** values) {
  // Scripts that read the lines don't expect carriage returns.
  _setmode(_fileno(stdout), _O_BINARY);
  return Run({values + 1, values + count});
}
