#pragma once

#include <cstdint>
#include <string>

/// A port and the name of its service, as the log shows it.
class CPortDefinition {
 public:
  std::int32_t lPort = 0;
  std::string sDescription;
};
