#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace support {

/// One call as the object gets it.
struct MemberCall {
  std::wstring member;
  WORD flags = 0;
  LCID locale = 0;
  DISPPARAMS* parameters = nullptr;
  VARIANT* result = nullptr;
  EXCEPINFO* exception = nullptr;

  UINT Count() const { return parameters->cArgs; }
  /// In the order of the declaration, counted from 0.
  VARIANT& Argument(UINT index) const { return parameters->rgvarg[parameters->cArgs - 1 - index]; }
  void Return(const VARIANT& value) const { *result = value; }
};

/// A reference count, and a count of the objects of the derived kinds that live in this process.
class CountedObject {
 public:
  static int Alive() { return alive; }

 protected:
  CountedObject() { ++alive; }
  CountedObject(const CountedObject&) = delete;
  CountedObject& operator=(const CountedObject&) = delete;
  virtual ~CountedObject();

  ULONG Retain();
  ULONG Drop();

 private:
  static inline std::atomic<int> alive{0};
  std::atomic<ULONG> references_{1};
};

/// An automation object whose members are written in the test. It is made on the heap and starts with one
/// reference, which its maker holds.
class AutomationObject : public IDispatch, public CountedObject {
 public:
  using Behaviour = std::function<HRESULT(const MemberCall&)>;

  /// The identifiers count from 1 in the order of adding.
  void Add(const std::wstring& member, Behaviour behaviour);
  /// A member that answers every call with the value.
  void AddResult(const std::wstring& member, VARIANT value);

  /// How often a name was looked up, and in which locale last.
  int Lookups() const { return lookups_; }
  LCID LookupLocale() const { return lookupLocale_; }
  /// Makes every later lookup give other identifiers.
  void ShiftIds() { shift_ += 100; }
  /// The answer of every later lookup.
  void RefuseLookups(HRESULT answer) { lookupAnswer_ = answer; }

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return Drop(); }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* wrongArgument) override;

 private:
  struct Member {
    std::wstring name;
    Behaviour behaviour;
  };

  std::vector<Member> members_;
  int lookups_ = 0;
  LCID lookupLocale_ = 0;
  DISPID shift_ = 0;
  HRESULT lookupAnswer_ = S_OK;
};

/// A class that gives one and the same object to everybody, known to COM under a ProgID for as long as it
/// lives.
class RegisteredClass {
 public:
  /// `context` as for CoRegisterClassObject. The class holds a reference to `object`.
  RegisteredClass(const std::string& progId, IUnknown* object, DWORD context = CLSCTX_INPROC_SERVER);
  RegisteredClass(const RegisteredClass&) = delete;
  RegisteredClass& operator=(const RegisteredClass&) = delete;
  ~RegisteredClass();

 private:
  std::wstring progId_;
  std::wstring classId_;
  DWORD cookie_ = 0;
};

/// Offers `object` to this process, or with CLSCTX_LOCAL_SERVER to others, as the object of the class. Gives
/// the cookie for CoRevokeClassObject.
DWORD OfferObject(REFCLSID id, IUnknown* object, DWORD context);

/// Writes the keys of a class for the machine, and the command of its server unless that is empty.
void WriteClassKeys(const std::wstring& progId, const std::wstring& classId,
                    const std::wstring& serverCommand);
void DeleteClassKeys(const std::wstring& progId, const std::wstring& classId);

CLSID NewId();
std::wstring IdText(REFGUID id);

VARIANT BstrVariant(const std::wstring& text);
VARIANT ShortVariant(SHORT number);
VARIANT LongVariant(LONG number);
VARIANT BoolVariant(bool flag);
VARIANT DispatchVariant(IDispatch* object);
VARIANT ReferenceTo(VARTYPE kind, void* place);

/// The text of a VARIANT of kind VT_BSTR, embedded NULs included.
std::wstring TextOf(BSTR text);

}  // namespace support
