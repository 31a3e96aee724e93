#pragma once

// The values that cross the line between Harbourline and a plug-in. HarbourlinePlugIn.h includes this file.

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <atomic>
#include <cstddef>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace harbourline {

/// The lower bound of the mapping array that asks for nothing at all.
inline constexpr LONG kEmptyRequestBound = 10;

/// What a member throws when it can't do its work: Harbourline gets the code and the text as the call's
/// error.
class Failure : public std::exception {
 public:
  explicit Failure(std::wstring text, HRESULT code = E_FAIL) : text_(std::move(text)), code_(code) {}
  const std::wstring& Text() const { return text_; }
  HRESULT Code() const { return code_; }
  const char* what() const noexcept override { return "a failure of the plug-in"; }

 private:
  std::wstring text_;
  HRESULT code_;
};

/// An argument that doesn't convert to what the member wants. `index` counts from 0 in declared order.
struct BadArgument {
  HRESULT code;
  std::size_t index;
};

/// The answer of SetPortForwarding, SetLogging and Configure: the contract says false when all went well.
enum class Outcome : bool { kDone = false, kNotDone = true };

/// One port-forwarding rule, as Harbourline's PortMappingData object says it.
struct Mapping {
  std::wstring profileName;
  std::wstring description;
  long beginPort = 0;
  long endPort = 0;  ///< inclusive
  bool udp = false;
  bool tcp = false;
  short forwardIPAddress = 0;  ///< last octet of the receiving computer's address
  bool clearEntry = false;     ///< the router is to lose this rule
};

/// An entry that the plug-in adds to Harbourline's menu.
struct Feature {
  std::wstring caption;
  short identifier = 0;  ///< comes back in ActivateFeature
};

namespace module {

/// Objects and locks that keep the DLL in memory.
inline std::atomic<long> useCount{0};

struct Use {
  Use() { ++useCount; }
  ~Use() { --useCount; }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;
};

/// The DLL that this header is compiled into.
inline HMODULE Handle() {
  HMODULE handle = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&useCount), &handle);
  return handle;
}

inline std::wstring Path() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(Handle(), path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace module

/// A counted reference to a COM object.
template <class T>
class Ref {
 public:
  Ref() = default;
  explicit Ref(T* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  Ref(const Ref& other) : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~Ref() {
    if (object_) object_->Release();
  }
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  T* get() const { return object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  /// The place where a function that gives out a counted reference puts it. Only while this is empty.
  T** Receive() { return &object_; }

 private:
  T* object_ = nullptr;
};

/// A VARIANT that cleans up after itself.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  Value(const std::wstring& text) : Value() {
    variant_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!variant_.bstrVal) throw std::bad_alloc();
    variant_.vt = VT_BSTR;
  }
  Value(const wchar_t* text) : Value(std::wstring(text)) {}
  Value(bool flag) : Value() {
    variant_.vt = VT_BOOL;
    variant_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  }
  Value(Outcome outcome) : Value(static_cast<bool>(outcome)) {}
  Value(short number) : Value() {
    variant_.vt = VT_I2;
    variant_.iVal = number;
  }
  Value(long number) : Value() {
    variant_.vt = VT_I4;
    variant_.lVal = number;
  }
  /// Null stays an object: "no object", not an empty value.
  Value(IDispatch* object) : Value() {
    variant_.vt = VT_DISPATCH;
    variant_.pdispVal = object;
    if (object) object->AddRef();
  }
  Value(Value&& other) noexcept : variant_(other.variant_) { VariantInit(&other.variant_); }
  Value(const Value&) = delete;
  ~Value() { VariantClear(&variant_); }
  Value& operator=(Value other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }

  const VARIANT& Get() const { return variant_; }
  /// The place where a function puts its result. Only while this is empty.
  VARIANT* Receive() { return &variant_; }
  VARIANT Detach() {
    VARIANT variant = variant_;
    VariantInit(&variant_);
    return variant;
  }

  std::wstring Text() const { return Owned(variant_.vt == VT_BSTR ? variant_.bstrVal : nullptr); }

  /// Converts by the ordinary rules of automation, through references and wrapping VARIANTs.
  static HRESULT Convert(const VARIANT& from, VARTYPE type, Value& to) {
    const VARIANT& plain = Unwrap(from);
    if (plain.vt & VT_ARRAY) return DISP_E_TYPEMISMATCH;
    if ((plain.vt & VT_BYREF) && !plain.byref) return DISP_E_TYPEMISMATCH;
    Value direct;
    HRESULT result = VariantCopyInd(&direct.variant_, const_cast<VARIANT*>(&plain));
    if (SUCCEEDED(result)) result = VariantChangeType(to.Receive(), &direct.variant_, 0, type);
    return result;
  }

  /// What stands in a VARIANT that a VARIANT by reference wraps.
  static const VARIANT& Unwrap(const VARIANT& variant) {
    const VARIANT* inner = &variant;
    for (int depth = 0; depth < 4 && inner->vt == (VT_BYREF | VT_VARIANT) && inner->pvarVal; ++depth) {
      inner = inner->pvarVal;
    }
    return *inner;
  }

  static std::wstring Owned(BSTR text) {
    return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
  }

 private:
  VARIANT variant_;
};

namespace detail {

inline void Check(HRESULT result, const wchar_t* text) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result)) throw Failure(text, result);
}

/// One property of an automation object, by its name.
inline Value Property(IDispatch* object, const wchar_t* name, VARTYPE type) {
  DISPID id = 0;
  auto names = const_cast<LPOLESTR>(name);
  const std::wstring failure = std::wstring(L"The mapping doesn't tell its ") + name + L".";
  Check(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), failure.c_str());
  DISPPARAMS none = {};
  Value raw;
  Check(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                       raw.Receive(), nullptr, nullptr),
        failure.c_str());
  Value converted;
  Check(Value::Convert(raw.Get(), type, converted), failure.c_str());
  return converted;
}

struct ArrayDestroyer {
  SAFEARRAY* array;
  ~ArrayDestroyer() {
    if (array) SafeArrayDestroy(array);
  }
};

inline SAFEARRAY* MakeArray(VARTYPE type, std::size_t count) {
  SAFEARRAY* array = SafeArrayCreateVector(type, 0, static_cast<ULONG>(count));
  if (!array) throw std::bad_alloc();
  return array;
}

}  // namespace detail

/// Reads one PortMappingData object by the names of its properties.
inline Mapping ReadMapping(IDispatch* record) {
  Mapping mapping;
  mapping.profileName = detail::Property(record, L"sProfileName", VT_BSTR).Text();
  mapping.description = detail::Property(record, L"sDescription", VT_BSTR).Text();
  mapping.beginPort = detail::Property(record, L"lBeginPort", VT_I4).Get().lVal;
  mapping.endPort = detail::Property(record, L"lEndPort", VT_I4).Get().lVal;
  mapping.udp = detail::Property(record, L"bUDP", VT_BOOL).Get().boolVal != VARIANT_FALSE;
  mapping.tcp = detail::Property(record, L"bTCP", VT_BOOL).Get().boolVal != VARIANT_FALSE;
  mapping.forwardIPAddress = detail::Property(record, L"iForwardIPAddress", VT_I2).Get().iVal;
  mapping.clearEntry = detail::Property(record, L"bClearEntry", VT_BOOL).Get().boolVal != VARIANT_FALSE;
  return mapping;
}

/// The arguments of one call, counted from 0 in declared order. Each may come by value, by reference or
/// wrapped in a VARIANT; what doesn't convert ends the call with the automation error that says so.
class Arguments {
 public:
  explicit Arguments(const DISPPARAMS& parameters) : parameters_(parameters) {}

  std::size_t Count() const { return parameters_.cArgs; }
  const VARIANT& Raw(std::size_t index) const { return parameters_.rgvarg[Count() - 1 - index]; }

  std::wstring Text(std::size_t index) const { return As(index, VT_BSTR).Text(); }
  short Int16(std::size_t index) const { return As(index, VT_I2).Get().iVal; }
  long Int32(std::size_t index) const { return As(index, VT_I4).Get().lVal; }
  bool Bool(std::size_t index) const { return As(index, VT_BOOL).Get().boolVal != VARIANT_FALSE; }

  /// The records of a mapping array, read by name; none when the array is the empty request.
  std::vector<Mapping> Mappings(std::size_t index) const {
    SAFEARRAY* array = ArrayAt(index);
    VARTYPE type = VT_EMPTY;
    LONG lower = 0;
    LONG upper = -1;
    if (!array || SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetVartype(array, &type)) ||
        (type != VT_DISPATCH && type != VT_VARIANT) || FAILED(SafeArrayGetLBound(array, 1, &lower)) ||
        FAILED(SafeArrayGetUBound(array, 1, &upper))) {
      throw BadArgument{DISP_E_TYPEMISMATCH, index};
    }
    std::vector<Mapping> mappings;
    if (lower == kEmptyRequestBound) return mappings;
    for (LONG i = lower; i <= upper; ++i) {
      Value element;
      if (type == VT_VARIANT) {
        detail::Check(SafeArrayGetElement(array, &i, element.Receive()), L"A mapping can't be read.");
      } else {
        Ref<IDispatch> record;
        detail::Check(SafeArrayGetElement(array, &i, record.Receive()), L"A mapping can't be read.");
        element = Value(record.get());
      }
      if (element.Get().vt != VT_DISPATCH || !element.Get().pdispVal) {
        throw Failure(L"The array of mappings has an element without a mapping.", E_INVALIDARG);
      }
      mappings.push_back(ReadMapping(element.Get().pdispVal));
    }
    return mappings;
  }

  /// Puts new arrays of captions and identifiers, from 0 and in step, in the place of the two that the caller
  /// passed.
  void SetFeatures(std::size_t captionsIndex, std::size_t identifiersIndex,
                   const std::vector<Feature>& features) {
    detail::ArrayDestroyer captions{detail::MakeArray(VT_BSTR, features.size())};
    detail::ArrayDestroyer identifiers{detail::MakeArray(VT_I2, features.size())};
    LONG i = 0;
    for (const Feature& feature : features) {
      const Value caption(feature.caption);
      short identifier = feature.identifier;
      detail::Check(SafeArrayPutElement(captions.array, &i, caption.Get().bstrVal),
                    L"A caption can't be passed.");
      detail::Check(SafeArrayPutElement(identifiers.array, &i, &identifier),
                    L"An identifier can't be passed.");
      ++i;
    }
    CheckReplaceable(captionsIndex, VT_BSTR);
    CheckReplaceable(identifiersIndex, VT_I2);
    Replace(captionsIndex, VT_BSTR, captions.array);
    Replace(identifiersIndex, VT_I2, identifiers.array);
  }

 private:
  Value As(std::size_t index, VARTYPE type) const {
    Value converted;
    const HRESULT result = Value::Convert(Raw(index), type, converted);
    if (FAILED(result)) throw BadArgument{result, index};
    return converted;
  }

  SAFEARRAY* ArrayAt(std::size_t index) const {
    const VARIANT& variant = Value::Unwrap(Raw(index));
    if (!(variant.vt & VT_ARRAY)) throw BadArgument{DISP_E_TYPEMISMATCH, index};
    if (!(variant.vt & VT_BYREF)) return variant.parray;
    return variant.pparray ? *variant.pparray : nullptr;
  }

  static bool IsReplaceable(const SAFEARRAY* array) {
    constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
    return !array || (array->cLocks == 0 && (array->fFeatures & kFixed) == 0);
  }

  void CheckReplaceable(std::size_t index, VARTYPE type) const {
    const VARIANT& outer = Raw(index);
    const VARIANT& inner = Value::Unwrap(outer);
    const bool typed = inner.vt == (VT_BYREF | VT_ARRAY | type) && inner.pparray;
    const bool wrapped = &inner != &outer && !(inner.vt & VT_BYREF);
    if (!typed && !wrapped) throw BadArgument{DISP_E_TYPEMISMATCH, index};
    const SAFEARRAY* array = typed ? *inner.pparray : (inner.vt & VT_ARRAY) ? inner.parray : nullptr;
    if (!IsReplaceable(array)) throw BadArgument{DISP_E_ARRAYISLOCKED, index};
  }

  void Replace(std::size_t index, VARTYPE type, SAFEARRAY*& array) {
    auto& inner = const_cast<VARIANT&>(Value::Unwrap(Raw(index)));
    if (inner.vt & VT_BYREF) {
      std::swap(*inner.pparray, array);
      return;
    }
    VariantClear(&inner);
    inner.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    inner.parray = std::exchange(array, nullptr);
  }

  const DISPPARAMS& parameters_;
};

}  // namespace harbourline
