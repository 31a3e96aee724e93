#include <ocidl.h>
#include <olectl.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "Recording.h"

namespace recording {
namespace {

constexpr IID kContractEvents = {
    0xE0A74CD3, 0x5372, 0x419F, {0xA5, 0xBE, 0x5D, 0x09, 0xBD, 0xCF, 0xB7, 0x40}};
constexpr IID kOtherEvents = {0x722E5B49, 0x3482, 0x487C, {0x87, 0x81, 0x16, 0x6F, 0xB6, 0x6D, 0x51, 0x40}};
constexpr IID kOtherSource = {0xBC61CC50, 0xF698, 0x40D9, {0x9F, 0x32, 0x8A, 0x42, 0xB9, 0x9C, 0xC1, 0x92}};
constexpr CLSID kOtherClass = {0x99B43877, 0x87B1, 0x4302, {0x8A, 0xFE, 0x64, 0xD3, 0x79, 0xA1, 0x35, 0xB0}};
constexpr char kWindowClass[] = "HarbourlineRecordingEvents";

struct EventNumbers {
  DISPID error;
  DISPID identifyPort;
  DISPID log;
};
constexpr EventNumbers kContractNumbers = {1, 2, 3};
constexpr EventNumbers kOtherNumbers = {12, 13, 11};

enum class Kind { kContract, kOther, kUntyped, kNone };

Kind ScriptedKind(const std::string& className) {
  const auto name = Script(className, "EventSource");
  if (name == "other") return Kind::kOther;
  if (name == "untyped") return Kind::kUntyped;
  return name == "none" ? Kind::kNone : Kind::kContract;
}

/// The arguments of one event, in declared order, as plain values. The last two of IdentifyPort are its
/// answers.
class EventArguments {
 public:
  ~EventArguments() {
    for (VARIANT& value : values_) VariantClear(&value);
  }
  bool Add(const std::string& text) {
    VARIANT value;
    if (!ParseValue(text, value)) return false;
    values_.push_back(value);
    return true;
  }
  std::size_t Count() const { return values_.size(); }
  const VARIANT& Value(std::size_t index) const { return values_[index]; }

  /// In COM's reverse order, in the scripted style. From `firstAnswer` on the contract wants them by
  /// reference.
  std::vector<VARIANT> Passed(const std::string& style, std::size_t firstAnswer) {
    std::vector<VARIANT> passed;
    for (std::size_t i = values_.size(); i-- > 0;) {
      VARIANT argument = values_[i];
      if (style == "variant") {
        argument.vt = VT_BYREF | VT_VARIANT;
        argument.pvarVal = &values_[i];
      } else if ((style == "byref" || i >= firstAnswer) && argument.vt != VT_EMPTY) {
        argument.vt = static_cast<VARTYPE>(values_[i].vt | VT_BYREF);
        argument.byref = &values_[i].lVal;
      }
      passed.push_back(argument);
    }
    return passed;
  }

 private:
  std::vector<VARIANT> values_;
};

/// A walk over the one connection point.
class PointEnumerator final : public IEnumConnectionPoints {
 public:
  PointEnumerator(IConnectionPoint* point, bool done) : point_(point), done_(done) { point_->AddRef(); }
  virtual ~PointEnumerator() { point_->Release(); }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IEnumConnectionPoints)) return E_NOINTERFACE;
    *object = static_cast<IEnumConnectionPoints*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE Next(ULONG count, IConnectionPoint** points, ULONG* fetched) override {
    const bool gives = !done_ && count > 0;
    if (gives) {
      points[0] = point_;
      point_->AddRef();
      done_ = true;
    }
    if (fetched) *fetched = gives ? 1 : 0;
    return gives && count == 1 ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const bool skips = count == 0 || (count == 1 && !done_);
    if (count > 0) done_ = true;
    return skips ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    done_ = false;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints** clone) override {
    *clone = new PointEnumerator(point_, done_);
    return S_OK;
  }

 private:
  IConnectionPoint* point_;
  bool done_;
  ULONG references_ = 1;
};

/// The event source and its one connection point.
class Source final : public EventRaiser,
                     public IDispatch,
                     public IConnectionPointContainer,
                     public IConnectionPoint,
                     public IProvideClassInfo {
 public:
  explicit Source(std::string className);
  ~Source() override;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = kind_ == Kind::kOther ? 1 : 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    *info = nullptr;
    return kind_ == Kind::kOther && index == 0 ? FindTypeInfo(kOtherSource, info) : DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override {
    *points = new PointEnumerator(this, false);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
    *point = nullptr;
    if (!IsEqualIID(iid, EventInterface())) return CONNECT_E_NOCONNECTION;
    *point = this;
    AddRef();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
    *iid = EventInterface();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override {
    *container = this;
    AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    *info = nullptr;
    return FindTypeInfo(kOtherClass, info);
  }

  IDispatch* Object() override { return this; }
  bool Raise(const std::string& request) override;

 private:
  struct Sink {
    DWORD cookie;
    IDispatch* object;
    bool unadvised;
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static HRESULT FindTypeInfo(const GUID& id, ITypeInfo** info);
  const IID& EventInterface() const { return kind_ == Kind::kContract ? kContractEvents : kOtherEvents; }
  void Send(const std::string& request, DISPID event, EventArguments& arguments, std::size_t firstAnswer);
  static std::string SendOnce(IDispatch* sink, DISPID event, EventArguments& arguments,
                              std::size_t firstAnswer, const std::string& style);

  std::string class_;
  Kind kind_;
  ULONG references_ = 1;
  HWND window_ = nullptr;
  DWORD lastCookie_ = 0;
  std::vector<Sink> sinks_;
  static int windows;
};

int Source::windows = 0;

Source::Source(std::string className) : class_(std::move(className)), kind_(ScriptedKind(class_)) {
  ++objects;
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = ThisModule();
  windowClass.lpszClassName = kWindowClass;
  if (windows++ == 0) RegisterClassA(&windowClass);
  window_ = CreateWindowA(kWindowClass, class_.c_str(), WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, ThisModule(),
                          nullptr);
  if (window_) SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

Source::~Source() {
  if (window_) DestroyWindow(window_);
  if (--windows == 0) UnregisterClassA(kWindowClass, ThisModule());
  const auto left =
      std::count_if(sinks_.begin(), sinks_.end(), [](const Sink& sink) { return !sink.unadvised; });
  if (left > 0) Write(class_, "source released with " + std::to_string(left) + " sinks");
  for (const Sink& sink : sinks_) sink.object->Release();
  --objects;
}

LRESULT CALLBACK Source::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* self = reinterpret_cast<Source*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (message != WM_COPYDATA || !self) return DefWindowProcA(window, message, wParam, lParam);
  const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
  const std::string request(static_cast<const char*>(data.lpData), data.cbData);
  self->AddRef();
  const bool understood = self->Raise(request);
  self->Release();
  return understood ? TRUE : FALSE;
}

HRESULT Source::FindTypeInfo(const GUID& id, ITypeInfo** info) {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size())));
  ITypeLib* library = nullptr;
  HRESULT result = LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library);
  if (FAILED(result)) return result;
  result = library->GetTypeInfoOfGuid(id, info);
  library->Release();
  return result;
}

HRESULT Source::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch))
    *object = static_cast<IDispatch*>(this);
  if (kind_ != Kind::kNone) {
    if (IsEqualIID(iid, IID_IConnectionPointContainer))
      *object = static_cast<IConnectionPointContainer*>(this);
    if (IsEqualIID(iid, IID_IConnectionPoint)) *object = static_cast<IConnectionPoint*>(this);
  }
  if (kind_ == Kind::kOther && IsEqualIID(iid, IID_IProvideClassInfo))
    *object = static_cast<IProvideClassInfo*>(this);
  if (!*object) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT Source::Advise(IUnknown* sink, DWORD* cookie) {
  if (!sink || !cookie) return E_POINTER;
  IDispatch* object = nullptr;
  if (FAILED(sink->QueryInterface(EventInterface(), reinterpret_cast<void**>(&object))))
    return CONNECT_E_CANNOTCONNECT;
  *cookie = ++lastCookie_;
  sinks_.push_back({*cookie, object, false});
  Write(class_, "advised");
  return S_OK;
}

HRESULT Source::Unadvise(DWORD cookie) {
  const auto found = std::find_if(sinks_.begin(), sinks_.end(),
                                  [=](const Sink& sink) { return sink.cookie == cookie && !sink.unadvised; });
  if (found == sinks_.end()) return CONNECT_E_NOCONNECTION;
  Write(class_, "unadvised");
  if (Script(class_, "KeepSinks")) {
    found->unadvised = true;
    return S_OK;
  }
  IDispatch* sink = found->object;
  sinks_.erase(found);
  sink->Release();
  return S_OK;
}

bool Source::Raise(const std::string& request) {
  const EventNumbers& numbers = kind_ == Kind::kContract ? kContractNumbers : kOtherNumbers;
  std::vector<std::string> parts = Split(request, '|');
  const std::string name = parts[0];
  EventArguments arguments;
  if (name == "Raw" && parts.size() > 1) {
    for (std::size_t i = 2; i < parts.size(); ++i) {
      if (!arguments.Add(parts[i])) return false;
    }
    Send(request, std::atol(parts[1].c_str()), arguments, arguments.Count());
    return true;
  }
  constexpr std::size_t kMostParts = 7;
  parts.resize(kMostParts);
  if (name == "Error") {
    arguments.Add("text:" + parts[1]);
    arguments.Add("int16:" + parts[2]);
    Send(request, numbers.error, arguments, arguments.Count());
  } else if (name == "IdentifyPort") {
    arguments.Add("int32:" + parts[1]);
    arguments.Add("text:");
    arguments.Add("bool:False");
    Send(request, numbers.identifyPort, arguments, 1);
  } else if (name == "Log") {
    for (const std::size_t i : {1, 2, 3, 4, 5, 6})
      arguments.Add((i == 3 || i == 5 ? "int32:" : "text:") + parts[i]);
    Send(request, numbers.log, arguments, arguments.Count());
  } else {
    return false;
  }
  return true;
}

void Source::Send(const std::string& request, DISPID event, EventArguments& arguments,
                  std::size_t firstAnswer) {
  const long count = ScriptNumber(class_, "RaiseCount").value_or(1);
  const std::string style = Script(class_, "EventStyle").value_or("");
  const std::string line = "raised " + request + (count == 1 ? "" : " x " + std::to_string(count)) + " -> ";
  const std::vector<Sink> sinks = sinks_;  // a handler may advise or unadvise
  if (sinks.empty()) Write(class_, line + "nobody");
  for (const Sink& sink : sinks) sink.object->AddRef();
  for (const Sink& sink : sinks) {
    std::string outcome;
    for (long i = 0; i < count; ++i) outcome = SendOnce(sink.object, event, arguments, firstAnswer, style);
    Write(class_, line + outcome);
    sink.object->Release();
  }
}

std::string Source::SendOnce(IDispatch* sink, DISPID event, EventArguments& arguments,
                             std::size_t firstAnswer, const std::string& style) {
  std::vector<VARIANT> passed = arguments.Passed(style, firstAnswer);
  DISPPARAMS parameters{passed.data(), nullptr, static_cast<UINT>(passed.size()), 0};
  EXCEPINFO exception{};
  const HRESULT code = sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                    nullptr, &exception, nullptr);
  if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
  std::string outcome = Hex(code);
  if (exception.bstrDescription) outcome += " \"" + Narrow(exception.bstrDescription) + "\"";
  for (std::size_t i = firstAnswer; i < arguments.Count(); ++i) {
    const VARIANT& answer = passed[arguments.Count() - 1 - i];
    outcome += (i == firstAnswer ? " " : ", ") + Describe(answer);
  }
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  return outcome;
}

}  // namespace

EventRaiser* MakeEventRaiser(const std::string& className) {
  return new Source(className);
}

}  // namespace recording
