#include "support/LateBound.h"

#include <algorithm>

namespace late {

const IID kEvents = {0xE0A74CD3, 0x5372, 0x419F, {0xA5, 0xBE, 0x5D, 0x09, 0xBD, 0xCF, 0xB7, 0x40}};

namespace {

VARIANT OfKind(VARTYPE kind) {
  VARIANT variant = {};
  variant.vt = kind;
  return variant;
}

class Record final : public IDispatch {
 public:
  explicit Record(std::vector<std::pair<std::wstring, VARIANT>> properties)
      : properties_(std::move(properties)) {}
  virtual ~Record() {
    for (auto& property : properties_) VariantClear(&property.second);
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDispatch)) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    for (std::size_t i = 0; i < properties_.size(); ++i) {
      if (properties_[i].first != names[0]) continue;
      ids[0] = static_cast<DISPID>(i) + 1;
      return S_OK;
    }
    ids[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (id < 1 || static_cast<std::size_t>(id) > properties_.size()) return DISP_E_MEMBERNOTFOUND;
    if (!(flags & DISPATCH_PROPERTYGET)) return DISP_E_MEMBERNOTFOUND;
    return VariantCopy(result, &properties_[static_cast<std::size_t>(id) - 1].second);
  }

 private:
  ULONG references_ = 1;
  std::vector<std::pair<std::wstring, VARIANT>> properties_;
};

VARIANT TextVariant(const wchar_t* text) {
  VARIANT variant = OfKind(VT_BSTR);
  variant.bstrVal = SysAllocString(text);
  return variant;
}

}  // namespace

VARIANT Text::Value() const {
  VARIANT variant = OfKind(VT_BSTR);
  variant.bstrVal = text_;
  return variant;
}
VARIANT Text::Reference() {
  VARIANT variant = OfKind(VT_BYREF | VT_BSTR);
  variant.pbstrVal = &text_;
  return variant;
}

VARIANT Nothing() {
  return OfKind(VT_EMPTY);
}
VARIANT Value(short number) {
  VARIANT variant = OfKind(VT_I2);
  variant.iVal = number;
  return variant;
}
VARIANT Value(long number) {
  VARIANT variant = OfKind(VT_I4);
  variant.lVal = number;
  return variant;
}
VARIANT Value(double number) {
  VARIANT variant = OfKind(VT_R8);
  variant.dblVal = number;
  return variant;
}
VARIANT Value(bool flag) {
  VARIANT variant = OfKind(VT_BOOL);
  variant.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  return variant;
}
VARIANT Value(IDispatch* object) {
  VARIANT variant = OfKind(VT_DISPATCH);
  variant.pdispVal = object;
  return variant;
}
VARIANT Reference(short& number) {
  VARIANT variant = OfKind(VT_BYREF | VT_I2);
  variant.piVal = &number;
  return variant;
}
VARIANT Reference(long& number) {
  VARIANT variant = OfKind(VT_BYREF | VT_I4);
  variant.plVal = &number;
  return variant;
}
VARIANT Reference(SAFEARRAY*& array, VARTYPE type) {
  VARIANT variant = OfKind(static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | type));
  variant.pparray = &array;
  return variant;
}
VARIANT Wrapped(VARIANT& inner) {
  VARIANT variant = OfKind(VT_BYREF | VT_VARIANT);
  variant.pvarVal = &inner;
  return variant;
}

DISPID Find(IDispatch* object, const wchar_t* member) {
  auto name = const_cast<LPOLESTR>(member);
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  return FAILED(result) ? DISPID_UNKNOWN : id;
}

Answer Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> arguments) {
  std::reverse(arguments.begin(), arguments.end());
  DISPID put = DISPID_PROPERTYPUT;
  const bool write = (flags & DISPATCH_PROPERTYPUT) != 0;
  DISPPARAMS parameters = {arguments.data(), write ? &put : nullptr, static_cast<UINT>(arguments.size()),
                           write ? 1u : 0u};
  Answer answer;
  EXCEPINFO exception = {};
  answer.code = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                               write ? nullptr : &answer.value, &exception, &answer.badArgument);
  answer.exceptionCode = exception.scode;
  if (exception.bstrDescription) answer.exceptionText = exception.bstrDescription;
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  return answer;
}

Answer Call(IDispatch* object, const wchar_t* member, std::vector<VARIANT> arguments) {
  return Invoke(object, Find(object, member), DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments));
}

Answer Put(IDispatch* object, const wchar_t* member, VARIANT value) {
  return Invoke(object, Find(object, member), DISPATCH_PROPERTYPUT, {value});
}

IDispatch* MakeRecord(std::vector<std::pair<std::wstring, VARIANT>> properties) {
  return new Record(std::move(properties));
}

IDispatch* MakeMapping(const MappingFields& fields) {
  return MakeRecord({{L"bClearEntry", Value(fields.clear)},
                     {L"sProfileName", TextVariant(fields.profile)},
                     {L"bTCP", Value(fields.tcp)},
                     {L"bUDP", Value(fields.udp)},
                     {L"iForwardIPAddress", Value(fields.host)},
                     {L"lBeginPort", Value(fields.begin)},
                     {L"lEndPort", Value(fields.end)},
                     {L"sDescription", TextVariant(fields.description)}});
}

MappingArray::MappingArray(const std::vector<MappingFields>& mappings) {
  std::vector<IDispatch*> records;
  for (const MappingFields& fields : mappings) records.push_back(MakeMapping(fields));
  Fill(records, 0);
}

MappingArray::MappingArray(const std::vector<IDispatch*>& records, LONG lowerBound) {
  Fill(records, lowerBound);
}

void MappingArray::Fill(const std::vector<IDispatch*>& records, LONG lowerBound) {
  SAFEARRAYBOUND bound = {static_cast<ULONG>(records.size()), lowerBound};
  array_ = SafeArrayCreate(VT_DISPATCH, 1, &bound);
  LONG index = lowerBound;
  for (IDispatch* record : records) {
    SafeArrayPutElement(array_, &index, record);
    if (record) record->Release();
    ++index;
  }
}

HRESULT STDMETHODCALLTYPE Sink::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDispatch) &&
      !IsEqualIID(iid, acceptedInterface)) {
    return E_NOINTERFACE;
  }
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

HRESULT STDMETHODCALLTYPE Sink::Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                       EXCEPINFO* exception, UINT*) {
  std::vector<VARIANT> arguments(parameters->rgvarg, parameters->rgvarg + parameters->cArgs);
  std::reverse(arguments.begin(), arguments.end());
  return onEvent_(event, arguments, exception);
}

}  // namespace late
