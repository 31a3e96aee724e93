#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// COM by hand, as any program would do it, with nothing of the kit's that is under test.
namespace late {

/// A counted reference to an object.
template <class T>
struct Releaser {
  void operator()(T* object) const { object->Release(); }
};
template <class T>
using Ref = std::unique_ptr<T, Releaser<T>>;

template <class T>
Ref<T> Query(IUnknown* object, const IID& iid) {
  void* found = nullptr;
  if (FAILED(object->QueryInterface(iid, &found))) return nullptr;
  return Ref<T>(static_cast<T*>(found));
}

/// A BSTR to pass by value or by reference.
class Text {
 public:
  explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  VARIANT Value() const;
  VARIANT Reference();
  std::wstring Get() const { return text_ ? std::wstring(text_, SysStringLen(text_)) : std::wstring(); }

 private:
  BSTR text_;
};

VARIANT Nothing();
VARIANT Value(short number);
VARIANT Value(long number);
VARIANT Value(double number);
VARIANT Value(bool flag);
VARIANT Value(IDispatch* object);
VARIANT Reference(short& number);
VARIANT Reference(long& number);
VARIANT Reference(SAFEARRAY*& array, VARTYPE type);
VARIANT Wrapped(VARIANT& inner);

/// How a call ended. The value belongs to it.
struct Answer {
  HRESULT code = E_FAIL;
  VARIANT value = {};
  HRESULT exceptionCode = S_OK;
  std::wstring exceptionText;
  UINT badArgument = 99;

  Answer() = default;
  Answer(Answer&& other) noexcept
      : code(other.code),
        value(std::exchange(other.value, VARIANT{})),
        exceptionCode(other.exceptionCode),
        exceptionText(std::move(other.exceptionText)),
        badArgument(other.badArgument) {}
  Answer& operator=(Answer&&) = delete;
  ~Answer() { VariantClear(&value); }

  bool IsText(const std::wstring& text) const {
    return value.vt == VT_BSTR && std::wstring(value.bstrVal, SysStringLen(value.bstrVal)) == text;
  }
  bool IsBool(bool flag) const { return value.vt == VT_BOOL && (value.boolVal != VARIANT_FALSE) == flag; }
};

/// DISPID_UNKNOWN when the object has no such member.
DISPID Find(IDispatch* object, const wchar_t* member);
/// `arguments` in declared order.
Answer Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> arguments);
/// As Harbourline reads and calls.
Answer Call(IDispatch* object, const wchar_t* member, std::vector<VARIANT> arguments = {});
/// As Harbourline writes a property.
Answer Put(IDispatch* object, const wchar_t* member, VARIANT value);

/// An object with the given properties, to be read by name; the values belong to it. Counted; starts with
/// one.
IDispatch* MakeRecord(std::vector<std::pair<std::wstring, VARIANT>> properties);

/// What Harbourline fills a record with.
struct MappingFields {
  const wchar_t* profile = L"";
  const wchar_t* description = L"";
  long begin = 0;
  long end = 0;
  bool udp = false;
  bool tcp = false;
  short host = 0;
  bool clear = false;
};
IDispatch* MakeMapping(const MappingFields& fields);

/// The array of an activation. Destroys it and its records.
class MappingArray {
 public:
  explicit MappingArray(const std::vector<MappingFields>& mappings);
  /// Of ready objects, which it takes over.
  explicit MappingArray(const std::vector<IDispatch*>& records, LONG lowerBound = 0);
  ~MappingArray() { SafeArrayDestroy(array_); }
  MappingArray(const MappingArray&) = delete;
  MappingArray& operator=(const MappingArray&) = delete;
  static MappingArray Empty() { return MappingArray(std::vector<IDispatch*>{nullptr}, 10); }
  VARIANT Reference() { return late::Reference(array_, VT_DISPATCH); }
  SAFEARRAY* Get() const { return array_; }

 private:
  void Fill(const std::vector<IDispatch*>& records, LONG lowerBound);
  SAFEARRAY* array_ = nullptr;
};

/// A listener of events; `onEvent` gets the arguments in declared order and its result is the call's.
class Sink final : public IDispatch {
 public:
  using Handler = std::function<HRESULT(DISPID, std::vector<VARIANT>&, EXCEPINFO*)>;
  explicit Sink(Handler onEvent) : onEvent_(std::move(onEvent)) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO* exception, UINT*) override;

  ULONG references = 1;  ///< the test's own
  IID acceptedInterface = IID_IDispatch;

 private:
  Handler onEvent_;
};

extern const IID kEvents;

}  // namespace late
