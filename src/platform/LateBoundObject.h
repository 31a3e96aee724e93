#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "base/Variant.h"

namespace platform {

/// One argument of a late-bound call. One that goes by reference holds after the call what the callee left in
/// it.
struct Argument {
  base::Variant value;
  bool byReference = false;
};

/// An object of which nothing is known but the names of its members: each name is looked up when it is used.
/// A member that the object lacks, and a failure that it raises, come out as base::Error with the object's
/// own number and text.
class LateBoundObject : public base::Object {
 public:
  virtual base::Variant Get(std::string_view member) = 0;
  virtual void Put(std::string_view member, const base::Variant& value) = 0;
  /// `arguments` stand in the order of their declaration.
  virtual base::Variant Call(std::string_view member, std::span<Argument> arguments) = 0;
};
using LateBoundRef = std::shared_ptr<LateBoundObject>;

}  // namespace platform
