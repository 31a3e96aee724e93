#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace ui {

/// The one guard at the door of every event that comes in from outside: a click, a tick, a closing window.
/// What is left uncaught is told in one message box with its text and number, and the program goes on. While
/// such a box is up, the same failure from the same place stays silent; what a repeating event (a timer) has
/// told once stays silent for the rest of the run.
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

  /// Tells the failure by the rules above.
  static void Report(std::string_view place, Repeats repeats, const std::exception& failure);
  /// Forgets what timers have told.
  static void Reset();
};

}  // namespace ui
