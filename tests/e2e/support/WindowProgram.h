#pragma once

#include <windows.h>

#include <string>

/// Another program, with one window of a given class and title.
class WindowProgram {
 public:
  /// Starts it and waits for its window.
  WindowProgram(const std::string& className, const std::string& title);
  /// Ends it when it still runs.
  ~WindowProgram();
  WindowProgram(const WindowProgram&) = delete;
  WindowProgram& operator=(const WindowProgram&) = delete;

  /// True when its window is there.
  bool Runs() const;
  /// Closes the window as a user does and waits for the end; false when that doesn't come.
  bool Close();

 private:
  std::string className_;
  std::string title_;
  PROCESS_INFORMATION process_{};
};
