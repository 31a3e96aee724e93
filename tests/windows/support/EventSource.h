#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Automation.h"

namespace support {

/// A connection point that raises events the way automation sources do.
class ConnectionPoint : public IConnectionPoint, public CountedObject {
 public:
  explicit ConnectionPoint(REFIID id) : id_(id), asked_(id) {}

  /// Raises the event at every sink. `arguments` stand in the order of the declaration and stay the caller's.
  HRESULT Raise(DISPID event, std::vector<VARIANT*> arguments, EXCEPINFO* exception = nullptr);
  /// Looks the event's name up at the sink first.
  HRESULT RaiseByName(const std::wstring& event, std::vector<VARIANT*> arguments);

  std::size_t SinkCount() const { return sinks_.size(); }
  /// The first sink; the caller must release it.
  IDispatch* TakeSink() const;
  /// Asks sinks for IDispatch from here on, as a source may to which the interface's own id doesn't travel.
  void AskForDispatch() { asked_ = IID_IDispatch; }
  /// The answer of every later Advise.
  void RefuseSinks(HRESULT answer) { adviseAnswer_ = answer; }

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return Drop(); }
  STDMETHODIMP GetConnectionInterface(IID* id) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

 private:
  ~ConnectionPoint() override;

  const IID id_;
  IID asked_;
  std::vector<std::pair<DWORD, IDispatch*>> sinks_;
  DWORD nextCookie_ = 1;
  HRESULT adviseAnswer_ = S_OK;
};

/// An automation object with connection points, which may tell what class it is of.
class EventSource : public AutomationObject, public IConnectionPointContainer, public IProvideClassInfo {
 public:
  /// The source keeps the point; it is valid for as long as the source lives.
  ConnectionPoint& AddPoint(REFIID id);
  /// What IProvideClassInfo gives; without it the source lacks that interface.
  void SetClassInfo(ITypeInfo* info);
  /// What IDispatch::GetTypeInfo gives.
  void SetTypeInfo(ITypeInfo* info);

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return Drop(); }
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override;
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;

 private:
  ~EventSource() override;

  std::vector<ConnectionPoint*> points_;
  ITypeInfo* classInfo_ = nullptr;
  ITypeInfo* typeInfo_ = nullptr;
};

/// A type library that is made while the test runs.
class TypeLibrary {
 public:
  /// The file is written only by Register.
  explicit TypeLibrary(const std::wstring& path = L"harbourline-test.tlb");
  TypeLibrary(const TypeLibrary&) = delete;
  TypeLibrary& operator=(const TypeLibrary&) = delete;
  ~TypeLibrary();

  /// A dispinterface with methods of these names and identifiers, without arguments. The library keeps the
  /// result.
  ITypeInfo* AddDispinterface(REFIID id, const std::vector<std::pair<std::wstring, MEMBERID>>& methods,
                              UINT flags = 0);
  /// A class that raises the events of the interface, if one is given. The library keeps the result.
  ITypeInfo* AddClass(ITypeInfo* events);

  /// Saves the library and makes it known to COM while it lives, so that other libraries find it.
  void Register();

 private:
  ICreateTypeInfo* Create(TYPEKIND kind, REFGUID id);
  ITypeInfo* Keep(ICreateTypeInfo* made);

  std::wstring path_;
  GUID id_{};
  bool registered_ = false;
  ICreateTypeLib2* library_ = nullptr;
  std::vector<ITypeInfo*> kept_;
  int count_ = 0;
};

}  // namespace support
