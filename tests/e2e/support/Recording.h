#pragma once

#include <string>
#include <vector>

/// The recording plug-in as tests see it: registered, scripted, and its record read back.
class Recording {
 public:
  static constexpr char kClass[] = "Harbourline.Recording";
  static constexpr char kClassB[] = "Harbourline.RecordingB";

  /// Registers the plug-in's classes, clears the scripts, and begins a record of its own for programs started
  /// from now on.
  Recording();
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  /// Sets a script value of the class.
  static void Script(const std::string& className, const std::string& name, const std::string& value);
  static void Script(const std::string& name, const std::string& value) { Script(kClass, name, value); }

  /// Registers, as that class, a copy of the plug-in at `path` whose header says that it is for the other
  /// width of Windows. False when that can't be done.
  static bool RegisterOfOtherWidth(const std::string& className, const std::string& path);

  /// All lines so far. The monitor asks for warnings three times a second; those lines are left out.
  std::vector<std::string> Lines() const;
  /// The lines from the one with that number on.
  std::vector<std::string> LinesFrom(std::size_t first) const;
  /// The lines of one member, without class and member.
  std::vector<std::string> Calls(const std::string& member) const;

  /// Lets the class's event source raise an event in the running program; false when no source is there.
  static bool Raise(const std::string& className, const std::string& event);

 private:
  std::string path_;
};
