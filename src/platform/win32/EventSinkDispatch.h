#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "platform/ObjectFactory.h"
#include "platform/win32/DispatchObject.h"

namespace platform::win32 {

/// The identifiers under which a source raises the events, in the order of the events.
using EventIds = std::vector<DISPID>;

/// What a source calls to raise its events. The source may hold it for as long as it likes: after Detach it
/// answers every event with an error and calls nobody.
class EventSinkDispatch final : public DispatchObject {
 public:
  EventSinkDispatch(EventSink& sink, REFIID id, std::vector<std::string> names, EventIds ids);

  void Detach() { sink_ = nullptr; }

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* wrongArgument) override;

 private:
  bool Answers(REFIID id) const override;
  HRESULT Raise(std::int32_t event, DISPPARAMS& parameters, UINT* wrongArgument);

  EventSink* sink_;
  const IID id_;
  const std::vector<std::string> names_;
  const EventIds ids_;
  const DWORD thread_;
};

}  // namespace platform::win32
