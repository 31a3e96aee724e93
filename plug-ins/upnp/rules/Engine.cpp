#include "rules/Engine.h"

#include <algorithm>
#include <utility>

#include "rules/Addresses.h"
#include "rules/TracingGateway.h"

namespace upnp {

namespace {

constexpr Moment kTableTime = std::chrono::seconds(15);
/// Work that was ended from outside is taken up again.
constexpr Moment kTakeUpAgain = std::chrono::seconds(1);
constexpr char kNoAddress[] = "0.0.0.0";

Problem Plain(Trouble trouble, const std::string& who = {}) {
  return {trouble, 0, 0, Protocol::kTcp, who, 0};
}

}  // namespace

Engine::Engine(Network& network, OwnMappings& own, KnownRouters& known, const Clock& clock,
               Progress& progress, Trace& trace, std::string chosenDevice)
    : network_(network),
      own_(own),
      known_(known),
      clock_(clock),
      progress_(progress),
      trace_(trace),
      chosen_(std::move(chosenDevice)),
      lastNews_(-kQuietAfterNews) {}

/// Without a router, and with one that falls silent, a wish searches once.
void Engine::Want(const Wish& request) {
  wish_ = memory_.Take(request);
  asked_ = true;
  trace_.Line("wish: " + std::to_string(wish_.mappings.size()) + " mappings");
  backOff_.Reset();
  const bool mayBeSilent = gateway_ != nullptr;
  if (!gateway_) Find();
  ApplyWish();
  if (silent_ && mayBeSilent && Find()) ApplyWish();
  Schedule();
  Publish();
}

void Engine::Check() {
  const News news = std::exchange(news_, {});
  if (news.restarted || news.search) lastNews_ = clock_.Now();
  LookAfter(news);
  Schedule();
  Publish();
}

void Engine::LookAfter(const News& news) {
  bool restarted = false;
  const bool answers = gateway_ && Observe(restarted);
  anew_ = anew_ || restarted || news.restarted;
  const bool search = news.search || (IsSecondBest() && clock_.Now() - lastSearch_ >= kBetterInterval);
  if (!answers || search) {
    if (!Find()) return;
    return ApplyWish();
  }
  // Nothing was wished yet, so nothing is known to be unwanted.
  if (!asked_ || IsForeign()) return;
  if (anew_ || !keeper_->IsFinished()) return ApplyWish();
  keeper_->Check();
  silent_ = !keeper_->IsFinished() && HasTrouble(keeper_->Problems(), Trouble::kNoAnswer);
}

void Engine::LookAround() {
  backOff_.Reset();
  if (network_.DefaultGateways() != routes_) news_.search = true;
  Check();
}

void Engine::Hear(const SsdpMessage& message) {
  const News news = ReadNews(message);
  if (!news.restarted && !news.search) return;
  trace_.Line("announcement of " + message.device + " from " + message.sender +
              (news.restarted ? ": restarted" : ": to be looked for"));
  news_.restarted = news_.restarted || news.restarted;
  news_.search = news_.search || news.search;
  const Moment earliest = std::max(lastNews_, news_.search ? lastSearch_ : lastNews_) + kQuietAfterNews;
  if (clock_.Now() >= earliest) return Check();
  nextCheck_ = std::min(nextCheck_, earliest);
}

/// Only the router in use speaks about itself; of others it only matters that they are there.
Engine::News Engine::ReadNews(const SsdpMessage& message) {
  News news;
  if (message.type.find(":InternetGatewayDevice:") == std::string::npos) return news;
  const bool ours = gateway_ && message.device == current_.announced && message.sender == current_.Address();
  if (ours && message.kind == SsdpMessage::Kind::kGone) gone_ = true;
  if (message.kind != SsdpMessage::Kind::kAlive) return news;
  if (ours && !silent_) {
    news.restarted = restarts_.Notice({message.bootId, std::nullopt, std::nullopt}) || gone_;
    news.search = !message.location.empty() && message.location != current_.location;
    gone_ = false;
    return news;
  }
  const bool known = std::any_of(found_.begin(), found_.end(), [&](const FoundGateway& gateway) {
    return gateway.announced == message.device && gateway.Address() == message.sender;
  });
  // A router that restarted may have another identifier by now.
  const bool sameHost = gateway_ && message.sender == current_.Address();
  const std::vector<std::string> routes = network_.DefaultGateways();
  const bool onRoute = std::find(routes.begin(), routes.end(), message.sender) != routes.end();
  const bool better = sameHost || IsSecondBest() || (onRoute && !current_.onDefaultRoute);
  news.search = !gateway_ || silent_ || (!known && better);
  return news;
}

void Engine::SearchAgain() {
  const bool had = gateway_ != nullptr;
  const std::string before = current_.device;
  if (Find(true) && (!had || current_.device != before)) ApplyWish();
  Schedule();
  Publish();
}

void Engine::Choose(const std::string& device) {
  chosen_ = device;
  missed_.clear();
  awaySince_.reset();
  if (gateway_ && !device.empty() && device != current_.device) {
    LeaveCurrent();
    const auto found = ChooseGateway(found_, device);
    if (found) {
      Use(FoundGateway(found_[*found]));
    } else {
      Find();
    }
  } else if (!gateway_) {
    Find();
  }
  AcceptRouter();
}

void Engine::AcceptRouter() {
  if (gateway_) {
    trace_.Line("the user says yes to " + current_.name + " at " + current_.Address());
    known_.Accept(current_);
    known_.Recognise(found_);
    current_.own = true;
  }
  ApplyWish();
  Schedule();
  Publish();
}

void Engine::SetAnew() {
  if (!gateway_ || silent_) Find();
  if (gateway_ && !silent_ && asked_ && !IsForeign()) {
    keeper_->RemoveAll();
    anew_ = true;
    ApplyWish();
  }
  Schedule();
  Publish();
}

void Engine::AskForLease(std::uint32_t lease) {
  if (std::exchange(lease_, lease) != lease && keeper_) MakeKeeper();
}

void Engine::WantExposedHost(bool wanted) {
  exposedHost_ = wanted;
  Publish();
}

void Engine::Leave() {
  own_.OweAll(current_.device);
  own_.Save();
  if (keeper_ && !silent_) keeper_->RemoveAll(clock_.Now() + kFarewell);
  // What comes after the farewell must bring nothing back.
  asked_ = false;
  wish_ = {};
  Publish();
}

TableReading Engine::ReadWholeTable() {
  if (!gateway_) return {};
  GatewaySession session(*gateway_);
  return ReadTable(session, clock_, clock_.Now() + kTableTime, [this] { return progress_.GoOn(0, 0); });
}

/// False when no router can be used now.
bool Engine::Find(bool thorough) {
  SearchAim aim;
  aim.device = chosen_.empty() || chosen_ == current_.device ? current_.announced : chosen_;
  if (gateway_ && (chosen_.empty() || chosen_ == current_.device)) aim.address = current_.Address();
  aim.routes = network_.DefaultGateways();
  aim.thorough = thorough;
  SearchResult result = network_.Search(aim);
  // What was ended halfway says nothing about those who are missing.
  if (result.calledOff) return gateway_ && !silent_;
  lastSearch_ = clock_.Now();
  routes_ = aim.routes;
  known_.Recognise(result.gateways);
  for (FoundGateway& gateway : result.gateways) {
    gateway.onDefaultRoute = std::find(routes_.begin(), routes_.end(), gateway.Address()) != routes_.end();
    gateway.own = gateway.own || gateway.device == chosen_;
  }
  found_ = BestOfEachDevice(std::move(result.gateways));
  const FoundGateway* picked = Pick();
  trace_.Line("search: " + std::to_string(found_.size()) + " routers, " +
              (picked ? "taken: " + picked->name + " at " + picked->Address() : std::string("none taken")));
  if (!picked) {
    silent_ = true;
    backOff_.Failed();
    return false;
  }
  backOff_.Reset();
  Use(FoundGateway(*picked));
  return true;
}

/// The router to use among those that were found: the user's choice, or the one in use unless another one is
/// clearly better. While that one is missing, nothing for some minutes, and then the best of the others.
const FoundGateway* Engine::Pick() {
  const std::string wanted = !chosen_.empty() ? chosen_ : !missed_.empty() ? missed_ : current_.device;
  const auto at = wanted.empty() ? std::nullopt : ChooseGateway(found_, wanted);
  if (at) {
    missed_.clear();
    awaySince_.reset();
    const FoundGateway& found = found_[*at];
    const FoundGateway& best = found_.front();
    // No outage at home is a reason to leave it for somebody else's router.
    const bool free = chosen_.empty() && (best.own || !found.own);
    return free && IsWorthTheMove(best, found) ? &best : &found;
  }
  if (found_.empty()) {
    if (!wanted.empty() && !awaySince_) awaySince_ = clock_.Now();
    return nullptr;
  }
  if (wanted.empty() || !IsWorthTheWait()) return &found_.front();
  if (!awaySince_) awaySince_ = clock_.Now();
  if (clock_.Now() - *awaySince_ >= kHoldOn) {
    missed_ = wanted;
    return &found_.front();
  }
  return nullptr;
}

/// A router that is missing is worth waiting for when it is the user's, unless this computer is in another
/// network by now.
bool Engine::IsWorthTheWait() const {
  const bool moved = gateway_ && current_.onDefaultRoute &&
                     std::find(routes_.begin(), routes_.end(), current_.Address()) == routes_.end();
  return !chosen_.empty() || !missed_.empty() || (current_.own && !moved);
}

/// Another router than the one that is wanted is in use, or one without a connection.
bool Engine::IsSecondBest() const {
  return gateway_ && !silent_ && (!missed_.empty() || !current_.connected);
}

/// A router that the user hasn't said yes to. The first one that is ever used needs no yes.
bool Engine::IsForeign() const {
  return gateway_ && !known_.IsEmpty() && !known_.Has(current_.device) && current_.device != chosen_;
}

void Engine::LeaveCurrent() {
  if (!silent_ && keeper_) keeper_->RemoveAll();
  Drop();
}

void Engine::Use(const FoundGateway& found) {
  if (gateway_ && found.device != current_.device) LeaveCurrent();
  if (found.device != current_.device) {
    restarts_.Reset();
    gone_ = false;
  }
  const bool same = gateway_ && found.device == current_.device && found.controlUrl == current_.controlUrl &&
                    found.serviceType == current_.serviceType;
  const bool moved = !same || found.localAddress != current_.localAddress;
  const bool back = same && silent_;
  current_ = found;
  silent_ = false;
  if (!same) {
    keeper_.reset();
    gateway_ = std::make_unique<TracingGateway>(network_.Connect(current_), trace_, clock_);
  }
  if (moved) {
    MakeKeeper();
    if (!asked_) keeper_->RemoveOwed();
  }
  const bool restarted = restarts_.Notice({found.bootId, std::nullopt, found.wanAddress});
  anew_ = same && (anew_ || restarted || back);
}

void Engine::MakeKeeper() {
  keeper_ = std::make_unique<MappingKeeper>(*gateway_, current_.device, current_.localAddress, own_, clock_,
                                            progress_, lease_);
}

void Engine::Drop() {
  keeper_.reset();
  gateway_.reset();
  current_ = {};
  restarts_.Reset();
}

/// Asks the router how it is. False when it doesn't answer.
bool Engine::Observe(bool& restarted) {
  ConnectionStatus status;
  const Answer statusAnswer = gateway_->Status(status);
  std::string address;
  // Some routers cut the connection at a question that they lack.
  const Answer addressAnswer = gateway_->ExternalAddress(address);
  const bool wasSilent = std::exchange(silent_, statusAnswer.IsNoAnswer() && addressAnswer.IsNoAnswer());
  if (silent_) return false;
  Signs signs;
  if (statusAnswer.IsDone()) {
    current_.connected = status.connected;
    signs.upTime = status.upTime;
  } else if (addressAnswer.IsDone()) {
    current_.connected = !address.empty() && address != kNoAddress;
  }
  if (addressAnswer.IsDone()) signs.wanAddress = current_.wanAddress = address;
  // Behind a silence there may have been a restart.
  restarted = restarts_.Notice(signs) || gone_ || wasSilent;
  if (restarted) trace_.Line("the router restarted, or has a new WAN address");
  gone_ = false;
  const std::string local = network_.LocalAddressTowards(current_);
  if (!local.empty() && local != current_.localAddress) {
    current_.localAddress = local;
    MakeKeeper();
    restarted = true;
  }
  return true;
}

void Engine::ApplyWish() {
  if (!gateway_ || silent_ || !asked_) return;
  if (!wish_.mappings.empty() && (known_.IsEmpty() || current_.device == chosen_)) {
    known_.Accept(current_);
    current_.own = true;
  }
  if (IsForeign()) return;
  const auto manner =
      std::exchange(anew_, false) ? MappingKeeper::Manner::kAnew : MappingKeeper::Manner::kCompare;
  keeper_->Apply(Expand(wish_, current_.localAddress), manner);
  // What was called off goes on in the same manner.
  anew_ = manner == MappingKeeper::Manner::kAnew && !keeper_->IsFinished();
  silent_ = HasTrouble(keeper_->Problems(), Trouble::kNoAnswer);
}

void Engine::Schedule() {
  Moment wait = kCheckInterval;
  if (silent_ || !gateway_) {
    wait = backOff_.Wait();
  } else if (IsUnfinished()) {
    wait = kTakeUpAgain;
  } else if (const auto renewal = keeper_->NextRenewal()) {
    wait = std::min(wait, *renewal - clock_.Now());
  }
  nextCheck_ = clock_.Now() + wait;
}

/// What is told now, when it is another thing than before.
void Engine::TraceProblems() {
  std::string text;
  for (const Problem& problem : report_.problems) text += (text.empty() ? "" : " ") + Explain(problem);
  if (text == tracedProblems_) return;
  tracedProblems_ = text;
  trace_.Line(text.empty() ? std::string("told: all is well") : "told: " + text);
}

void Engine::Publish() {
  report_.functional = gateway_ && !silent_;
  report_.current = current_;
  report_.gateways = found_;
  std::vector<Problem>& problems = report_.problems;
  problems.clear();
  if (keeper_ && !silent_) problems = keeper_->Problems();
  if (silent_)
    problems.push_back(
        Plain(found_.empty() && chosen_.empty() && !gateway_ ? Trouble::kNoRouter : Trouble::kNoAnswer));
  if (report_.functional) {
    const std::string& wan = current_.wanAddress;
    const bool down = !current_.connected || wan.empty() || wan == kNoAddress;
    if (down) problems.push_back(Plain(Trouble::kWanDown));
    if (!down && !IsPublicAddress(wan)) problems.push_back(Plain(Trouble::kDoubleNat, wan));
  }
  report_.foreign = report_.functional && !wish_.mappings.empty() && IsForeign();
  if (report_.foreign)
    problems.push_back(Plain(Trouble::kForeignRouter, current_.name + " at " + current_.Address()));
  const bool wished = !wish_.mappings.empty() || (gateway_ && !own_.On(current_.device).empty());
  report_.unmet = wished && std::any_of(problems.begin(), problems.end(), LeavesTheWishUnmet);
  report_.warning = wished && !problems.empty();
  if (exposedHost_) problems.push_back(Plain(Trouble::kNoExposedHost));
  TraceProblems();
}

}  // namespace upnp
