#pragma once

#include <string>
#include <vector>

#include "rules/GatewayChoice.h"

namespace upnp {

/// Where the list of the user's own routers outlives the program.
class RouterStore {
 public:
  virtual ~RouterStore() = default;
  virtual std::string LoadRouters() = 0;
  virtual void SaveRouters(const std::string& text) = 0;
};

/// The routers on which mappings may be made without a question: the first one that was ever used, and those
/// that the user said yes to. A router is known by its identifier; where that is another one after each
/// restart of the router, by its address together with its model.
class KnownRouters {
 public:
  /// Longer lists aren't kept: the router that was accepted first goes.
  static constexpr std::size_t kMost = 32;

  /// Reads what the store has; lines that make no sense are left out.
  explicit KnownRouters(RouterStore& store);

  bool IsEmpty() const { return routers_.empty(); }
  bool Has(const std::string& device) const;
  /// Gives each router that is known the identifier by which it was accepted, marks it as the user's own, and
  /// remembers where and as what it is met now.
  void Recognise(std::vector<FoundGateway>& found);
  void Accept(const FoundGateway& router);

 private:
  struct Router {
    std::string device;     ///< by which it was accepted; our own lists go by it
    std::string announced;  ///< by which it calls itself now
    std::string address;
    std::string model;
  };

  static Router Signs(const FoundGateway& gateway);
  Router* Find(const FoundGateway& gateway, const std::vector<FoundGateway>& found);
  void Save();

  RouterStore& store_;
  std::vector<Router> routers_;
};

}  // namespace upnp
