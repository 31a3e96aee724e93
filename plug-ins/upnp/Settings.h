#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "rules/KnownRouters.h"
#include "rules/OwnMappings.h"

namespace upnp {

/// What the plug-in remembers from run to run, under HKEY_CURRENT_USER\Software\Harbourline UPnP Router.
struct Settings {
  std::string chosenDevice;  ///< identifier of the router that the user chose; empty: the plug-in chooses
  bool enableLog = false;
  std::uint16_t syslogPort = 514;
  std::uint32_t lease = 3600;  ///< seconds for which a router is asked to keep a mapping
  bool trace = false;          ///< what the plug-in does is written to TracePath()

  /// A value that is missing or of another kind keeps its default.
  static Settings Load();
  /// Throws harbourline::Failure when the registry refuses.
  void Save() const;
};

/// UpnpRouter.log, in the user's own folder for data of programs: what is stored in the registry has no
/// folder.
std::filesystem::path TracePath();

/// The list of our mappings, under the same key.
class StoredMappings final : public MappingStore {
 public:
  std::string LoadMappings() override;
  /// A registry that refuses isn't told: the leases end by themselves.
  void SaveMappings(const std::string& text) override;
};

/// The routers that the user said yes to, under the same key.
class StoredRouters final : public RouterStore {
 public:
  std::string LoadRouters() override;
  /// A registry that refuses isn't told: the user is asked again after the next start.
  void SaveRouters(const std::string& text) override;
};

}  // namespace upnp
