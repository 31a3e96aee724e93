#include "ui/EventGuard.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Error.h"
#include "base/Failures.h"
#include "platform/Machine.h"
#include "ui/MessageBox.h"

namespace ui {
namespace {

struct Failure {
  std::string place;
  std::string text;

  bool operator==(const Failure&) const = default;
};

/// What a repeating event has shown.
struct Shown {
  std::string place;
  std::int32_t number = 0;

  bool operator==(const Shown&) const = default;
};

constexpr std::ptrdiff_t kMostOfOnePlace = 3;

std::vector<Failure> onScreen;
std::vector<Shown> shownByRepeatingEvents;
/// The texts that were shown since the only Once was made.
std::optional<std::vector<std::string>> shownOnce;
int unattended = 0;

template <typename Item>
bool Contains(const std::vector<Item>& items, const Item& item) {
  return std::find(items.begin(), items.end(), item) != items.end();
}

/// Bounded by the number of the places, which the program has a few dozen of.
bool IsNewOfRepeatingEvent(std::string_view place, const std::exception& failure) {
  const auto* const error = dynamic_cast<const base::Error*>(&failure);
  const Shown shown{std::string(place), error ? error->Number() : 0};
  const auto ofPlace = std::count_if(shownByRepeatingEvents.begin(), shownByRepeatingEvents.end(),
                                     [place](const Shown& other) { return other.place == place; });
  if (ofPlace >= kMostOfOnePlace || Contains(shownByRepeatingEvents, shown)) return false;
  shownByRepeatingEvents.push_back(shown);
  return true;
}

void Trace(const Failure& failure) {
  if (auto* const debug = platform::TheMachine().debug) debug->Trace(failure.place + ": " + failure.text);
}

}  // namespace

void EventGuard::Report(std::string_view place, Repeats repeats, const std::exception& failure) {
  const Failure told{std::string(place), base::Describe(failure)};
  if (unattended > 0) {
    Trace(told);
    return;
  }
  if (Contains(onScreen, told)) return;
  if (repeats == Repeats::kYes && !IsNewOfRepeatingEvent(place, failure)) {
    Trace(told);
    return;
  }
  if (shownOnce) {
    if (Contains(*shownOnce, told.text)) return;
    shownOnce->push_back(told.text);
  }
  struct OnScreen {
    const Failure& failure;
    explicit OnScreen(const Failure& f) : failure(f) { onScreen.push_back(f); }
    ~OnScreen() { std::erase(onScreen, failure); }
  } up(told);
  ShowMessage(told.text, MessageIcon::kCritical);
}

void EventGuard::Reset() {
  shownByRepeatingEvents.clear();
}

EventGuard::Once::Once() {
  shownOnce.emplace();
}

EventGuard::Once::~Once() {
  shownOnce.reset();
}

EventGuard::Unattended::Unattended() {
  ++unattended;
}

EventGuard::Unattended::~Unattended() {
  --unattended;
}

}  // namespace ui
