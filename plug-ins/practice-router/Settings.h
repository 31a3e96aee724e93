#pragma once

#include <string>

namespace practice {

/// What the router remembers from run to run, under HKEY_CURRENT_USER\Software\Harbourline Practice Router.
struct Settings {
  std::wstring wanAddress = L"203.0.113.7";
  bool functional = true;
  bool warning = false;
  bool refusePortForwarding = false;
  bool makeLogTraffic = true;
  bool enableLog = false;
  long dmzHost = 0;  ///< last octet; 0 for none

  /// A value that is missing or of another kind keeps its default.
  static Settings Load();
  /// Throws harbourline::Failure when the registry refuses.
  void Save() const;
};

}  // namespace practice
