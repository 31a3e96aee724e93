#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "rules/Clock.h"
#include "rules/Gateway.h"
#include "rules/GatewaySession.h"
#include "rules/LeaseBook.h"
#include "rules/OwnMappings.h"
#include "rules/Problem.h"
#include "rules/Progress.h"
#include "rules/Refusals.h"
#include "rules/RouterTable.h"
#include "rules/TableReader.h"
#include "rules/Wish.h"

namespace upnp {

/// Keeps the wanted mappings on one router. It takes away and replaces only what is ours: what bears our mark
/// and leads to this computer, or stands in our own list.
///
/// What the table says is compared with the wish; what it doesn't say is taken to be as it was left, until
/// its lease is over by our own clock.
class MappingKeeper {
 public:
  /// Seconds for which the router is asked to keep a mapping; it is renewed when half of them are over.
  static constexpr std::uint32_t kLease = 3600;
  /// Ports that go to the router between two looks at the progress.
  static constexpr std::size_t kBatch = 64;

  /// Ports that are looked at in one check, in turn, as long as none of them is missing.
  static constexpr std::size_t kSample = 10;
  static constexpr Moment kCheckInterval = std::chrono::seconds(30);

  enum class Manner {
    kCompare,  ///< what is there stays as it is
    kAnew      ///< the router may have restarted: everything is added, whatever its table says
  };

  /// `router` is the identifier of the device, by which our own list knows it. `lease` in seconds.
  MappingKeeper(Gateway& gateway, std::string router, std::string localAddress, OwnMappings& own,
                const Clock& clock, Progress& progress, std::uint32_t lease = kLease);

  /// Brings the router to the wanted state. One reading of the table, and no more when nothing is to be
  /// changed.
  void Apply(WantedState wanted, Manner manner = Manner::kCompare);
  /// Looks whether a sample of the wanted mappings is still there, brings back what is missing, and renews
  /// what is due. When one is missing, all are looked at.
  void Check();
  /// Renews what is due.
  void Renew();
  /// Takes all that is ours off the router, by our own list, what would stay longest first. What remains at
  /// `deadline` is written down.
  void RemoveAll(Moment deadline = Moment::max());
  /// Takes off what a RemoveAll before had to leave.
  void RemoveOwed();

  /// When the next lease is to be renewed.
  std::optional<Moment> NextRenewal() const { return leases_.NextRenewal(); }
  /// What stands against the wish, since the last Apply or Check.
  const std::vector<Problem>& Problems() const { return problems_; }
  /// False after a run in which the router fell silent or which was ended from outside.
  bool IsFinished() const { return finished_; }

 private:
  /// One port of a run of additions.
  struct Addition {
    std::size_t port;      ///< in wanted_.ports
    bool renewal = false;  ///< of a mapping that we hold
    bool made = false;
    std::uint32_t lease = 0;  ///< as granted
  };

  bool IsOurs(const PortMapping& mapping) const;
  bool IsRight(const PortMapping& found, const PortMapping& wanted) const;
  bool IsHopeless(const WantedPort& port) const;
  Problem ProblemOf(const WantedPort& port, Trouble trouble, const std::string& who, int code) const;
  Problem RefusalOf(const WantedPort& port, const Answer& answer);
  void Begin();
  void End();
  void FallSilent();
  bool Continue(TableReader::End end);

  std::vector<PortKey> KeysThatMatter() const;
  std::vector<std::size_t> NextSample();
  bool LookAt(std::span<const std::size_t> ports, KnownPorts& known);
  void ForgetWhatIsGone(const KnownPorts& known);
  void RemoveUnwanted(KnownPorts& known);
  bool Remove(const PortMapping& mapping);
  bool TakeDeletion(const PortMapping& mapping, const Answer& answer);
  bool Confirm(const WantedPort& port, const PortMapping& found);
  void AddMissing(std::span<const std::size_t> ports, const KnownPorts& known, Manner manner, bool blindly);
  void AddInBatches(std::span<Addition> additions, std::size_t total);
  void AddBatch(std::span<Addition> batch);
  bool MayStillBeAdded(const Addition& addition) const;
  PortMapping Request(const WantedPort& port) const;
  Granted Ask(const WantedPort& port);
  Granted AskForPermanent(const WantedPort& port);
  bool MakeRoom(const Addition& addition, const Answer& refusal);
  void AddAgain(Addition& addition, Granted granted);
  void GiveUp(const Addition& addition, const Answer& refusal);
  void LookBack(std::span<Addition> additions);
  void KeepWithoutEnd(std::span<Addition> additions);
  void ReadBack(std::span<Addition> additions);
  void SetBack(std::span<const Addition> additions);
  void RenewDue(const KnownPorts& known);

  GatewaySession session_;
  std::string router_;
  std::string localAddress_;
  OwnMappings& own_;
  const Clock& clock_;
  Progress& progress_;

  TableReader reader_;
  LeaseBook leases_;
  WantedState wanted_;
  Refusals refusals_;
  std::map<PortKey, Problem> leftovers_;  ///< ours that the router didn't let go
  std::vector<Problem> problems_;
  KnownPorts readBack_;        ///< what stood in the table after the additions of a run
  std::size_t nextToSee_ = 0;  ///< in wanted_.ports
  bool compared_ = false;      ///< our list was compared with the router's table
  bool finished_ = true;
  bool silent_ = false;
};

}  // namespace upnp
