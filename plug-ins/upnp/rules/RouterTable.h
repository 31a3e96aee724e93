#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "rules/Clock.h"
#include "rules/Gateway.h"
#include "rules/GatewaySession.h"

namespace upnp {

/// Entries that a reading of a router's table asks for at most.
inline constexpr std::uint32_t kMostTableEntries = 10000;

/// What a reading of the whole table found.
struct TableReading {
  std::vector<PortMapping> entries;
  bool complete = false;                    ///< the router said where its table ends
  bool noAnswer = false;                    ///< the router fell silent
  Answer firstAnswer = Answer::NotTried();  ///< to the question for the first entry
};

/// Reads the table entry by entry, to its end, to kMostTableEntries, to `deadline`, until the router says the
/// same entry again and again, or until `goOn` answers false.
TableReading ReadTable(GatewaySession& session, const Clock& clock, Moment deadline,
                       const std::function<bool()>& goOn);

/// What we know about the ports of a router. A port that was asked for and isn't there is known to be free.
class KnownPorts {
 public:
  enum class State { kUnknown, kFree, kTaken };

  /// Entries for one caller from the Internet leave their port free for everybody else, and so do those that
  /// name no computer: some routers fill their table with them.
  void Learn(const PortMapping& mapping);
  void Learn(const TableReading& reading);
  void LearnFree(const PortKey& key);

  State StateOf(const PortKey& key) const;
  /// The mapping of a port that is taken, else nothing. Of a range of ports the one port.
  std::optional<PortMapping> Find(const PortKey& key) const;
  /// The mappings of single ports.
  const std::map<PortKey, PortMapping>& Taken() const { return ports_; }

 private:
  std::map<PortKey, PortMapping> ports_;
  std::vector<PortMapping> ranges_;
  std::set<PortKey> free_;
  bool complete_ = false;  ///< every port that wasn't learned is free
};

}  // namespace upnp
