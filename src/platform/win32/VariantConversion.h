#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>

#include "base/Variant.h"

namespace platform::win32 {

/// A VARIANT that clears itself.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&value_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { VariantClear(&value_); }

  VARIANT* Get() { return &value_; }
  VARIANT& operator*() { return value_; }
  VARIANT* operator->() { return &value_; }

 private:
  VARIANT value_;
};

/// `result` must be empty. Text becomes VT_BSTR, the integers VT_I2 and VT_I4, a boolean VT_BOOL, an array
/// VT_ARRAY of its element kind. A Record or a LateBoundObject becomes VT_DISPATCH; any other object fails
/// with TypeMismatch.
void ToVariant(const base::Variant& value, VARIANT& result);

/// Follows references. Every number that has no kind of its own becomes the smallest one that holds it; a
/// date becomes its text in the user's form. What has no match at all (VT_NULL, an error code, an array of
/// more than one dimension) becomes a null object, which no conversion takes, so that it fails where a value
/// is wanted and nowhere else.
base::Variant FromVariant(const VARIANT& value);

/// A VARIANT with VT_BYREF: what it refers to takes the value, converted to its kind, and what stood there is
/// freed.
void AssignByReference(VARIANT& target, const base::Variant& value);

/// Bytes of what a reference of this kind refers to; 0 for a kind that isn't passed by reference here.
std::size_t ReferredSize(VARTYPE kind);

/// One-dimensional, with the array's own lower bound. The caller owns the result.
SAFEARRAY* ToSafeArray(const base::Array& array);
VARTYPE ElementKind(base::ElementType type);
/// `declared` is the element kind for an array that doesn't tell its own. Null is the empty array.
base::Variant FromSafeArray(SAFEARRAY* array, VARTYPE declared);

}  // namespace platform::win32
