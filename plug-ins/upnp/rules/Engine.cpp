#include "rules/Engine.h"

#include <algorithm>
#include <utility>

#include "rules/Addresses.h"

namespace upnp {

namespace {

constexpr Moment kTableTime = std::chrono::seconds(15);
/// A router announces itself by many datagrams in a row.
constexpr Moment kQuietAfterSearch = std::chrono::seconds(5);
constexpr char kNoAddress[] = "0.0.0.0";

Problem Plain(Trouble trouble, const std::string& who = {}) {
  return {trouble, 0, 0, Protocol::kTcp, who, 0};
}

}  // namespace

Engine::Engine(Network& network, OwnMappings& own, const Clock& clock, Progress& progress,
               std::string chosenDevice)
    : network_(network), own_(own), clock_(clock), progress_(progress), chosen_(std::move(chosenDevice)) {}

void Engine::Want(const Wish& request) {
  wish_ = memory_.Take(request);
  asked_ = true;
  if (!gateway_) Find();
  ApplyWish();
  if (silent_) {
    Find();
    if (!silent_) ApplyWish();
  }
  Publish();
}

void Engine::Check() {
  bool restarted = false;
  if (gateway_ && Observe(restarted)) {
    if (!asked_) {
      // Nothing was wished yet, so nothing is known to be unwanted.
    } else if (restarted || !keeper_->IsFinished()) {
      ApplyWish();
    } else {
      keeper_->Check();
      silent_ = !keeper_->IsFinished() && HasTrouble(keeper_->Problems(), Trouble::kNoAnswer);
    }
  } else {
    Find();
    ApplyWish();
  }
  Publish();
}

void Engine::Hear(const SsdpMessage& message) {
  if (message.type.find(":InternetGatewayDevice:") == std::string::npos) return;
  const bool ours = gateway_ && message.device == current_.device;
  if (ours && message.kind == SsdpMessage::Kind::kGone) gone_ = true;
  if (message.kind != SsdpMessage::Kind::kAlive) return;
  const bool waited = clock_.Now() - lastSearch_ >= kQuietAfterSearch;
  if (!ours || silent_) {
    if (waited && (!gateway_ || silent_)) Check();
    return;
  }
  const bool restarted = restarts_.Notice({message.bootId, std::nullopt, std::nullopt}) || gone_;
  const bool moved = waited && !message.location.empty() && message.location != current_.location;
  gone_ = false;
  if (moved) Find();
  if (restarted || moved) {
    ApplyWish();
    Publish();
  }
}

void Engine::SearchAgain() {
  const bool had = gateway_ != nullptr;
  Find();
  if (!had) ApplyWish();
  Publish();
}

void Engine::Choose(const std::string& device) {
  chosen_ = device;
  if (gateway_ && !device.empty() && device != current_.device) {
    if (!silent_) keeper_->RemoveAll();
    Drop();
  }
  const auto known = ChooseGateway(found_, chosen_);
  if (gateway_) return Publish();
  if (known) {
    Use(found_[*known]);
  } else {
    Find();
  }
  ApplyWish();
  Publish();
}

void Engine::WantExposedHost(bool wanted) {
  exposedHost_ = wanted;
  Publish();
}

void Engine::Leave() {
  if (keeper_ && !silent_) keeper_->RemoveAll();
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

/// Without a choice of the user's the router in use stays in use while it is there.
void Engine::Find() {
  found_ = BestOfEachDevice(network_.Search());
  lastSearch_ = clock_.Now();
  std::optional<std::size_t> at;
  if (chosen_.empty() && gateway_) at = ChooseGateway(found_, current_.device);
  if (!at) at = ChooseGateway(found_, chosen_);
  silent_ = !at;
  if (at) Use(found_[*at]);
}

void Engine::Use(const FoundGateway& found) {
  if (found.device != current_.device) {
    restarts_.Reset();
    gone_ = false;
  }
  const bool same = gateway_ && found.device == current_.device && found.controlUrl == current_.controlUrl &&
                    found.serviceType == current_.serviceType;
  const bool moved = !same || found.localAddress != current_.localAddress;
  current_ = found;
  silent_ = false;
  if (!same) {
    keeper_.reset();
    gateway_ = network_.Connect(current_);
  }
  if (moved) MakeKeeper();
  restarts_.Notice({found.bootId, std::nullopt, found.wanAddress});
}

void Engine::MakeKeeper() {
  keeper_ = std::make_unique<MappingKeeper>(*gateway_, current_.device, current_.localAddress, own_, clock_,
                                            progress_);
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
  const Answer addressAnswer = statusAnswer.IsNoAnswer() ? statusAnswer : gateway_->ExternalAddress(address);
  silent_ = addressAnswer.IsNoAnswer();
  if (silent_) return false;
  Signs signs;
  if (statusAnswer.IsDone()) {
    current_.connected = status.connected;
    signs.upTime = status.upTime;
  }
  if (addressAnswer.IsDone()) signs.wanAddress = current_.wanAddress = address;
  restarted = restarts_.Notice(signs) || gone_;
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
  keeper_->Apply(Expand(wish_, current_.localAddress));
  silent_ = HasTrouble(keeper_->Problems(), Trouble::kNoAnswer);
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
  const bool wished = !wish_.mappings.empty() || (gateway_ && !own_.On(current_.device).empty());
  report_.unmet = wished && std::any_of(problems.begin(), problems.end(), LeavesTheWishUnmet);
  report_.warning = wished && !problems.empty();
  if (exposedHost_) problems.push_back(Plain(Trouble::kNoExposedHost));
}

}  // namespace upnp
