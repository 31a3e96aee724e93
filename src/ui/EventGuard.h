#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace ui {

/// The one guard at the door of every event that comes in from outside: a click, a tick, a closing window.
/// What is left uncaught is shown in one message box with its text and number, and the program goes on. While
/// such a box is up, the same failure from the same place stays silent. Of a repeating event (a timer, the
/// opening of a menu) one failure of a place and a number is shown in the whole run, whatever its text, and
/// no more than a few of one place; the others are traced.
class EventGuard {
 public:
  enum class Repeats { kNo, kYes };

  /// `source` has a Path() that names it in full. True when nothing failed. Costs nothing until something
  /// fails.
  template <typename Source, typename Handler>
  static bool Run(const Source& source, std::string_view event, Repeats repeats, Handler&& handler) {
    try {
      handler();
      return true;
    } catch (const std::exception& failure) {
      Report(source.Path() + "." + std::string(event), repeats, failure);
      return false;
    }
  }

  /// Shows the failure by the rules above.
  static void Report(std::string_view place, Repeats repeats, const std::exception& failure);
  /// Forgets what repeating events have shown.
  static void Reset();

  /// While it lives, a text that was shown isn't shown a second time, from whatever place it comes: several
  /// steps of one task meet the same failure. One at a time.
  class Once {
   public:
    Once();
    ~Once();
    Once(const Once&) = delete;
    Once& operator=(const Once&) = delete;
  };

  /// While one lives, nobody is there to answer a box (the session ends): failures are traced.
  class Unattended {
   public:
    Unattended();
    ~Unattended();
    Unattended(const Unattended&) = delete;
    Unattended& operator=(const Unattended&) = delete;
  };
};

}  // namespace ui
