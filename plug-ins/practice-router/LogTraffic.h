#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <random>
#include <string>

#include "ForwardingTable.h"
#include "HarbourlinePlugIn.h"

namespace practice {

/// Calls back twice a second on the thread that made it, while it is running.
class TrafficTimer {
 public:
  explicit TrafficTimer(std::function<void()> onTick);
  ~TrafficTimer();
  TrafficTimer(const TrafficTimer&) = delete;
  TrafficTimer& operator=(const TrafficTimer&) = delete;

  void Run(bool running);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  std::function<void()> onTick_;
  HWND window_ = nullptr;
  bool running_ = false;
};

/// Makes up what a router's log would say: visitors who knock from outside, and this computer on its way out.
/// All outside addresses and names are from the ranges that are set apart for documentation.
class TrafficMaker {
 public:
  TrafficMaker();
  /// A line to or from `localAddress`, without its miscellaneous text. One in three incoming lines goes to a
  /// port that `table` forwards to `localOctet`, when there is one.
  harbourline::LogLine Next(const std::wstring& localAddress, short localOctet, const ForwardingTable& table);

 private:
  long Between(long least, long most);
  template <class T, std::size_t N>
  const T& OneOf(const T (&choices)[N]);
  std::wstring OutsideAddress();

  std::minstd_rand random_;
};

}  // namespace practice
