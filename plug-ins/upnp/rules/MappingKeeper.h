#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "rules/Clock.h"
#include "rules/Gateway.h"
#include "rules/OwnMappings.h"
#include "rules/Problem.h"
#include "rules/RouterTable.h"
#include "rules/Wish.h"

namespace upnp {

/// Told while a long work goes on.
class Progress {
 public:
  virtual ~Progress() = default;
  /// `done` of `total` ports. False asks for an end as soon as possible.
  virtual bool GoOn(std::size_t done, std::size_t total) = 0;
};

/// Keeps the wanted mappings on one router. It takes away and replaces only what is ours: what bears our mark
/// and leads to this computer, or stands in our own list.
class MappingKeeper {
 public:
  /// Seconds for which the router is asked to keep a mapping; it is renewed when half of them are over.
  static constexpr std::uint32_t kLease = 3600;
  /// Ports that go to the router between two looks at the progress.
  static constexpr std::size_t kBatch = 64;

  /// `router` is the identifier of the device, by which our own list knows it.
  MappingKeeper(Gateway& gateway, std::string router, std::string localAddress, OwnMappings& own,
                const Clock& clock, Progress& progress);

  /// Brings the router to the wanted state. One reading of the table, and no more when nothing is to be
  /// changed.
  void Apply(WantedState wanted);
  /// Looks whether the wanted mappings are still there, brings back what is missing, and renews what is due.
  void Check();
  /// Takes all that is ours off the router.
  void RemoveAll();

  /// What stands against the wish, since the last Apply or Check.
  const std::vector<Problem>& Problems() const { return problems_; }
  /// False after a run in which the router fell silent or which was ended from outside.
  bool IsFinished() const { return finished_; }

 private:
  /// How long a mapping of ours lasts.
  struct Held {
    Moment renewAt{};
    bool permanent = false;
  };
  /// A range that the router refused, which isn't tried at each check.
  struct Refusal {
    Problem problem;
    Moment tryAgainAt{};
  };
  /// One port of a run of additions.
  struct Addition {
    std::size_t port;  ///< in wanted_.ports
    bool made = false;
  };

  bool IsOurs(const PortMapping& mapping) const;
  bool IsRight(const PortMapping& found, const PortMapping& wanted) const;
  Problem ProblemOf(const WantedPort& port, Trouble trouble, const std::string& who, int code) const;
  Problem RefusalOf(const WantedPort& port, const Answer& answer);
  void Refuse(std::size_t range, const Problem& problem);
  void FallSilent();

  KnownPorts ReadWholeTable();
  bool Look(std::span<const PortKey> keys, KnownPorts& known);
  void LookByTable(std::span<const PortKey> keys, KnownPorts& known);
  void ForgetWhatIsGone(const KnownPorts& known);
  void RemoveUnwanted(KnownPorts& known);
  bool Remove(const PortMapping& mapping);
  void AddMissing(const KnownPorts& known);
  void AddBatch(std::span<Addition> batch);
  void AddAgain(Addition& addition, Answer answer);
  void TakeReadBack(const Lookup& readBack);
  void ReadBack(std::span<Addition> additions);
  void SetBack(std::span<const Addition> additions);
  void Hold(const PortMapping& found, std::uint32_t asked);
  void Renew(const std::vector<std::size_t>& due);
  void Publish();

  Gateway& gateway_;
  std::string router_;
  std::string localAddress_;
  OwnMappings& own_;
  const Clock& clock_;
  Progress& progress_;

  WantedState wanted_;
  std::map<PortKey, Held> held_;
  std::map<std::size_t, Refusal> refusals_;  ///< by range
  std::map<PortKey, Problem> leftovers_;     ///< ours that the router didn't let go
  std::vector<Problem> problems_;
  bool permanentOnly_ = false;
  KnownPorts readBack_;         ///< what stood in the table after the additions of a run
  bool singlesUnread_ = false;  ///< the router doesn't tell single entries
  bool unreadable_ = false;     ///< the router tells no entries at all
  bool endlessTable_ = false;   ///< the table took too long to read, or has no end
  bool finished_ = true;
  bool silent_ = false;
};

}  // namespace upnp
