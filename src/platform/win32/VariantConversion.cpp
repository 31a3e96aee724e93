#include "platform/win32/VariantConversion.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <utility>

#include "base/Error.h"
#include "platform/win32/ComObject.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Text.h"

namespace platform::win32 {
namespace {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

base::Variant NoMatch() {
  return base::Variant(base::ObjectRef());
}

template <typename Integer>
base::Variant FromInteger(Integer number) {
  if (std::in_range<std::int32_t>(number)) return static_cast<std::int32_t>(number);
  return static_cast<double>(number);
}

/// The double that reads as the float does: 0.1f is 0.1.
double FromFloat(float number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  double value = number;
  std::from_chars(digits, end, value);
  return value;
}

base::Variant FromDate(DATE date) {
  BSTR text = nullptr;
  if (FAILED(VarBstrFromDate(date, LOCALE_USER_DEFAULT, 0, &text))) return NoMatch();
  base::Variant value(FromBstr(text));
  SysFreeString(text);
  return value;
}

base::Variant FromDecimal(DECIMAL decimal) {
  double number = 0;
  return SUCCEEDED(VarR8FromDec(&decimal, &number)) ? base::Variant(number) : NoMatch();
}

base::Variant FromCurrency(CY currency) {
  double number = 0;
  return SUCCEEDED(VarR8FromCy(currency, &number)) ? base::Variant(number) : NoMatch();
}

base::Variant FromError(SCODE code) {
  // How an argument that was left out is passed.
  return code == DISP_E_PARAMNOTFOUND ? base::Variant() : NoMatch();
}

/// A VARIANT that holds what `reference` refers to, for reading only: the referrer still owns it.
bool Follow(const VARIANT& reference, VARIANT& target) {
  if (!reference.byref) return false;
  const VARTYPE kind = reference.vt & static_cast<VARTYPE>(~VT_BYREF);
  if (kind == VT_VARIANT) {
    target = *reference.pvarVal;
  } else if (kind == VT_DECIMAL) {
    target.decVal = *reference.pdecVal;
    target.vt = VT_DECIMAL;
  } else {
    const std::size_t size = ReferredSize(kind);
    if (size == 0) return false;
    target.vt = kind;
    std::memcpy(&target.llVal, reference.byref, size);
  }
  return true;
}

}  // namespace

std::size_t ReferredSize(VARTYPE kind) {
  if (kind & VT_ARRAY) return sizeof(SAFEARRAY*);
  switch (kind) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    default:
      return 0;
  }
}

void ToVariant(const base::Variant& value, VARIANT& result) {
  std::visit(Overloaded{
                 [&](std::monostate) { result.vt = VT_EMPTY; },
                 [&](const std::string& text) {
                   result.bstrVal = NewBstr(text);
                   result.vt = VT_BSTR;
                 },
                 [&](std::int16_t number) {
                   result.vt = VT_I2;
                   result.iVal = number;
                 },
                 [&](std::int32_t number) {
                   result.vt = VT_I4;
                   result.lVal = number;
                 },
                 [&](double number) {
                   result.vt = VT_R8;
                   result.dblVal = number;
                 },
                 [&](bool flag) {
                   result.vt = VT_BOOL;
                   result.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
                 },
                 [&](const base::ObjectRef& object) {
                   result.pdispVal = DispatchOf(object).Detach();
                   result.vt = VT_DISPATCH;
                 },
                 [&](const base::ArrayRef& array) {
                   if (!array) throw base::TypeMismatch("");
                   result.parray = ToSafeArray(*array);
                   result.vt = static_cast<VARTYPE>(VT_ARRAY | ElementKind(array->type));
                 },
             },
             value.Get());
}

base::Variant FromVariant(const VARIANT& value) {
  if (value.vt & VT_BYREF) {
    VARIANT target;
    VariantInit(&target);
    if (!Follow(value, target)) return NoMatch();
    // A VARIANT may refer to one that is a plain reference; a longer chain could be a ring.
    if (target.vt == (VT_BYREF | VT_VARIANT)) return NoMatch();
    return FromVariant(target);
  }
  if (value.vt & VT_ARRAY) {
    return FromSafeArray(value.parray, value.vt & static_cast<VARTYPE>(VT_TYPEMASK));
  }
  switch (value.vt) {
    case VT_EMPTY:
      return {};
    case VT_BSTR:
      return FromBstr(value.bstrVal);
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_I1:
      return static_cast<std::int16_t>(static_cast<signed char>(value.cVal));
    case VT_UI1:
      return static_cast<std::int16_t>(value.bVal);
    case VT_I2:
      return static_cast<std::int16_t>(value.iVal);
    case VT_UI2:
      return FromInteger(value.uiVal);
    case VT_I4:
    case VT_INT:
      return FromInteger(value.lVal);
    case VT_UI4:
    case VT_UINT:
      return FromInteger(value.ulVal);
    case VT_I8:
      return FromInteger(value.llVal);
    case VT_UI8:
      return FromInteger(value.ullVal);
    case VT_R4:
      return FromFloat(value.fltVal);
    case VT_R8:
      return value.dblVal;
    case VT_CY:
      return FromCurrency(value.cyVal);
    case VT_DECIMAL:
      return FromDecimal(value.decVal);
    case VT_DATE:
      return FromDate(value.date);
    case VT_DISPATCH:
      return ObjectBehind(value.pdispVal);
    case VT_UNKNOWN:
      return ObjectBehind(value.punkVal);
    case VT_ERROR:
      return FromError(value.scode);
    default:
      return NoMatch();
  }
}

void AssignByReference(VARIANT& target, const base::Variant& value) {
  if (!target.byref) return;
  const VARTYPE kind = target.vt & static_cast<VARTYPE>(~VT_BYREF);
  if (kind == VT_VARIANT && (target.pvarVal->vt & VT_BYREF) != 0 &&
      target.pvarVal->vt != (VT_BYREF | VT_VARIANT)) {
    return AssignByReference(*target.pvarVal, value);
  }
  OwnedVariant fresh;
  ToVariant(value, *fresh);
  if (kind == VT_VARIANT) {
    std::swap(*fresh, *target.pvarVal);
    return;
  }
  const std::size_t size = ReferredSize(kind);
  if (size == 0) throw ComError("An argument can't be given back", DISP_E_TYPEMISMATCH);
  if (fresh->vt != kind) {
    const HRESULT result = VariantChangeType(fresh.Get(), fresh.Get(), VARIANT_ALPHABOOL, kind);
    if (FAILED(result)) throw ComError("An argument can't be given back", result);
  }
  // What stood there goes with `fresh`, whose kind is the same.
  unsigned char old[8];
  std::memcpy(old, target.byref, size);
  std::memcpy(target.byref, &fresh->llVal, size);
  std::memcpy(&fresh->llVal, old, size);
}

}  // namespace platform::win32
