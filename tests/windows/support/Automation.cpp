#include "support/Automation.h"

#include <stdexcept>

#include "support/RegistryAccess.h"

namespace support {
namespace {

constexpr wchar_t kClasses[] = L"Software\\Classes\\";

void Require(HRESULT result, const char* what) {
  if (FAILED(result)) throw std::runtime_error(std::string(what) + " failed with " + std::to_string(result));
}

/// Gives out one object.
class Factory : public IClassFactory, public CountedObject {
 public:
  explicit Factory(IUnknown* object) : object_(object) { object_->AddRef(); }

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IClassFactory)) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return Drop(); }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override {
    return object_->QueryInterface(id, object);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  ~Factory() override { object_->Release(); }

  IUnknown* object_;
};

}  // namespace

CountedObject::~CountedObject() {
  --alive;
}

ULONG CountedObject::Retain() {
  return ++references_;
}

ULONG CountedObject::Drop() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

void AutomationObject::Add(const std::wstring& member, Behaviour behaviour) {
  members_.push_back({member, std::move(behaviour)});
}

void AutomationObject::AddResult(const std::wstring& member, VARIANT value) {
  Add(member, [value](const MemberCall& call) mutable {
    VariantInit(call.result);
    return VariantCopy(call.result, &value);
  });
}

STDMETHODIMP AutomationObject::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
  AddRef();
  *object = static_cast<IDispatch*>(this);
  return S_OK;
}

STDMETHODIMP AutomationObject::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

STDMETHODIMP AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  *info = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP AutomationObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) {
  ++lookups_;
  lookupLocale_ = locale;
  ids[0] = DISPID_UNKNOWN;
  if (FAILED(lookupAnswer_)) return lookupAnswer_;
  if (count != 1) return E_INVALIDARG;
  for (std::size_t i = 0; i < members_.size(); ++i) {
    if (members_[i].name != names[0]) continue;
    ids[0] = static_cast<DISPID>(i) + 1 + shift_;
    return S_OK;
  }
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP AutomationObject::Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters,
                                      VARIANT* result, EXCEPINFO* exception, UINT*) {
  const DISPID index = id - 1 - shift_;
  if (index < 0 || static_cast<std::size_t>(index) >= members_.size()) return DISP_E_MEMBERNOTFOUND;
  // A copy, so that a behaviour may change the members.
  const Member member = members_[static_cast<std::size_t>(index)];
  return member.behaviour({member.name, flags, locale, parameters, result, exception});
}

RegisteredClass::RegisteredClass(const std::string& progId, IUnknown* object, DWORD context)
    : progId_(Wide(progId)) {
  const CLSID id = NewId();
  classId_ = IdText(id);
  WriteClassKeys(progId_, classId_, L"");
  cookie_ = OfferObject(id, object, context);
}

RegisteredClass::~RegisteredClass() {
  CoRevokeClassObject(cookie_);
  DeleteClassKeys(progId_, classId_);
}

DWORD OfferObject(REFCLSID id, IUnknown* object, DWORD context) {
  auto* factory = new Factory(object);
  DWORD cookie = 0;
  const HRESULT result = CoRegisterClassObject(id, factory, context, REGCLS_MULTIPLEUSE, &cookie);
  factory->Release();
  Require(result, "CoRegisterClassObject");
  return cookie;
}

void WriteClassKeys(const std::wstring& progId, const std::wstring& classId,
                    const std::wstring& serverCommand) {
  WriteValue(kClasses + progId + L"\\CLSID", L"", TextValue(classId), HKEY_LOCAL_MACHINE);
  WriteValue(kClasses + (L"CLSID\\" + classId), L"", TextValue(progId), HKEY_LOCAL_MACHINE);
  if (!serverCommand.empty()) {
    WriteValue(kClasses + (L"CLSID\\" + classId) + L"\\LocalServer32", L"", TextValue(serverCommand),
               HKEY_LOCAL_MACHINE);
  }
}

void DeleteClassKeys(const std::wstring& progId, const std::wstring& classId) {
  DeleteTree(kClasses + progId, HKEY_LOCAL_MACHINE);
  DeleteTree(kClasses + (L"CLSID\\" + classId), HKEY_LOCAL_MACHINE);
}

CLSID NewId() {
  CLSID id{};
  Require(CoCreateGuid(&id), "CoCreateGuid");
  return id;
}

std::wstring IdText(REFGUID id) {
  wchar_t text[64];
  StringFromGUID2(id, text, 64);
  return text;
}

VARIANT BstrVariant(const std::wstring& text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return value;
}

VARIANT ShortVariant(SHORT number) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I2;
  value.iVal = number;
  return value;
}

VARIANT LongVariant(LONG number) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

VARIANT BoolVariant(bool flag) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BOOL;
  value.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

VARIANT DispatchVariant(IDispatch* object) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return value;
}

VARIANT ReferenceTo(VARTYPE kind, void* place) {
  VARIANT value;
  VariantInit(&value);
  value.vt = static_cast<VARTYPE>(VT_BYREF | kind);
  value.byref = place;
  return value;
}

std::wstring TextOf(BSTR text) {
  return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

}  // namespace support
