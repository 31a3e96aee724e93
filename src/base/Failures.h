#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

namespace base {

/// Runs the parts of a task one after the other, whatever happens in them: what doesn't need the result of a
/// part that failed still happens. What failed is kept for the end.
class Failures {
 public:
  /// False when the part threw.
  template <typename Part>
  bool Run(Part&& part) {
    try {
      part();
      return true;
    } catch (const std::exception& failure) {
      Keep(failure);
      return false;
    }
  }

  bool Any() const { return first_ != nullptr; }
  /// Throws when a part failed: the one failure as it was, or an Error whose text has the different ones, a
  /// line each. Of many only the first few are kept.
  void Rethrow() const;

 private:
  void Keep(const std::exception& failure);

  struct Kept {
    std::int32_t number = 0;
    std::string text;
  };
  std::exception_ptr first_;
  std::vector<Kept> kept_;
};

/// The text that a user reads of any failure: with its number when it is an Error.
std::string Describe(const std::exception& failure);

}  // namespace base
