#include <cstdint>
#include <new>

#include "platform/win32/ComObject.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Text.h"
#include "platform/win32/VariantConversion.h"

namespace platform::win32 {
namespace {

/// The elements of an array while it is locked.
class ArrayElements {
 public:
  explicit ArrayElements(SAFEARRAY* array) : array_(array) {
    void* data = nullptr;
    const HRESULT result = SafeArrayAccessData(array, &data);
    if (FAILED(result)) throw ComError("An array can't be read", result);
    bytes_ = static_cast<unsigned char*>(data);
  }
  ArrayElements(const ArrayElements&) = delete;
  ArrayElements& operator=(const ArrayElements&) = delete;
  ~ArrayElements() { SafeArrayUnaccessData(array_); }

  void* At(std::size_t index) const { return bytes_ + index * SafeArrayGetElemsize(array_); }

 private:
  SAFEARRAY* array_;
  unsigned char* bytes_ = nullptr;
};

struct ArrayDestroyer {
  void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using OwnedArray = std::unique_ptr<SAFEARRAY, ArrayDestroyer>;

void StoreElement(base::ElementType type, const base::Variant& value, void* place) {
  switch (type) {
    case base::ElementType::kText:
      *static_cast<BSTR*>(place) = NewBstr(base::ToText(value));
      break;
    case base::ElementType::kInt16:
      *static_cast<SHORT*>(place) = base::ToInt16(value);
      break;
    case base::ElementType::kInt32:
      *static_cast<LONG*>(place) = base::ToInt32(value);
      break;
    case base::ElementType::kBoolean:
      *static_cast<VARIANT_BOOL*>(place) = base::ToBoolean(value) ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case base::ElementType::kObject:
      *static_cast<IDispatch**>(place) = DispatchOf(base::ToObject(value)).Detach();
      break;
  }
}

base::ElementType ElementTypeOf(VARTYPE kind) {
  switch (kind) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
      return base::ElementType::kInt16;
    case VT_UI2:
    case VT_I4:
    case VT_INT:
      return base::ElementType::kInt32;
    case VT_BOOL:
      return base::ElementType::kBoolean;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return base::ElementType::kObject;
    default:
      return base::ElementType::kText;
  }
}

std::size_t ElementSize(VARTYPE kind) {
  if (kind == VT_VARIANT) return sizeof(VARIANT);
  if (kind == VT_DECIMAL) return sizeof(DECIMAL);
  return ReferredSize(kind);
}

base::Variant LoadElement(VARTYPE kind, void* place) {
  if (kind == VT_VARIANT) return FromVariant(*static_cast<VARIANT*>(place));
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = static_cast<VARTYPE>(VT_BYREF | kind);
  reference.byref = place;
  return FromVariant(reference);
}

}  // namespace

VARTYPE ElementKind(base::ElementType type) {
  switch (type) {
    case base::ElementType::kInt16:
      return VT_I2;
    case base::ElementType::kInt32:
      return VT_I4;
    case base::ElementType::kBoolean:
      return VT_BOOL;
    case base::ElementType::kObject:
      return VT_DISPATCH;
    case base::ElementType::kText:
      break;
  }
  return VT_BSTR;
}

SAFEARRAY* ToSafeArray(const base::Array& array) {
  SAFEARRAYBOUND bounds;
  bounds.cElements = static_cast<ULONG>(array.elements.size());
  bounds.lLbound = array.lowerBound;
  OwnedArray result(SafeArrayCreate(ElementKind(array.type), 1, &bounds));
  if (!result) throw std::bad_alloc();
  if (!array.elements.empty()) {
    const ArrayElements elements(result.get());
    for (std::size_t i = 0; i < array.elements.size(); ++i) {
      StoreElement(array.type, array.elements[i], elements.At(i));
    }
  }
  return result.release();
}

base::Variant FromSafeArray(SAFEARRAY* array, VARTYPE declared) {
  VARTYPE kind = declared;
  if (!array) return base::MakeArray(ElementTypeOf(kind), 0, {});
  if (VARTYPE own = VT_EMPTY; SUCCEEDED(SafeArrayGetVartype(array, &own)) && own != VT_EMPTY) kind = own;

  LONG lower = 0;
  LONG upper = -1;
  if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetLBound(array, 1, &lower)) ||
      FAILED(SafeArrayGetUBound(array, 1, &upper)) || ElementSize(kind) != SafeArrayGetElemsize(array)) {
    return base::ObjectRef();
  }
  std::vector<base::Variant> values;
  if (upper >= lower) {
    const auto count = static_cast<std::size_t>(static_cast<std::int64_t>(upper) - lower + 1);
    values.reserve(count);
    const ArrayElements elements(array);
    for (std::size_t i = 0; i < count; ++i) values.push_back(LoadElement(kind, elements.At(i)));
  }
  return base::MakeArray(ElementTypeOf(kind), lower, std::move(values));
}

}  // namespace platform::win32
