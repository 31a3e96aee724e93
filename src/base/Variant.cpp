#include "base/Variant.h"

#include "base/Conversions.h"
#include "base/Error.h"

namespace base {
namespace {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

Error NoConversion() {
  return Error(ErrorNumber::kTypeMismatch, "Type mismatch");
}

/// Numbers and text go through `convert`, a boolean counts as -1 or 0.
template <typename Result, typename Convert>
Result Numeric(const Variant& value, Convert convert) {
  return std::visit(Overloaded{
                        [](std::monostate) -> Result { return 0; },
                        [&](const std::string& text) -> Result {
                          if (const auto word = Trim(text); EqualsIgnoringCase(word, "True"))
                            return Result(-1);
                          if (EqualsIgnoringCase(Trim(text), "False")) return Result(0);
                          return convert(std::string_view(text));
                        },
                        [](bool flag) -> Result { return Result(flag ? -1 : 0); },
                        [](const ObjectRef&) -> Result { throw NoConversion(); },
                        [](const ArrayRef&) -> Result { throw NoConversion(); },
                        [&](auto number) -> Result { return convert(static_cast<double>(number)); },
                    },
                    value.Get());
}

}  // namespace

std::string ToText(const Variant& value) {
  return std::visit(Overloaded{
                        [](std::monostate) { return std::string(); },
                        [](const std::string& text) { return text; },
                        [](const ObjectRef&) -> std::string { throw NoConversion(); },
                        [](const ArrayRef&) -> std::string { throw NoConversion(); },
                        [](auto plain) { return ToText(plain); },
                    },
                    value.Get());
}

std::int16_t ToInt16(const Variant& value) {
  return Numeric<std::int16_t>(value, [](auto plain) { return ToInt16(plain); });
}

std::int32_t ToInt32(const Variant& value) {
  return Numeric<std::int32_t>(value, [](auto plain) { return ToInt32(plain); });
}

bool ToBoolean(const Variant& value) {
  return std::visit(Overloaded{
                        [](std::monostate) { return false; },
                        [](const std::string& text) { return ToBoolean(std::string_view(text)); },
                        [](const ObjectRef&) -> bool { throw NoConversion(); },
                        [](const ArrayRef&) -> bool { throw NoConversion(); },
                        [](auto number) { return number != 0; },
                    },
                    value.Get());
}

ObjectRef ToObject(const Variant& value) {
  if (value.IsEmpty()) return nullptr;
  if (!value.IsObject()) throw Error(ErrorNumber::kObjectRequired, "Object required");
  return std::get<ObjectRef>(value.Get());
}

const Variant& Array::At(std::int32_t index) const {
  if (index < lowerBound || index > UpperBound()) {
    throw Error(ErrorNumber::kSubscript, "Subscript out of range: " + ToText(index));
  }
  return elements[static_cast<std::size_t>(index - lowerBound)];
}

ArrayRef MakeArray(ElementType type, std::int32_t lowerBound, std::vector<Variant> elements) {
  return std::make_shared<Array>(Array{type, lowerBound, std::move(elements)});
}

}  // namespace base
