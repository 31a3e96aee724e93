// An activation of 10,000 mappings through real COM, in process, beside the making and passing of the same
// array by code that has nothing but COM. The plug-in either reads all eight fields of every record by name
// or leaves them alone.

#include <benchmark/benchmark.h>
#include <windows.h>

#include <oleauto.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>

#include "platform/win32/ComObject.h"
#include "settings/CRegistry.h"
#include "support/MemoryMachine.h"

namespace {

constexpr int kProfiles = 1'000;
constexpr int kMappings = 10;
constexpr LONG kRecords = kProfiles * kMappings;
constexpr std::int16_t kLocalIP = 20;
constexpr std::array<const wchar_t*, 8> kFields = {L"sProfileName",      L"sDescription", L"lBeginPort",
                                                   L"lEndPort",          L"bUDP",         L"bTCP",
                                                   L"iForwardIPAddress", L"bClearEntry"};

wchar_t Lower(wchar_t c) {
  return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

/// Names of members are plain ASCII, and their case doesn't count.
bool SameName(const wchar_t* a, const wchar_t* b) {
  for (; *a && Lower(*a) == Lower(*b); ++a) ++b;
  return Lower(*a) == Lower(*b);
}

/// An automation object with no more to it than COM asks for.
class Automation : public IDispatch {
 public:
  virtual ~Automation() = default;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDispatch*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

 private:
  std::atomic<ULONG> references_{1};
};

/// Takes the array of an activation.
class PlugIn final : public Automation {
 public:
  explicit PlugIn(bool reads) : reads_(reads) {}

  std::int64_t Taken() const { return taken_; }
  /// Of all ports that were read, so that the reading can't be left out.
  std::int64_t Ports() const { return ports_; }

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    if (!SameName(names[0], L"IServer_SetPortForwarding")) return DISP_E_UNKNOWNNAME;
    ids[0] = 1;
    return S_OK;
  }

  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    if (parameters->cArgs != 2 || parameters->rgvarg[1].vt != (VT_BYREF | VT_ARRAY | VT_DISPATCH)) {
      return DISP_E_TYPEMISMATCH;
    }
    SAFEARRAY* const array = *parameters->rgvarg[1].pparray;
    LONG lower = 0, upper = -1;
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    taken_ += upper - lower + 1;
    if (reads_) {
      IDispatch** elements = nullptr;
      SafeArrayAccessData(array, reinterpret_cast<void**>(&elements));
      for (LONG i = 0; i <= upper - lower; ++i) Read(*elements[i]);
      SafeArrayUnaccessData(array);
    }
    result->vt = VT_BOOL;
    result->boolVal = VARIANT_FALSE;
    return S_OK;
  }

 private:
  void Read(IDispatch& record) {
    for (const wchar_t* field : kFields) {
      auto* name = const_cast<wchar_t*>(field);
      DISPID id = DISPID_UNKNOWN;
      record.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
      DISPPARAMS none{};
      VARIANT value;
      VariantInit(&value);
      record.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
      if (value.vt == VT_I4) ports_ += value.lVal;
      VariantClear(&value);
    }
  }

  bool reads_;
  std::int64_t taken_ = 0;
  std::int64_t ports_ = 0;
};

class Text {
 public:
  explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(text_); }
  BSTR Copy() const { return SysAllocStringLen(text_, SysStringLen(text_)); }

 private:
  BSTR text_;
};

/// The record as somebody writes it who has only COM.
class BareRecord final : public Automation {
 public:
  BareRecord(const wchar_t* profileName, const wchar_t* description, LONG beginPort)
      : profileName_(profileName), description_(description), beginPort_(beginPort) {}

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    for (std::size_t i = 0; i < kFields.size(); ++i) {
      if (!SameName(names[0], kFields[i])) continue;
      ids[0] = static_cast<DISPID>(i) + 1;
      return S_OK;
    }
    return DISP_E_UNKNOWNNAME;
  }

  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    switch (id) {
      case 1:
        result->vt = VT_BSTR;
        result->bstrVal = profileName_.Copy();
        return S_OK;
      case 2:
        result->vt = VT_BSTR;
        result->bstrVal = description_.Copy();
        return S_OK;
      case 3:
      case 4:
        result->vt = VT_I4;
        result->lVal = id == 3 ? beginPort_ : beginPort_ + 15;
        return S_OK;
      case 5:
      case 6:
      case 8:
        result->vt = VT_BOOL;
        result->boolVal = id == 8 ? VARIANT_FALSE : VARIANT_TRUE;
        return S_OK;
      case 7:
        result->vt = VT_I2;
        result->iVal = kLocalIP;
        return S_OK;
      default:
        return DISP_E_MEMBERNOTFOUND;
    }
  }

 private:
  Text profileName_;
  Text description_;
  LONG beginPort_;
};

LONG BeginPort(LONG record) {
  return 1024 + record;
}

bool ReadsOrNot(const benchmark::State& state) {
  return state.range(0) != 0;
}

/// Whether the plug-in has had every record of every iteration, and, when it reads, what stands in them.
void Check(benchmark::State& state, const PlugIn& plugIn) {
  std::int64_t ports = 0;
  for (LONG i = 0; i < kRecords; ++i) ports += 2 * BeginPort(i) + 15;
  const auto times = static_cast<std::int64_t>(state.iterations());
  if (plugIn.Taken() != times * kRecords) state.SkipWithError("records are missing");
  if (plugIn.Ports() != (ReadsOrNot(state) ? times * ports : 0)) state.SkipWithError("the ports are wrong");
  state.SetItemsProcessed(times * kRecords);
}

void Activation(benchmark::State& state) {
  using namespace platform::win32;
  bench::MemoryMachine machine;
  machine.settings.keeps = false;
  CRegistry registry;
  LONG record = 0;
  for (int i = 0; i < kProfiles; ++i) {
    const auto profile = std::make_shared<CMapProfile>();
    profile->sName = "Game server " + std::to_string(i);
    profile->bEnabled = true;
    for (int j = 0; j < kMappings; ++j, ++record) {
      const auto mapping = std::make_shared<CMapping>();
      mapping->sDescription("Voice chat of the game");
      mapping->lBeginPort(BeginPort(record));
      mapping->lEndPort(BeginPort(record) + 15);
      mapping->Protocal(2);
      mapping->iForwardIPAddress(-1);
      profile->AddMapping(mapping);
    }
    registry.AddMapProfile(profile, nullptr);
  }
  const auto plugIn = ComPointer<PlugIn>::Adopt(new PlugIn(ReadsOrNot(state)));
  registry.Router =
      std::make_shared<ComObject>(ComPointer<IUnknown>(plugIn.Get()), ComPointer<IDispatch>(plugIn.Get()));
  for (auto _ : state) {
    bool failed = true;
    registry.ActivatePortForwarding(kLocalIP, true, failed);
    if (failed) state.SkipWithError("the plug-in refuses");
  }
  Check(state, *plugIn.Get());
  registry.Router.reset();
}

void YardstickBareCom(benchmark::State& state) {
  PlugIn* const plugIn = new PlugIn(ReadsOrNot(state));
  for (auto _ : state) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_DISPATCH, 0, kRecords);
    IDispatch** elements = nullptr;
    SafeArrayAccessData(array, reinterpret_cast<void**>(&elements));
    for (LONG i = 0; i < kRecords; ++i) {
      elements[i] = new BareRecord(L"Game server 500", L"Voice chat of the game", BeginPort(i));
    }
    SafeArrayUnaccessData(array);

    auto* name = const_cast<wchar_t*>(L"IServer_SetPortForwarding");
    DISPID id = DISPID_UNKNOWN;
    plugIn->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    SHORT localIP = kLocalIP;
    VARIANT arguments[2];
    arguments[1].vt = VT_BYREF | VT_ARRAY | VT_DISPATCH;
    arguments[1].pparray = &array;
    arguments[0].vt = VT_BYREF | VT_I2;
    arguments[0].piVal = &localIP;
    DISPPARAMS parameters = {arguments, nullptr, 2, 0};
    VARIANT result;
    VariantInit(&result);
    plugIn->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters,
                   &result, nullptr, nullptr);
    VariantClear(&result);
    SafeArrayDestroy(array);
  }
  Check(state, *plugIn);
  plugIn->Release();
}

BENCHMARK(Activation)
    ->Name("Activation/10,000 mappings, the plug-in reads")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(YardstickBareCom)
    ->Name("Activation/yardstick: bare COM, the plug-in reads")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
