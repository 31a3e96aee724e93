#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/Error.h"
#include "ui/Font.h"

namespace ui {

/// The stored properties of a control, in the order in which they were written.
class PropertyBag {
 public:
  using Value = std::variant<std::string, std::int16_t, std::int32_t, bool, Font, std::vector<std::byte>>;
  struct Property {
    std::string key;
    Value value;

    bool operator==(const Property&) const = default;
  };

  PropertyBag() = default;
  PropertyBag(std::initializer_list<Property> properties) : properties_(properties) {}

  const std::vector<Property>& Properties() const { return properties_; }
  /// A key is written once.
  void Write(std::string key, Value value) { properties_.push_back({std::move(key), std::move(value)}); }
  /// A property that is missing reads as the default; one of another type is a failure.
  template <typename Type>
  Type Read(std::string_view key, Type defaultValue) const {
    const auto property = std::ranges::find(properties_, key, &Property::key);
    if (property == properties_.end()) return defaultValue;
    const Type* value = std::get_if<Type>(&property->value);
    if (!value) {
      throw base::Error(base::ErrorNumber::kTypeMismatch,
                        "The property \"" + std::string(key) + "\" is of another type");
    }
    return *value;
  }

 private:
  std::vector<Property> properties_;
};

}  // namespace ui
