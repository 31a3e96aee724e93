#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ui/Color.h"

/// Small routines that all parts of the program share.
namespace modCommon {

/// The program's own version: major, minor and revision, joined by ".".
std::string GetVersionString();
std::int32_t MajorVersion();
std::int32_t MinorVersion();

/// Joins a folder and a file name by "\", unless the folder ends with one. An empty folder counts as "\".
std::string MakeFullPath(std::string_view sFolder, std::string_view sFile);

/// The program's help file, set when the state is loaded; full path.
const std::string& HelpFile();
void HelpFile(std::string sFullPathName);

/// Makes keys out of a prefix and a number that counts up.
class UniqueKeyCounter {
 public:
  explicit UniqueKeyCounter(std::int32_t next = 0) : next_(next) {}
  /// When the number behind the next one doesn't fit 32 bits, the count restarts: this call gives 0.
  std::string Next(std::string_view sPrefix);

 private:
  std::int32_t next_;
};

/// The prefix and a number that no other key of this run has, from 0. Keys mean nothing beyond the run.
std::string GetUniqueKey(std::string_view sPrefix);

/// The number behind the third "." of a dotted address, 0 where there is none. Fails beyond 16 bits.
std::int16_t GetLastOctet(std::string_view sIPAddress);

/// True when the machine says that it is connected to the Internet; `lFlags` receives the kind of connection.
bool IsConnectedToInternet(std::int32_t& lFlags);
bool IsConnected();

ui::Color ColorTitle();
ui::Color ColorHelpText();
ui::Color ColorDarkRed();
ui::Color ColorNavy();
ui::Color ColorBackground();

}  // namespace modCommon
