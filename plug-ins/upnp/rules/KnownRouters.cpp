#include "rules/KnownRouters.h"

#include <algorithm>
#include <sstream>

namespace upnp {

namespace {

/// Tabs and ends of lines divide the list.
std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char sign) { return sign < ' '; }, ' ');
  return text;
}

}  // namespace

KnownRouters::KnownRouters(RouterStore& store) : store_(store) {
  std::istringstream lines(store.LoadRouters());
  for (std::string line; std::getline(lines, line) && routers_.size() < kMost;) {
    std::istringstream fields(line);
    Router router;
    std::getline(fields, router.device, '\t');
    std::getline(fields, router.announced, '\t');
    std::getline(fields, router.address, '\t');
    std::getline(fields, router.model, '\t');
    if (!router.device.empty() && !router.announced.empty()) routers_.push_back(router);
  }
}

bool KnownRouters::Has(const std::string& device) const {
  return std::any_of(routers_.begin(), routers_.end(),
                     [&](const Router& router) { return router.device == device; });
}

KnownRouters::Router KnownRouters::Signs(const FoundGateway& gateway) {
  const std::string model = gateway.maker + " " + gateway.model;
  return {OneLine(gateway.device), OneLine(gateway.announced.empty() ? gateway.device : gateway.announced),
          gateway.Address(), OneLine(model == " " ? gateway.name : model)};
}

/// The identifier decides. Only a router that isn't there by its identifier may be there by another one.
KnownRouters::Router* KnownRouters::Find(const FoundGateway& gateway,
                                         const std::vector<FoundGateway>& found) {
  const Router signs = Signs(gateway);
  for (Router& router : routers_) {
    if (signs.announced == router.announced || signs.announced == router.device) return &router;
  }
  for (Router& router : routers_) {
    const bool present = std::any_of(found.begin(), found.end(), [&](const FoundGateway& other) {
      return other.announced == router.announced || other.announced == router.device;
    });
    const bool alike = !signs.model.empty() && signs.model == router.model && signs.address == router.address;
    if (!present && alike) return &router;
  }
  return nullptr;
}

void KnownRouters::Recognise(std::vector<FoundGateway>& found) {
  bool changed = false;
  for (FoundGateway& gateway : found) {
    if (gateway.announced.empty()) gateway.announced = gateway.device;
  }
  for (FoundGateway& gateway : found) {
    Router* router = Find(gateway, found);
    gateway.own = router != nullptr;
    if (!router) continue;
    gateway.device = router->device;
    const Router signs = Signs(gateway);
    if (signs.announced == router->announced && signs.address == router->address &&
        signs.model == router->model)
      continue;
    *router = signs;
    changed = true;
  }
  if (changed) Save();
}

void KnownRouters::Accept(const FoundGateway& router) {
  if (router.device.empty() || Has(router.device)) return;
  if (routers_.size() == kMost) routers_.erase(routers_.begin());
  routers_.push_back(Signs(router));
  Save();
}

void KnownRouters::Save() {
  std::string text;
  for (const Router& router : routers_)
    text += router.device + "\t" + router.announced + "\t" + router.address + "\t" + router.model + "\n";
  store_.SaveRouters(text);
}

}  // namespace upnp
