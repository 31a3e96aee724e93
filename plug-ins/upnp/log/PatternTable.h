#pragma once

#include <span>
#include <string_view>

namespace upnp::log {

struct RouterPattern {
  /// Whose routers write so, for whoever adds to the table.
  std::string_view routers;
  /// In the form that LinePattern tells.
  std::string_view pattern;
};

/// What routers write that don't name their values. The first pattern that matches counts, so the longer of
/// two comes first.
std::span<const RouterPattern> PatternTable();

}  // namespace upnp::log
