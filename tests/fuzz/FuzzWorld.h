#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "settings/CRegistry.h"
#include "support/World.h"

namespace fuzz {

/// Ends the run with the input that led here.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "This doesn't hold: %s\n", what);
  std::abort();
}

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The world in memory with its files in a folder, and with the program's state. It is made once for all
/// inputs.
struct World : support::World {
  World() {
    process.path = folder.PathOf("Harbourline.exe");
    g_Registry = std::make_unique<CRegistry>();
  }
  ~World() { g_Registry.reset(); }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// What the world has kept of the input before goes.
  void Forget() {
    journal.clear();
    debug.lines.clear();
    settings.reads.clear();
    objects.created.clear();
    toolkit.messages.clear();
  }
};

}  // namespace fuzz
