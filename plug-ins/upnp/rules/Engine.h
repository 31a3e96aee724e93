#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "rules/Clock.h"
#include "rules/Gateway.h"
#include "rules/GatewayChoice.h"
#include "rules/MappingKeeper.h"
#include "rules/OwnMappings.h"
#include "rules/Problem.h"
#include "rules/RestartWatch.h"
#include "rules/SsdpMessage.h"
#include "rules/Wish.h"

namespace upnp {

/// What the rules ask of the network. Each call waits, with a bound of its own.
class Network {
 public:
  virtual ~Network() = default;
  /// Every connection of every gateway that answers now.
  virtual std::vector<FoundGateway> Search() = 0;
  virtual std::unique_ptr<Gateway> Connect(const FoundGateway& gateway) = 0;
  /// The address from which this computer reaches the gateway now; empty when it can't.
  virtual std::string LocalAddressTowards(const FoundGateway& gateway) = 0;
};

/// What is known at this moment, for everybody who may not wait.
struct Report {
  bool functional = false;  ///< a router was found and answered last time
  FoundGateway current;     ///< the router in use; without one its device is empty
  std::vector<FoundGateway> gateways;
  std::vector<Problem> problems;
  bool unmet = false;    ///< something that is wished isn't on the router
  bool warning = false;  ///< the user should look at the problems
};

/// Keeps the wish of the program on the router that is in use, and finds that router.
class Engine {
 public:
  /// Between two checks.
  static constexpr Moment kCheckInterval = std::chrono::seconds(30);

  /// `chosenDevice` is the user's choice, or empty.
  Engine(Network& network, OwnMappings& own, const Clock& clock, Progress& progress,
         std::string chosenDevice);

  /// Takes a request of the program and brings the router to the whole wish.
  void Want(const Wish& request);
  /// Looks after the router and the mappings: what is missing comes back.
  void Check();
  /// Takes an announcement; checks at once when it says that the router restarted or is back.
  void Hear(const SsdpMessage& message);
  /// Looks for routers anew.
  void SearchAgain();
  /// The user chose a router by its identifier, or none (empty). Our mappings leave the router before.
  void Choose(const std::string& device);
  /// A DMZ host was asked for, or no longer.
  void WantExposedHost(bool wanted);
  /// Takes all that is ours off the router.
  void Leave();
  /// The whole table of the router, as far as it goes.
  TableReading ReadWholeTable();

  /// True while a run was ended from outside and is to be taken up again.
  bool IsUnfinished() const { return keeper_ && !keeper_->IsFinished(); }
  const Report& State() const { return report_; }

 private:
  void Find();
  void Use(const FoundGateway& found);
  void MakeKeeper();
  void Drop();
  bool Observe(bool& restarted);
  void ApplyWish();
  void Publish();

  Network& network_;
  OwnMappings& own_;
  const Clock& clock_;
  Progress& progress_;
  std::string chosen_;

  WishMemory memory_;
  Wish wish_;
  bool asked_ = false;  ///< the program has told a wish
  bool exposedHost_ = false;
  FoundGateway current_;
  std::unique_ptr<Gateway> gateway_;
  std::unique_ptr<MappingKeeper> keeper_;
  RestartWatch restarts_;
  bool silent_ = false;  ///< the router in use didn't answer last time
  bool gone_ = false;    ///< the router in use took its leave
  std::vector<FoundGateway> found_;
  Moment lastSearch_{};
  Report report_;
};

}  // namespace upnp
