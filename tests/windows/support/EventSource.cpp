#include "support/EventSource.h"

#include <olectl.h>

#include <algorithm>
#include <stdexcept>

namespace support {
namespace {

void Require(HRESULT result, const char* what) {
  if (FAILED(result)) throw std::runtime_error(std::string(what) + " failed with " + std::to_string(result));
}

constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;

class PointEnumerator : public IEnumConnectionPoints, public CountedObject {
 public:
  explicit PointEnumerator(std::vector<ConnectionPoint*> points) : points_(std::move(points)) {
    for (ConnectionPoint* point : points_) point->AddRef();
  }

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IEnumConnectionPoints)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IEnumConnectionPoints*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return Drop(); }
  STDMETHODIMP Next(ULONG count, IConnectionPoint** points, ULONG* fetched) override {
    ULONG given = 0;
    for (; given < count && next_ < points_.size(); ++given, ++next_) {
      points_[next_]->AddRef();
      points[given] = points_[next_];
    }
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG) override { return E_NOTIMPL; }
  STDMETHODIMP Reset() override { return E_NOTIMPL; }
  STDMETHODIMP Clone(IEnumConnectionPoints**) override { return E_NOTIMPL; }

 private:
  ~PointEnumerator() override {
    for (ConnectionPoint* point : points_) point->Release();
  }

  std::vector<ConnectionPoint*> points_;
  std::size_t next_ = 0;
};

}  // namespace

ConnectionPoint::~ConnectionPoint() {
  for (const auto& [cookie, sink] : sinks_) sink->Release();
}

HRESULT ConnectionPoint::Raise(DISPID event, std::vector<VARIANT*> arguments, EXCEPINFO* exception) {
  std::vector<VARIANT> reversed;
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument)
    reversed.push_back(**argument);
  DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  HRESULT answer = S_FALSE;
  // A copy, so that a sink may leave or come while it is called.
  auto sinks = sinks_;
  for (const auto& [cookie, sink] : sinks) sink->AddRef();
  for (const auto& [cookie, sink] : sinks) {
    answer = sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                          exception, nullptr);
  }
  for (const auto& [cookie, sink] : sinks) sink->Release();
  return answer;
}

HRESULT ConnectionPoint::RaiseByName(const std::wstring& event, std::vector<VARIANT*> arguments) {
  std::wstring name = event;
  LPOLESTR names[] = {name.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = sinks_.at(0).second->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  return FAILED(found) ? found : Raise(id, std::move(arguments));
}

IDispatch* ConnectionPoint::TakeSink() const {
  IDispatch* sink = sinks_.at(0).second;
  sink->AddRef();
  return sink;
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IConnectionPoint)) return E_NOINTERFACE;
  AddRef();
  *object = static_cast<IConnectionPoint*>(this);
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* id) {
  *id = id_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  *container = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (FAILED(adviseAnswer_)) return adviseAnswer_;
  IDispatch* events = nullptr;
  if (FAILED(sink->QueryInterface(asked_, reinterpret_cast<void**>(&events)))) return CONNECT_E_CANNOTCONNECT;
  *cookie = nextCookie_++;
  sinks_.emplace_back(*cookie, events);
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
  const auto found =
      std::find_if(sinks_.begin(), sinks_.end(), [&](const auto& entry) { return entry.first == cookie; });
  if (found == sinks_.end()) return CONNECT_E_NOCONNECTION;
  IDispatch* sink = found->second;
  sinks_.erase(found);
  sink->Release();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  *connections = nullptr;
  return E_NOTIMPL;
}

ConnectionPoint& EventSource::AddPoint(REFIID id) {
  points_.push_back(new ConnectionPoint(id));
  return *points_.back();
}

void EventSource::SetClassInfo(ITypeInfo* info) {
  classInfo_ = info;
  info->AddRef();
}

void EventSource::SetTypeInfo(ITypeInfo* info) {
  typeInfo_ = info;
  info->AddRef();
}

EventSource::~EventSource() {
  for (ConnectionPoint* point : points_) point->Release();
  if (classInfo_) classInfo_->Release();
  if (typeInfo_) typeInfo_->Release();
}

STDMETHODIMP EventSource::QueryInterface(REFIID id, void** object) {
  if (IsEqualIID(id, IID_IConnectionPointContainer)) {
    *object = static_cast<IConnectionPointContainer*>(this);
  } else if (IsEqualIID(id, IID_IProvideClassInfo) && classInfo_) {
    *object = static_cast<IProvideClassInfo*>(this);
  } else {
    return AutomationObject::QueryInterface(id, object);
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP EventSource::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) {
  if (!typeInfo_) return AutomationObject::GetTypeInfo(index, locale, info);
  typeInfo_->AddRef();
  *info = typeInfo_;
  return S_OK;
}

STDMETHODIMP EventSource::EnumConnectionPoints(IEnumConnectionPoints** points) {
  *points = new PointEnumerator(points_);
  return S_OK;
}

STDMETHODIMP EventSource::FindConnectionPoint(REFIID id, IConnectionPoint** point) {
  *point = nullptr;
  for (ConnectionPoint* one : points_) {
    IID own{};
    one->GetConnectionInterface(&own);
    if (!IsEqualIID(own, id)) continue;
    one->AddRef();
    *point = one;
    return S_OK;
  }
  return CONNECT_E_NOCONNECTION;
}

STDMETHODIMP EventSource::GetClassInfo(ITypeInfo** info) {
  classInfo_->AddRef();
  *info = classInfo_;
  return S_OK;
}

TypeLibrary::TypeLibrary(const std::wstring& path) : path_(path), id_(NewId()) {
  Require(CreateTypeLib2(kSystem, path_.c_str(), &library_), "CreateTypeLib2");
  Require(library_->SetGuid(id_), "ICreateTypeLib2::SetGuid");
  Require(library_->SetVersion(1, 0), "ICreateTypeLib2::SetVersion");
}

TypeLibrary::~TypeLibrary() {
  if (registered_) UnRegisterTypeLib(id_, 1, 0, LOCALE_NEUTRAL, kSystem);
  for (ITypeInfo* info : kept_) info->Release();
  library_->Release();
}

ICreateTypeInfo* TypeLibrary::Create(TYPEKIND kind, REFGUID id) {
  std::wstring name = L"Type" + std::to_wstring(++count_);
  ICreateTypeInfo* made = nullptr;
  Require(library_->CreateTypeInfo(name.data(), kind, &made), "ICreateTypeLib2::CreateTypeInfo");
  Require(made->SetGuid(id), "ICreateTypeInfo::SetGuid");
  return made;
}

ITypeInfo* TypeLibrary::Keep(ICreateTypeInfo* made) {
  ITypeInfo* info = nullptr;
  Require(made->LayOut(), "ICreateTypeInfo::LayOut");
  Require(made->QueryInterface(IID_ITypeInfo, reinterpret_cast<void**>(&info)), "QueryInterface of a type");
  made->Release();
  kept_.push_back(info);
  return info;
}

ITypeInfo* TypeLibrary::AddDispinterface(REFIID id,
                                         const std::vector<std::pair<std::wstring, MEMBERID>>& methods,
                                         UINT flags) {
  ICreateTypeInfo* made = Create(TKIND_DISPATCH, id);
  if (flags != 0) Require(made->SetTypeFlags(flags), "ICreateTypeInfo::SetTypeFlags");
  UINT index = 0;
  for (const auto& [method, member] : methods) {
    FUNCDESC description{};
    description.memid = member;
    description.funckind = FUNC_DISPATCH;
    description.invkind = INVOKE_FUNC;
    description.callconv = CC_STDCALL;
    description.elemdescFunc.tdesc.vt = VT_VOID;
    Require(made->AddFuncDesc(index, &description), "ICreateTypeInfo::AddFuncDesc");
    std::wstring name = method;
    LPOLESTR names[] = {name.data()};
    Require(made->SetFuncAndParamNames(index, names, 1), "ICreateTypeInfo::SetFuncAndParamNames");
    ++index;
  }
  return Keep(made);
}

ITypeInfo* TypeLibrary::AddClass(ITypeInfo* events) {
  ICreateTypeInfo* made = Create(TKIND_COCLASS, NewId());
  if (events) {
    HREFTYPE reference = 0;
    Require(made->AddRefTypeInfo(events, &reference), "ICreateTypeInfo::AddRefTypeInfo");
    Require(made->AddImplType(0, reference), "ICreateTypeInfo::AddImplType");
    Require(made->SetImplTypeFlags(0, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE),
            "ICreateTypeInfo::SetImplTypeFlags");
  }
  return Keep(made);
}

void TypeLibrary::Register() {
  Require(library_->SaveAllChanges(), "ICreateTypeLib2::SaveAllChanges");
  ITypeLib* saved = nullptr;
  Require(library_->QueryInterface(IID_ITypeLib, reinterpret_cast<void**>(&saved)),
          "QueryInterface of a library");
  const HRESULT result = RegisterTypeLib(saved, path_.data(), nullptr);
  saved->Release();
  Require(result, "RegisterTypeLib");
  registered_ = true;
}

}  // namespace support
