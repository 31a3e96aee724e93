#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace upnp {

enum class Protocol { kTcp, kUdp };

/// What a router tells its mappings apart by: the port that the Internet sees, and the protocol.
using PortKey = std::pair<std::uint16_t, Protocol>;

/// One entry of a router's table.
struct PortMapping {
  std::uint16_t externalPort = 0;
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
  static Answer Done() { return Answer(0); }
  /// The router refused with this UPnP error code.
  static Answer Refused(int code) { return Answer(code); }
  static Answer NoAnswer() { return Answer(-1); }
  /// A batch stopped before this one.
  static Answer NotTried() { return Answer(-2); }

  bool IsDone() const { return code_ == 0; }
  bool IsNoAnswer() const { return code_ == -1; }
  bool IsNotTried() const { return code_ == -2; }
  bool IsRefused() const { return code_ > 0; }
  /// The UPnP error code of a refusal.
  int Code() const { return code_; }

 private:
  explicit Answer(int code) : code_(code) {}
  int code_;
};

/// The UPnP error codes that mean something to the rules.
namespace error {
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

/// What came of one addition of many.
struct Added {
  Answer answer = Answer::NotTried();
  Lookup readBack;  ///< as it stood in the table right afterwards
};

struct ConnectionStatus {
  bool connected = false;
  std::string text;          ///< the router's own word, "Connected" for instance
  std::uint32_t upTime = 0;  ///< seconds
};

/// The calls of a router's WAN connection. Each waits for the router, with a bound of its own.
class Gateway {
 public:
  virtual ~Gateway() = default;
  virtual Answer Add(const PortMapping& mapping) = 0;
  virtual Answer Delete(const PortKey& key) = 0;
  /// By position from 0; behind the last entry the router refuses.
  virtual Answer EntryAt(std::uint32_t index, PortMapping& mapping) = 0;
  virtual Answer Entry(const PortKey& key, PortMapping& mapping) = 0;
  virtual Answer ExternalAddress(std::string& address) = 0;
  virtual Answer Status(ConnectionStatus& status) = 0;

  /// Many at once, each read back when it is done, unless `readBack` is false. After the first that isn't
  /// done the rest needn't be tried.
  virtual std::vector<Added> AddAll(std::span<const PortMapping> mappings, bool readBack);
  /// Many at once, one answer each. After the first that is neither an entry nor IsMissing the rest needn't
  /// be tried.
  virtual std::vector<Lookup> Entries(std::span<const PortKey> keys);

 protected:
  Added AddOne(const PortMapping& mapping, bool readBack);
};

}  // namespace upnp
