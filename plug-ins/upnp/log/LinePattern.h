#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log/LineFields.h"

namespace upnp::log {

/// How a router words a line about a packet, written as an example with names in the place of what changes:
///
///     blocked from {source}:{sourcePort} to {destination} {protocol}:{destinationPort}
///
///   {source} {destination}          an address, of IPv6 perhaps in square brackets
///   {sourcePort} {destinationPort}  a decimal number up to 65535
///   {protocol}                      a word of letters and digits
///   {in} {out}                      an interface of the router, up to a blank, a comma, a bracket or "->";
///                                   what stands in round brackets is none
///   {direction}                     a word that begins with "in" or "out"
///   {skip}                          whatever stands before the text that follows next
///
/// A blank stands for one or more; letters match in either case. A pattern begins with text, which may stand
/// anywhere in the line, and what follows the pattern doesn't matter.
class LinePattern {
 public:
  /// Throws std::invalid_argument for a name that isn't in the list, and for a pattern that can't match.
  explicit LinePattern(std::string_view pattern);

  /// `small` is the same line in small letters. Takes time in proportion to the line.
  std::optional<LineFields> Match(std::string_view line, std::string_view small) const;

 private:
  enum class Kind {
    kText,
    kSource,
    kSourcePort,
    kDestination,
    kDestinationPort,
    kProtocol,
    kIn,
    kOut,
    kDirection,
    kSkip,
  };
  struct Step {
    Kind kind;
    std::string text;
  };

  static Kind KindOf(std::string_view name);
  void CheckOrder() const;
  bool MatchAt(std::string_view line, std::string_view small, std::size_t position, LineFields& fields) const;
  static bool TakeStep(Kind kind, std::string_view line, std::size_t& position, LineFields& fields);

  std::vector<Step> steps_;
};

}  // namespace upnp::log
