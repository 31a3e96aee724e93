#pragma once

// Objects that a plug-in hands out: one whose members are declared by name, and the source of its events.
// HarbourlinePlugIn.h includes this file.

#include <windows.h>

#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <exception>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "HarbourlineValues.h"

namespace harbourline {

// The identifiers of Harbourline.idl.
inline constexpr GUID kEventHandlerClassId = {
    0xFED6E4EA, 0x5A5B, 0x47A2, {0xAE, 0x24, 0x90, 0xDF, 0xB7, 0xFA, 0x4E, 0x27}};
inline constexpr IID kEventInterfaceId = {
    0xE0A74CD3, 0x5372, 0x419F, {0xA5, 0xBE, 0x5D, 0x09, 0xBD, 0xCF, 0xB7, 0x40}};
inline constexpr DISPID kErrorEvent = 1;
inline constexpr DISPID kIdentifyPortEvent = 2;
inline constexpr DISPID kLogEvent = 3;

/// One line for the activity log. The type "in" is traffic that comes in; anything else counts as outgoing.
struct LogLine {
  std::wstring type;
  std::wstring sourceIP;
  long sourcePort = 0;
  std::wstring destination;  ///< address or host name
  long destinationPort = 0;
  std::wstring miscellaneous;  ///< the description that IdentifyPort answered
};

/// Harbourline's answer to IdentifyPort.
struct PortAnswer {
  std::wstring description;  ///< empty for an unknown port
  bool filterOut = false;    ///< the user doesn't want to see this port's lines
};

namespace detail {

inline void Fill(EXCEPINFO* exception, HRESULT code, const std::wstring& text) {
  if (!exception) return;
  *exception = {};
  exception->scode = code;
  exception->bstrDescription = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  exception->bstrSource = SysAllocString(L"Harbourline plug-in");
}

/// Runs a member's handler and turns what it throws into the answer that COM wants.
template <class Action>
HRESULT Guard(EXCEPINFO* exception, UINT* badArgument, UINT argumentCount, Action&& action) noexcept {
  try {
    action();
    return S_OK;
  } catch (const BadArgument& bad) {
    if (badArgument) *badArgument = argumentCount - 1 - static_cast<UINT>(bad.index);
    return bad.code;
  } catch (const Failure& failure) {
    Fill(exception, failure.Code(), failure.Text());
    return exception ? DISP_E_EXCEPTION : failure.Code();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception& other) {
    const char* what = other.what();
    Fill(exception, E_FAIL, std::wstring(what, what + std::strlen(what)));
    return exception ? DISP_E_EXCEPTION : E_FAIL;
  } catch (...) {
    Fill(exception, E_UNEXPECTED, L"Unexpected failure.");
    return exception ? DISP_E_EXCEPTION : E_UNEXPECTED;
  }
}

}  // namespace detail

/// An automation object whose members are declared by name. Derive, and declare the members in the
/// constructor.
class DispatchObject : public IDispatch {
 public:
  DispatchObject() = default;
  DispatchObject(const DispatchObject&) = delete;
  DispatchObject& operator=(const DispatchObject&) = delete;
  virtual ~DispatchObject() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDispatch)) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
  ULONG STDMETHODCALLTYPE Release() override {
    const long left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (!info) return E_POINTER;
    *info = nullptr;
    return DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    if (!names || !ids || count == 0) return E_INVALIDARG;
    for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    // The names behind the first are names of arguments, and the members' arguments have none.
    ids[0] = names[0] ? Find(names[0]) : DISPID_UNKNOWN;
    return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override {
    if (result) VariantInit(result);
    if (!IsEqualIID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    if (!parameters || (parameters->cArgs > 0 && !parameters->rgvarg)) return E_INVALIDARG;
    if (id < 1 || static_cast<std::size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
    // A call may end in the release of the last reference from outside, say when it shows a dialog.
    const Ref<IDispatch> alive(this);
    const Member& member = members_[static_cast<std::size_t>(id) - 1];
    Arguments arguments(*parameters);
    Value value;
    HRESULT code = S_OK;
    const bool write = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    if (write) {
      if (!member.write) return DISP_E_MEMBERNOTFOUND;
      if (arguments.Count() != 1) return DISP_E_BADPARAMCOUNT;
      code = detail::Guard(exception, badArgument, parameters->cArgs, [&] { member.write(arguments); });
    } else {
      if (!member.call || !(flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET))) return DISP_E_MEMBERNOTFOUND;
      if (parameters->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
      if (arguments.Count() != member.argumentCount) return DISP_E_BADPARAMCOUNT;
      code =
          detail::Guard(exception, badArgument, parameters->cArgs, [&] { value = member.call(arguments); });
    }
    detail::Guard(nullptr, nullptr, 0, [&] { OnCalled({member.name, write, arguments, value.Get(), code}); });
    if (SUCCEEDED(code) && result) *result = value.Detach();
    return code;
  }

 protected:
  /// A member without arguments, read as a property or called as a function.
  void Read(const wchar_t* name, std::function<Value()> handler) {
    Method(name, 0, [read = std::move(handler)](Arguments&) { return read(); });
  }
  /// A property that is written; the value is argument 0. May share its name with a Read.
  void Write(const wchar_t* name, std::function<void(Arguments&)> handler) {
    Of(name).write = std::move(handler);
  }
  /// A member with arguments, all of them required.
  void Method(const wchar_t* name, std::size_t argumentCount, std::function<Value(Arguments&)> handler) {
    Member& member = Of(name);
    member.call = std::move(handler);
    member.argumentCount = argumentCount;
  }

  /// One call as it went: `code` is what COM got as the answer, and `result` is empty unless that is a
  /// success.
  struct Call {
    const std::wstring& member;
    bool write;
    const Arguments& arguments;
    const VARIANT& result;
    HRESULT code;
  };
  /// Comes after each call that reached a member, for a plug-in that shows or traces them.
  virtual void OnCalled(const Call& call) { static_cast<void>(call); }

 private:
  struct Member {
    std::wstring name;
    std::size_t argumentCount = 0;
    std::function<Value(Arguments&)> call;
    std::function<void(Arguments&)> write;
  };

  DISPID Find(const wchar_t* name) const {
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (CompareStringOrdinal(members_[i].name.c_str(), -1, name, -1, TRUE) == CSTR_EQUAL) {
        return static_cast<DISPID>(i + 1);
      }
    }
    return DISPID_UNKNOWN;
  }

  Member& Of(const wchar_t* name) {
    const DISPID id = Find(name);
    if (id != DISPID_UNKNOWN) return members_[static_cast<std::size_t>(id) - 1];
    members_.push_back({name, 0, nullptr, nullptr});
    return members_.back();
  }

  module::Use use_;
  std::atomic<long> references_{0};
  std::vector<Member> members_;
};

namespace detail {

inline void CopyItem(IConnectionPoint* from, IConnectionPoint*& to) {
  from->AddRef();
  to = from;
}
inline void CopyItem(const CONNECTDATA& from, CONNECTDATA& to) {
  from.pUnk->AddRef();
  to = from;
}
inline void DropItem(IConnectionPoint* item) {
  item->Release();
}
inline void DropItem(const CONNECTDATA& item) {
  item.pUnk->Release();
}

/// COM's walk over a fixed list.
template <class Interface, class Item>
class Enumeration final : public Interface {
 public:
  Enumeration(const IID& iid, const std::vector<Item>& items, std::size_t position)
      : iid_(iid), position_(position) {
    for (const Item& item : items) {
      items_.emplace_back();
      CopyItem(item, items_.back());
    }
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, iid_)) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
  ULONG STDMETHODCALLTYPE Release() override {
    const long left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* items, ULONG* fetched) override {
    if (!items || (count != 1 && !fetched)) return E_POINTER;
    ULONG given = 0;
    while (given < count && position_ < items_.size()) CopyItem(items_[position_++], items[given++]);
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = items_.size() - position_;
    position_ += (std::min<std::size_t>)(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(Interface** clone) override {
    if (!clone) return E_POINTER;
    *clone = nullptr;
    return Guard(nullptr, nullptr, 0, [&] {
      *clone = new Enumeration(iid_, items_, position_);
      (*clone)->AddRef();
    });
  }

 private:
  ~Enumeration() {
    for (const Item& item : items_) DropItem(item);
  }

  module::Use use_;
  std::atomic<long> references_{0};
  IID iid_;
  std::vector<Item> items_;
  std::size_t position_;
};

}  // namespace detail

/// The object that IServer_EventHandler hands out. Make it with `new` and keep it in a Ref.
/// The Raise functions call every connected sink and then throw the Failure of the first that failed.
class EventSource final : public DispatchObject, public IConnectionPointContainer, public IProvideClassInfo2 {
 public:
  bool HasSinks() const { return !point_.sinks.empty(); }

  void RaiseError(const std::wstring& message, short number) {
    const Value text(message);
    VARIANT arguments[] = {Number16(number), text.Get()};
    Raise(kErrorEvent, arguments, 2);
  }

  PortAnswer IdentifyPort(long port) {
    Value description(L"");
    VARIANT_BOOL filterOut = VARIANT_FALSE;
    VARIANT arguments[3] = {};
    arguments[2] = Number32(port);
    arguments[1].vt = VT_BYREF | VT_BSTR;
    arguments[1].pbstrVal = &description.Receive()->bstrVal;
    arguments[0].vt = VT_BYREF | VT_BOOL;
    arguments[0].pboolVal = &filterOut;
    Raise(kIdentifyPortEvent, arguments, 3);
    return {description.Text(), filterOut != VARIANT_FALSE};
  }

  void RaiseLog(const LogLine& line) {
    const Value type(line.type);
    const Value source(line.sourceIP);
    const Value destination(line.destination);
    const Value miscellaneous(line.miscellaneous);
    VARIANT arguments[] = {miscellaneous.Get(), Number32(line.destinationPort),
                           destination.Get(),   Number32(line.sourcePort),
                           source.Get(),        type.Get()};
    Raise(kLogEvent, arguments, 6);
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    if (IsEqualIID(iid, IID_IConnectionPointContainer)) {
      *object = static_cast<IConnectionPointContainer*>(this);
    } else if (IsEqualIID(iid, IID_IProvideClassInfo) || IsEqualIID(iid, IID_IProvideClassInfo2)) {
      *object = static_cast<IProvideClassInfo2*>(this);
    } else {
      return DispatchObject::QueryInterface(iid, object);
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return DispatchObject::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return DispatchObject::Release(); }

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override {
    if (!points) return E_POINTER;
    *points = nullptr;
    return detail::Guard(nullptr, nullptr, 0, [&] {
      *points = new detail::Enumeration<IEnumConnectionPoints, IConnectionPoint*>(IID_IEnumConnectionPoints,
                                                                                  {&point_}, 0);
      (*points)->AddRef();
    });
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
    if (!point) return E_POINTER;
    *point = nullptr;
    if (!IsEqualIID(iid, kEventInterfaceId)) return CONNECT_E_NOCONNECTION;
    *point = &point_;
    AddRef();
    return S_OK;
  }

  /// From the type library in the DLL's resource 1.
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    if (!info) return E_POINTER;
    *info = nullptr;
    return detail::Guard(nullptr, nullptr, 0, [&] {
      Ref<ITypeLib> library;
      detail::Check(LoadTypeLibEx(module::Path().c_str(), REGKIND_NONE, library.Receive()),
                    L"No type library.");
      detail::Check(library->GetTypeInfoOfGuid(kEventHandlerClassId, info), L"No class in the type library.");
    });
  }
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override {
    if (!guid) return E_POINTER;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
    *guid = kEventInterfaceId;
    return S_OK;
  }

 private:
  struct Sink {
    DWORD cookie;
    Ref<IDispatch> object;
  };

  /// Lives and dies with the source.
  struct Point final : IConnectionPoint {
    explicit Point(EventSource& source) : owner(source) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
      if (!object) return E_POINTER;
      *object = nullptr;
      if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IConnectionPoint)) return E_NOINTERFACE;
      *object = static_cast<IConnectionPoint*>(this);
      AddRef();
      return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return owner.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner.Release(); }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
      if (!iid) return E_POINTER;
      *iid = kEventInterfaceId;
      return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override {
      if (!container) return E_POINTER;
      *container = &owner;
      AddRef();
      return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
      if (!sink || !cookie) return E_POINTER;
      *cookie = 0;
      Ref<IDispatch> object;
      if (FAILED(sink->QueryInterface(kEventInterfaceId, reinterpret_cast<void**>(object.Receive()))) &&
          FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(object.Receive())))) {
        return CONNECT_E_CANNOTCONNECT;
      }
      return detail::Guard(nullptr, nullptr, 0, [&] {
        sinks.push_back({lastCookie + 1, std::move(object)});
        *cookie = ++lastCookie;
      });
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
      for (auto sink = sinks.begin(); sink != sinks.end(); ++sink) {
        if (sink->cookie != cookie) continue;
        // The sink's own end may come back here, so it leaves the list first.
        const Sink leaving = std::move(*sink);
        sinks.erase(sink);
        return S_OK;
      }
      return CONNECT_E_NOCONNECTION;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override {
      if (!connections) return E_POINTER;
      *connections = nullptr;
      return detail::Guard(nullptr, nullptr, 0, [&] {
        std::vector<CONNECTDATA> items;
        for (const Sink& sink : sinks) items.push_back({sink.object.get(), sink.cookie});
        *connections = new detail::Enumeration<IEnumConnections, CONNECTDATA>(IID_IEnumConnections, items, 0);
        (*connections)->AddRef();
      });
    }

    EventSource& owner;
    std::vector<Sink> sinks;
    DWORD lastCookie = 0;
  };

  static VARIANT Number16(short number) { return Value(number).Get(); }
  static VARIANT Number32(long number) { return Value(number).Get(); }

  void Raise(DISPID event, VARIANT* arguments, UINT count) {
    const Ref<EventSource> alive(this);
    const std::vector<Sink> sinks = point_.sinks;  // a handler may connect or disconnect
    HRESULT firstCode = S_OK;
    std::wstring firstText;
    for (const Sink& sink : sinks) {
      DISPPARAMS parameters = {arguments, nullptr, count, 0};
      EXCEPINFO exception = {};
      const HRESULT code = sink.object->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                               &parameters, nullptr, &exception, nullptr);
      if (code == DISP_E_EXCEPTION && exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
      if (FAILED(code) && SUCCEEDED(firstCode)) {
        firstCode = code == DISP_E_EXCEPTION && exception.scode ? exception.scode : code;
        firstText = Value::Owned(exception.bstrDescription);
      }
      SysFreeString(exception.bstrSource);
      SysFreeString(exception.bstrDescription);
      SysFreeString(exception.bstrHelpFile);
    }
    if (FAILED(firstCode))
      throw Failure(firstText.empty() ? L"Harbourline refused an event." : firstText, firstCode);
  }

  Point point_{*this};
};

}  // namespace harbourline
