#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "rules/BackOff.h"
#include "rules/Clock.h"
#include "rules/Gateway.h"
#include "rules/GatewayChoice.h"
#include "rules/KnownRouters.h"
#include "rules/MappingKeeper.h"
#include "rules/OwnMappings.h"
#include "rules/Problem.h"
#include "rules/RestartWatch.h"
#include "rules/SearchWait.h"
#include "rules/SsdpMessage.h"
#include "rules/Trace.h"
#include "rules/Wish.h"

namespace upnp {

/// What came of a search.
struct SearchResult {
  std::vector<FoundGateway> gateways;  ///< every connection of every gateway that answered
  bool calledOff = false;              ///< it was ended from outside, so who is missing may be there
};

/// What the rules ask of the network. Each call waits, with a bound of its own.
class Network {
 public:
  virtual ~Network() = default;
  virtual SearchResult Search(const SearchAim& aim) = 0;
  /// The addresses of the gateways of this computer's default routes, the best first.
  virtual std::vector<std::string> DefaultGateways() = 0;
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
  bool foreign = false;  ///< nothing is opened on the router in use before the user says yes to it
};

/// Keeps the wish of the program on the router that is in use, and finds that router.
class Engine {
 public:
  /// Between two checks.
  static constexpr Moment kCheckInterval = std::chrono::seconds(30);

  /// Between two searches while the router in use isn't the one that should be.
  static constexpr Moment kBetterInterval = std::chrono::seconds(60);
  /// A router that is silent for no longer than this is waited for; then another one is taken.
  static constexpr Moment kHoldOn = std::chrono::minutes(3);
  /// Announcements lead to one look at the router in this time, whatever is announced.
  static constexpr Moment kQuietAfterNews = std::chrono::seconds(10);

  /// For the farewell, while the program waits for its end.
  static constexpr Moment kFarewell = std::chrono::seconds(5);

  /// `chosenDevice` is the user's choice, or empty.
  Engine(Network& network, OwnMappings& own, KnownRouters& known, const Clock& clock, Progress& progress,
         Trace& trace, std::string chosenDevice);

  /// Takes a request of the program and brings the router to the whole wish.
  void Want(const Wish& request);
  /// Looks after the router and the mappings: what is missing comes back.
  void Check();
  /// Takes an announcement; checks at once, or as soon as kQuietAfterNews allows, when it says that the
  /// router restarted or is back.
  void Hear(const SsdpMessage& message);
  /// This computer's network or its clock made a leap: looks after everything at once.
  void LookAround();
  /// Looks for routers anew, until all have had the time to answer.
  void SearchAgain();
  /// The user chose a router by its identifier, or none (empty), and says yes to the one that is used then.
  /// Our mappings leave the router before.
  void Choose(const std::string& device);
  /// The user says yes to the router in use.
  void AcceptRouter();
  /// Takes all that is ours off the router and puts the wish on it anew.
  void SetAnew();
  /// Seconds for which routers are asked to keep a mapping; before the first wish.
  void AskForLease(std::uint32_t lease);
  /// A DMZ host was asked for, or no longer.
  void WantExposedHost(bool wanted);
  /// Takes all that is ours off the router, for kFarewell at most.
  void Leave();
  /// The mappings that the last farewell had to leave.
  std::vector<PortMapping> Remaining() const { return own_.Owed(current_.device); }
  /// The whole table of the router, as far as it goes.
  TableReading ReadWholeTable();

  /// True while a run was ended from outside and is to be taken up again.
  bool IsUnfinished() const { return keeper_ && !keeper_->IsFinished(); }
  /// When Check is to be called again.
  Moment NextCheck() const { return nextCheck_; }
  const Report& State() const { return report_; }

 private:
  /// What announcements want to be looked at.
  struct News {
    bool restarted = false;
    bool search = false;
  };

  bool Find(bool thorough = false);
  const FoundGateway* Pick();
  void Use(const FoundGateway& found);
  void LeaveCurrent();
  void LookAfter(const News& news);
  News ReadNews(const SsdpMessage& message);
  bool IsWorthTheWait() const;
  bool IsSecondBest() const;
  bool IsForeign() const;
  void MakeKeeper();
  void Drop();
  bool Observe(bool& restarted);
  void ApplyWish();
  void Schedule();
  void Publish();
  void TraceProblems();

  Network& network_;
  OwnMappings& own_;
  KnownRouters& known_;
  const Clock& clock_;
  Progress& progress_;
  Trace& trace_;
  std::string chosen_;

  WishMemory memory_;
  Wish wish_;
  bool asked_ = false;  ///< the program has told a wish
  bool anew_ = false;   ///< the router may have lost its mappings since they were put there
  std::uint32_t lease_ = MappingKeeper::kLease;
  bool exposedHost_ = false;
  FoundGateway current_;
  std::unique_ptr<Gateway> gateway_;
  std::unique_ptr<MappingKeeper> keeper_;
  RestartWatch restarts_;
  bool silent_ = false;  ///< the router in use didn't answer last time
  bool gone_ = false;    ///< the router in use took its leave
  std::vector<FoundGateway> found_;
  std::vector<std::string> routes_;  ///< the default gateways of the last search
  Moment lastSearch_{};
  std::optional<Moment> awaySince_;  ///< the router that should be used wasn't found since then
  std::string missed_;               ///< that router, while another one is used in its place
  BackOff backOff_;
  News news_;          ///< not looked at yet
  Moment lastNews_{};  ///< was looked at
  Moment nextCheck_{};
  Report report_;
  std::string tracedProblems_;
};

}  // namespace upnp
