#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "rules/Gateway.h"

namespace upnp {

/// Where the list of our mappings outlives the program.
class MappingStore {
 public:
  virtual ~MappingStore() = default;
  virtual std::string LoadMappings() = 0;
  virtual void SaveMappings(const std::string& text) = 0;
};

/// The mappings that we put on routers and haven't taken off again. It is written before a router is asked,
/// so that no mapping is forgotten by an end of the program at any moment.
class OwnMappings {
 public:
  /// Reads what the store has; lines that make no sense are left out.
  explicit OwnMappings(MappingStore& store);

  /// The description is what the router is known to show for it: what was asked for, or what it made of that.
  void Remember(const std::string& router, const PortMapping& mapping);
  void Forget(const std::string& router, const PortKey& key);
  /// All mappings on the router are to be taken off, at the next occasion if not now.
  void OweAll(const std::string& router);
  /// Writes to the store, if something has changed.
  void Save();

  /// True when we put a mapping of that port to that computer on that router.
  bool Has(const std::string& router, const PortMapping& mapping) const;
  /// True when, besides, the router is known to show it with this description, or with more of it.
  bool IsShownAs(const std::string& router, const PortMapping& mapping) const;
  /// The mappings on one router; of each only key, client and description are known.
  std::vector<PortMapping> On(const std::string& router) const;
  /// Those that are to be taken off.
  std::vector<PortMapping> Owed(const std::string& router) const;

 private:
  struct Own {
    std::string client;
    std::string description;
    bool owed = false;
    friend bool operator==(const Own&, const Own&) = default;
  };

  void ReadLine(std::string_view line);
  const Own* Find(const std::string& router, const PortMapping& mapping) const;

  MappingStore& store_;
  std::map<std::string, std::map<PortKey, Own>> mappings_;
  bool changed_ = false;
};

}  // namespace upnp
