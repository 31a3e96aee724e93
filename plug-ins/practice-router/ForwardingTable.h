#pragma once

#include <cstddef>
#include <vector>

#include "HarbourlinePlugIn.h"

namespace practice {

/// The port-forwarding table of the router, in the order in which its entries arrived.
/// It takes every entry as it is sent: neither ports nor hosts are judged.
class ForwardingTable {
 public:
  /// Brings the table to the wish of the computer `localOctet`:
  /// - its own entries become exactly those that the request has for it;
  /// - an entry of another computer that the request wants cleared loses the protocols of the request, and
  /// goes when
  ///   none is left;
  /// - an entry for another computer joins the table, or takes the place of the one with the same ports, host
  /// and
  ///   protocols. Every other entry of another computer stays.
  /// Removals come before additions, whatever their order in the request.
  void Apply(const std::vector<harbourline::Mapping>& request, short localOctet);

  const std::vector<harbourline::Mapping>& Entries() const { return entries_; }

 private:
  void RemoveLocal(short localOctet);
  void Clear(const std::vector<harbourline::Mapping>& request);
  void Add(const std::vector<harbourline::Mapping>& request, short localOctet);

  std::vector<harbourline::Mapping> entries_;
};

/// "TCP", "UDP", "TCP+UDP" or nothing.
std::wstring ProtocolText(const harbourline::Mapping& mapping);

/// Writes the table to the file that the environment variable HARBOURLINE_PRACTICE_TABLE names, for
/// demonstrations; without the variable it does nothing. UTF-8, one line a mapping:
///   profile|description|begin-end|TCP or UDP or TCP+UDP|last octet
/// The file is replaced as a whole, so a reader never sees half of it.
void WriteTableForDemonstration(const ForwardingTable& table);

}  // namespace practice
