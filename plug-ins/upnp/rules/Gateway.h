#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace upnp {

enum class Protocol { kTcp, kUdp };

/// What a router tells its mappings apart by: the port that the Internet sees, and the protocol.
using PortKey = std::pair<std::uint16_t, Protocol>;

/// One entry of a router's table.
struct PortMapping {
  std::uint16_t externalPort = 0;
  std::uint16_t lastExternalPort = 0;  ///< of a range that a router has as one entry, else 0
  Protocol protocol = Protocol::kTcp;
  std::string client;  ///< dotted address of the computer that receives
  std::uint16_t internalPort = 0;
  std::string description;
  std::uint32_t lease = 0;  ///< seconds; when read, what is left of them; 0 for ever
  bool enabled = true;
  std::string remoteHost;  ///< empty: anybody may come in

  PortKey Key() const { return {externalPort, protocol}; }
};

/// What came of one call of the router.
class Answer {
 public:
  static Answer Done() { return {Kind::kDone, 0}; }
  /// The router refused with this UPnP error code; some makers have codes of their own, also below zero.
  static Answer Refused(int code) { return {Kind::kRefused, code}; }
  static Answer NoAnswer() { return {Kind::kNoAnswer, 0}; }
  /// A batch stopped before this one.
  static Answer NotTried() { return {Kind::kNotTried, 0}; }

  bool IsDone() const { return kind_ == Kind::kDone; }
  bool IsNoAnswer() const { return kind_ == Kind::kNoAnswer; }
  bool IsNotTried() const { return kind_ == Kind::kNotTried; }
  bool IsRefused() const { return kind_ == Kind::kRefused; }
  bool IsRefused(int code) const { return IsRefused() && code_ == code; }
  /// The UPnP error code of a refusal.
  int Code() const { return code_; }

 private:
  enum class Kind { kDone, kRefused, kNoAnswer, kNotTried };
  Answer(Kind kind, int code) : kind_(kind), code_(code) {}
  Kind kind_;
  int code_;
};

/// The UPnP error codes that mean something to the rules.
namespace error {
inline constexpr int kConnectionCut =
    0;  ///< no code of the standard's: no answer from a router that is there
inline constexpr int kInvalidAction = 401;
inline constexpr int kInvalidArguments = 402;
inline constexpr int kActionFailed = 501;
inline constexpr int kNotAuthorized = 606;
inline constexpr int kEndOfTable = 713;
inline constexpr int kNoSuchEntry = 714;
inline constexpr int kOwnedByAnother = 718;
inline constexpr int kOnlyPermanentLeases = 725;
inline constexpr int kTableFull = 728;
inline constexpr int kUsedByRouter = 729;
}  // namespace error

/// One entry as it was asked for by its key.
struct Lookup {
  Answer answer = Answer::NotTried();
  PortMapping mapping;  ///< when the answer is Done
};

/// True when the router says that it has no such entry.
bool IsMissing(const Answer& answer);

/// What came of an addition.
struct Granted {
  Answer answer = Answer::NotTried();
  std::uint32_t lease = 0;         ///< seconds; 0 for ever
  std::uint16_t externalPort = 0;  ///< not every kind of gateway gives the port that was asked for
};

/// What came of one addition of many.
struct Added {
  Granted granted;
  Lookup readBack;  ///< as it stood in the table right afterwards
};

struct ConnectionStatus {
  bool connected = false;
  std::string text;          ///< the router's own word, "Connected" for instance
  std::uint32_t upTime = 0;  ///< seconds
};

/// What a kind of gateway can do.
struct Traits {
  bool readsTable = true;  ///< without a table an addition's answer and our own clock have to do
  bool forOthers = true;   ///< maps ports to other computers than the one that asks
  bool permanent = true;   ///< knows leases without an end
  int lanes = 1;           ///< calls that may be under way at once, each on a thread of its own
};

/// The calls of a router's WAN connection. Each waits for the router, with a bound of its own.
class Gateway {
 public:
  virtual ~Gateway() = default;
  virtual Traits Abilities() const { return {}; }
  virtual Granted Add(const PortMapping& mapping) = 0;
  virtual Answer Delete(const PortKey& key) = 0;
  /// By position from 0; behind the last entry the router refuses.
  virtual Answer EntryAt(std::uint32_t index, PortMapping& mapping) = 0;
  virtual Answer Entry(const PortKey& key, PortMapping& mapping) = 0;
  virtual Answer ExternalAddress(std::string& address) = 0;
  virtual Answer Status(ConnectionStatus& status) = 0;
};

}  // namespace upnp
