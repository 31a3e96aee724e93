#include "base/Failures.h"

#include <algorithm>

#include "base/Conversions.h"
#include "base/Error.h"

namespace base {
namespace {

constexpr std::size_t kMost = 4;

std::string WithNumber(const std::string& text, std::int32_t number) {
  return text + " (" + ToText(number) + ")";
}

}  // namespace

void Failures::Keep(const std::exception& failure) {
  const auto* const error = dynamic_cast<const Error*>(&failure);
  Kept kept{error ? error->Number() : 0, failure.what()};
  if (!first_) first_ = std::current_exception();
  const auto isKnown = [&kept](const Kept& other) { return other.text == kept.text; };
  if (kept_.size() < kMost && std::none_of(kept_.begin(), kept_.end(), isKnown)) {
    kept_.push_back(std::move(kept));
  }
}

void Failures::Rethrow() const {
  if (!first_) return;
  if (kept_.size() == 1) std::rethrow_exception(first_);
  std::string text;
  for (std::size_t i = 0; i + 1 < kept_.size(); ++i) {
    text += WithNumber(kept_[i].text, kept_[i].number) + "\r\n";
  }
  throw Error(kept_.back().number, text + kept_.back().text);
}

std::string Describe(const std::exception& failure) {
  const auto* const error = dynamic_cast<const Error*>(&failure);
  return error ? WithNumber(error->Text(), error->Number()) : failure.what();
}

}  // namespace base
