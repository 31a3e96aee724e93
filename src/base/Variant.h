#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace base {

/// Anything that is shared by reference count and may be handed across a seam.
class Object {
 public:
  virtual ~Object() = default;
};
using ObjectRef = std::shared_ptr<Object>;

class Variant;
struct Array;
using ArrayRef = std::shared_ptr<Array>;

template <typename T>
inline constexpr bool kIsPlain =
    std::is_same_v<T, std::string> || std::is_same_v<T, std::int16_t> || std::is_same_v<T, std::int32_t> ||
    std::is_same_v<T, double> || std::is_same_v<T, bool>;

/// A value whose kind is known only when the program runs.
/// An Array is shared, not copied, when its Variant is copied.
class Variant {
 public:
  using Value = std::variant<std::monostate, std::string, std::int16_t, std::int32_t, double, bool, ObjectRef,
                             ArrayRef>;

  Variant() = default;
  Variant(std::string text) : value_(std::move(text)) {}
  Variant(std::string_view text) : value_(std::string(text)) {}
  Variant(const char* text) : value_(std::string(text)) {}
  Variant(std::int16_t number) : value_(number) {}
  Variant(std::int32_t number) : value_(number) {}
  Variant(double number) : value_(number) {}
  Variant(bool flag) : value_(flag) {}
  Variant(ArrayRef array) : value_(std::move(array)) {}
  /// A null reference stays an object: it is "no object", not an empty value.
  template <typename T>
  requires std::is_base_of_v<Object, T> Variant(std::shared_ptr<T> object)
      : value_(ObjectRef(std::move(object))) {}

  /// As the constructors, but an empty Variant takes the value without another Variant in between: an export
  /// asks for millions.
  template <typename T>
  requires kIsPlain<std::remove_cvref_t<T>> Variant& operator=(T&& plain) {
    if (IsEmpty()) {
      value_.template emplace<std::remove_cvref_t<T>>(std::forward<T>(plain));
    } else {
      value_ = std::forward<T>(plain);
    }
    return *this;
  }

  bool IsEmpty() const { return std::holds_alternative<std::monostate>(value_); }
  bool IsText() const { return std::holds_alternative<std::string>(value_); }
  bool IsBoolean() const { return std::holds_alternative<bool>(value_); }
  bool IsObject() const { return std::holds_alternative<ObjectRef>(value_); }
  bool IsArray() const { return std::holds_alternative<ArrayRef>(value_); }
  const Value& Get() const { return value_; }

 private:
  Value value_;
};

/// The ordinary conversions of a late-bound value. Empty is "", 0, false; a boolean is -1 or 0 as a number;
/// text goes by the rules of Conversions.h; a number is true when it isn't zero. Anything else fails with
/// TypeMismatch.
std::string ToText(const Variant& value);
std::int16_t ToInt16(const Variant& value);
std::int32_t ToInt32(const Variant& value);
bool ToBoolean(const Variant& value);
/// The reference in the value: empty for an empty value, a failure for any other kind.
ObjectRef ToObject(const Variant& value);

enum class ElementType { kText, kInt16, kInt32, kBoolean, kObject };

/// One-dimensional array with bounds of its own: lowerBound to UpperBound(), which is lowerBound - 1 when
/// empty.
struct Array {
  ElementType type = ElementType::kText;
  std::int32_t lowerBound = 0;
  std::vector<Variant> elements;

  std::int32_t UpperBound() const { return lowerBound + static_cast<std::int32_t>(elements.size()) - 1; }
  /// Fails with the subscript error outside the bounds.
  const Variant& At(std::int32_t index) const;
};

ArrayRef MakeArray(ElementType type, std::int32_t lowerBound, std::vector<Variant> elements);

/// An object whose values can be read and written by name from outside the program.
class Record : public Object {
 public:
  /// The names in the order of their identifiers, which count from 1.
  virtual std::span<const std::string_view> PropertyNames() const = 0;
  /// `index` counts from 0 in the order of PropertyNames.
  virtual Variant Property(std::size_t index) const = 0;
  /// Converts by the ordinary rules; a value that can't be converted fails and changes nothing.
  virtual void SetProperty(std::size_t index, const Variant& value) = 0;
};

}  // namespace base
