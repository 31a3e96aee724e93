#include <cstdlib>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "Recording.h"

namespace recording {
namespace {

constexpr HRESULT kScriptedFailure = static_cast<HRESULT>(0x80040201);

/// What a member answers without a script. "%" stands for the object's class.
const std::map<std::string, std::string> kAnswers = {
    {"IServer_ServerTitle", "text:Router %"}, {"IServer_EventHandler", "source"},
    {"IServer_ClassName", "text:%"},          {"IServer_DMZ", "empty"},
    {"IServer_Version", "text:1.2"},          {"IServer_Functional", "bool:True"},
    {"IServer_EnableLog", "bool:False"},      {"IServer_Configure", "bool:False"},
    {"IServer_WANIP", "text:198.51.100.7"},   {"IServer_CheckForWarning", "bool:False"},
    {"IServer_SetLogging", "bool:False"},     {"IServer_SetPortForwarding", "bool:False"},
    {"IServer_ApplicationExiting", "empty"},  {"IServer_GetFeatures", "bool:False"},
    {"IServer_ActivateFeaure", "bool:False"}, {"IServer_GetPortForwardingDescription", "text:"},
    {"IServer_SaveSettings", "empty"},
};

std::string FlagNames(WORD flags, const DISPPARAMS& parameters) {
  std::string names;
  const auto add = [&](const char* name) { names += (names.empty() ? "" : "+") + std::string(name); };
  if (flags & DISPATCH_METHOD) add("METHOD");
  if (flags & DISPATCH_PROPERTYGET) add("GET");
  if (flags & DISPATCH_PROPERTYPUT) add("PUT");
  if (flags & DISPATCH_PROPERTYPUTREF) add("PUTREF");
  const bool named = parameters.cNamedArgs == 1 && parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  const bool write = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  if (write && !named) names += "-UNNAMED";
  if (!write && parameters.cNamedArgs > 0) names += "-NAMED";
  return names;
}

void RunMessageLoop(ULONGLONG milliseconds) {
  constexpr DWORD kStep = 10;
  const ULONGLONG end = GetTickCount64() + milliseconds;
  while (GetTickCount64() < end) {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));
        return;
      }
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kStep, QS_ALLINPUT);
  }
}

class PlugIn final : public IDispatch {
 public:
  explicit PlugIn(std::string className) : class_(std::move(className)) {
    ++objects;
    Write(class_, "created");
  }
  virtual ~PlugIn() {
    if (raiser_) raiser_->Object()->Release();
    Write(class_, "released");
    --objects;
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
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override;

 private:
  std::optional<std::string> Fault(const std::string& kind, const std::string& member, WORD flags) const;
  HRESULT Fail(const std::string& member, const std::string& text, EXCEPINFO* exception) const;
  void RaiseScripted(const std::string& member);
  HRESULT Answer(const std::string& member, WORD flags, DISPPARAMS& parameters, VARIANT& result);
  EventRaiser& Raiser();

  std::string class_;
  ULONG references_ = 1;
  EventRaiser* raiser_ = nullptr;
  // How often each member was called.
  std::map<std::string, long> calls_;
};

/// The script value of that kind for the access; nothing before the call from which on the member is faulty.
std::optional<std::string> PlugIn::Fault(const std::string& kind, const std::string& member,
                                         WORD flags) const {
  const auto from = ScriptNumber(class_, "From_" + member);
  const auto called = calls_.find(member);
  if (from && (called == calls_.end() ? 0 : called->second) < *from) return std::nullopt;
  if (flags & DISPATCH_PROPERTYPUT) {
    if (auto written = Script(class_, kind + "_" + member + "_PUT")) return written;
  }
  return Script(class_, kind + "_" + member);
}

HRESULT PlugIn::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) {
  if (count != 1) return DISP_E_UNKNOWNNAME;
  const std::string member = Narrow(names[0]);
  const auto found = kAnswers.find(member);
  // The call that follows this look-up isn't counted yet.
  const auto from = ScriptNumber(class_, "From_" + member);
  const bool faulty = !from || calls_[member] + 1 >= *from;
  const bool missing = found == kAnswers.end() || (faulty && Script(class_, "Missing_" + member));
  ids[0] = missing ? DISPID_UNKNOWN : 1 + static_cast<DISPID>(std::distance(kAnswers.begin(), found));
  if (Script(class_, "RecordLookups")) {
    Write(class_, "lookup " + member + " " + Hex(static_cast<HRESULT>(locale)) + " -> " +
                      (missing ? "missing" : "found"));
  }
  return missing ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT PlugIn::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                       EXCEPINFO* exception, UINT*) {
  if (id < 1 || id > static_cast<DISPID>(kAnswers.size())) return DISP_E_MEMBERNOTFOUND;
  const std::string member = std::next(kAnswers.begin(), id - 1)->first;
  std::string line = member + " " + FlagNames(flags, *parameters) + " (";
  for (UINT i = 0; i < parameters->cArgs; ++i) {
    line += (i > 0 ? ", " : "") + Describe(parameters->rgvarg[parameters->cArgs - 1 - i]);
  }
  Write(class_, line + ")");
  AddRef();
  ++calls_[member];
  RaiseScripted(member);
  if (const auto slow = Fault("Slow", member, flags)) Sleep(std::strtoul(slow->c_str(), nullptr, 0));
  if (const auto loop = Fault("Loop", member, flags)) RunMessageLoop(std::strtoul(loop->c_str(), nullptr, 0));
  VARIANT answer;
  VariantInit(&answer);
  HRESULT code = S_OK;
  if (const auto broken = Fault("Break", member, flags)) {
    code = static_cast<HRESULT>(std::strtoll(broken->c_str(), nullptr, 0));
  } else if (const auto text = Fault("Fail", member, flags)) {
    code = Fail(member, *text, exception);
  } else {
    if (Script(class_, "ChangeArguments")) {
      for (UINT i = 0; i < parameters->cArgs; ++i) Overwrite(parameters->rgvarg[i]);
    }
    code = Answer(member, flags, *parameters, answer);
  }
  if (result) {
    *result = answer;
  } else {
    VariantClear(&answer);
  }
  Release();
  return code;
}

HRESULT PlugIn::Fail(const std::string& member, const std::string& text, EXCEPINFO* exception) const {
  if (!exception) return DISP_E_EXCEPTION;
  *exception = {};
  const auto code =
      static_cast<HRESULT>(ScriptNumber(class_, "FailCode_" + member).value_or(kScriptedFailure));
  constexpr HRESULT kLargestShortCode = 65535;
  if (code > 0 && code <= kLargestShortCode) {
    exception->wCode = static_cast<WORD>(code);
  } else {
    exception->scode = code;
  }
  exception->bstrDescription = Wide(text);
  exception->bstrSource = Wide(class_);
  return DISP_E_EXCEPTION;
}

void PlugIn::RaiseScripted(const std::string& member) {
  const auto requests = Script(class_, "Raise_" + member);
  if (!requests) return;
  for (const std::string& request : Split(*requests, ';')) Raiser().Raise(request);
}

EventRaiser& PlugIn::Raiser() {
  if (!raiser_) raiser_ = MakeEventRaiser(class_);
  return *raiser_;
}

HRESULT PlugIn::Answer(const std::string& member, WORD flags, DISPPARAMS& parameters, VARIANT& result) {
  if (member == "IServer_GetFeatures" && parameters.cArgs == 2 &&
      PutFeatures(class_, parameters.rgvarg[1], parameters.rgvarg[0])) {
    return ParseValue(Fault("Result", member, flags).value_or("bool:True"), result) ? S_OK : E_FAIL;
  }
  const std::optional<std::string> scripted = Fault("Result", member, flags);
  std::string answer = scripted.value_or(kAnswers.at(member));
  if (answer == "source") {
    result.vt = VT_DISPATCH;
    result.pdispVal = Raiser().Object();
    result.pdispVal->AddRef();
    return S_OK;
  }
  const std::size_t place = answer.find('%');
  if (!scripted && place != std::string::npos) answer.replace(place, 1, class_);
  return ParseValue(answer, result) ? S_OK : E_FAIL;
}

}  // namespace

IDispatch* MakePlugIn(const std::string& className) {
  return new PlugIn(className);
}

}  // namespace recording
