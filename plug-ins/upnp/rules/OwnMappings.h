#pragma once

#include <map>
#include <string>
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

  void Remember(const std::string& router, const PortMapping& mapping);
  void Forget(const std::string& router, const PortKey& key);
  /// Writes to the store, if something has changed.
  void Save();

  /// True when we put a mapping of that port to that computer on that router.
  bool Has(const std::string& router, const PortMapping& mapping) const;
  /// The mappings on one router; of each only key and client are known.
  std::vector<PortMapping> On(const std::string& router) const;

 private:
  MappingStore& store_;
  std::map<std::string, std::map<PortKey, std::string>> clients_;
  bool changed_ = false;
};

}  // namespace upnp
