#include "ui/EventGuard.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/Conversions.h"
#include "base/Error.h"
#include "ui/MessageBox.h"

namespace ui {
namespace {

struct Failure {
  std::string place;
  std::string text;

  bool operator==(const Failure&) const = default;
};

std::vector<Failure> onScreen;
std::vector<Failure> toldByTimers;

std::string Describe(const std::exception& failure) {
  if (const auto* error = dynamic_cast<const base::Error*>(&failure)) {
    return error->Text() + " (" + base::ToText(error->Number()) + ")";
  }
  return failure.what();
}

bool Contains(const std::vector<Failure>& failures, const Failure& failure) {
  return std::find(failures.begin(), failures.end(), failure) != failures.end();
}

}  // namespace

void EventGuard::Report(std::string_view place, Repeats repeats, const std::exception& failure) {
  const Failure told{std::string(place), Describe(failure)};
  if (Contains(onScreen, told)) return;
  if (repeats == Repeats::kYes) {
    if (Contains(toldByTimers, told)) return;
    toldByTimers.push_back(told);
  }
  struct OnScreen {
    const Failure& failure;
    explicit OnScreen(const Failure& f) : failure(f) { onScreen.push_back(f); }
    ~OnScreen() { std::erase(onScreen, failure); }
  } up(told);
  ShowMessage(told.text, MessageIcon::kCritical);
}

void EventGuard::Reset() {
  toldByTimers.clear();
}

}  // namespace ui
