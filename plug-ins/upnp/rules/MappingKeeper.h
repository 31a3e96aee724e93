#pragma once

#include <cstddef>
#include <map>
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
  /// One port of a run of additions.
  struct Addition {
    std::size_t port;  ///< in wanted_.ports
    bool made = false;
    std::uint32_t lease = 0;  ///< as granted
  };

  bool IsOurs(const PortMapping& mapping) const;
  bool IsRight(const PortMapping& found, const PortMapping& wanted) const;
  Problem ProblemOf(const WantedPort& port, Trouble trouble, const std::string& who, int code) const;
  Problem RefusalOf(const WantedPort& port, const Answer& answer);
  void Begin();
  void End();
  void FallSilent();
  bool Continue(TableReader::End end);

  std::vector<PortKey> KeysThatMatter() const;
  void ForgetWhatIsGone(const KnownPorts& known);
  void RemoveUnwanted(KnownPorts& known);
  bool Remove(const PortMapping& mapping);
  void AddMissing(const KnownPorts& known);
  bool AddInBatches(std::span<Addition> additions);
  void AddBatch(std::span<Addition> batch);
  PortMapping Request(const WantedPort& port) const;
  void AddAgain(Addition& addition, Granted granted);
  void ReadBack(std::span<Addition> additions);
  void SetBack(std::span<const Addition> additions);
  void Renew(const std::vector<std::size_t>& due);

  GatewaySession session_;
  std::string router_;
  std::string localAddress_;
  OwnMappings& own_;
  Progress& progress_;

  TableReader reader_;
  LeaseBook leases_;
  WantedState wanted_;
  Refusals refusals_;
  std::map<PortKey, Problem> leftovers_;  ///< ours that the router didn't let go
  std::vector<Problem> problems_;
  KnownPorts readBack_;  ///< what stood in the table after the additions of a run
  bool finished_ = true;
  bool silent_ = false;
};

}  // namespace upnp
