#pragma once

#include <deque>
#include <string>

#include "ForwardingTable.h"
#include "Settings.h"

namespace practice {

/// One line of the list of calls. A call that repeats the newest line counts up there instead of adding one,
/// because Harbourline asks for warnings three times a second.
struct CallLine {
  std::wstring time;
  std::wstring call;
  std::wstring answer;
  unsigned long count = 1;
};

class CallList {
 public:
  void Add(const std::wstring& call, const std::wstring& answer);
  /// The newest first, at most 200.
  const std::deque<CallLine>& Lines() const { return lines_; }

 private:
  std::deque<CallLine> lines_;
};

/// Everything that the router is at this moment.
struct RouterState {
  Settings settings;
  ForwardingTable table;
  CallList calls;
  short localOctet = 0;         ///< of the last port-forwarding request
  std::wstring localAddress;    ///< as the last call told it; empty before
  std::wstring loggingAddress;  ///< where SetLogging wants the log lines; empty before
  unsigned long linesRaised = 0;
  unsigned long linesFiltered = 0;

  bool MakesTraffic() const {
    return settings.enableLog && settings.makeLogTraffic && !loggingAddress.empty();
  }
  /// The address of a host on the local network by its last octet, as far as the network is known.
  std::wstring HostAddress(long octet) const;
};

}  // namespace practice
