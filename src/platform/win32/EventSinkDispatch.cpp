#include "platform/win32/EventSinkDispatch.h"

#include <algorithm>
#include <utility>

#include "platform/win32/ComPointer.h"
#include "platform/win32/VariantConversion.h"

namespace platform::win32 {
namespace {

/// Where each argument of the declaration stands among those that were passed. False when one is missing.
bool OrderArguments(const DISPPARAMS& parameters, std::vector<VARIANT*>& ordered) {
  const UINT named = parameters.cNamedArgs;
  if (named > parameters.cArgs) return false;
  ordered.assign(parameters.cArgs, nullptr);
  for (UINT i = 0; i < parameters.cArgs; ++i) {
    const DISPID place =
        i < named ? parameters.rgdispidNamedArgs[i] : static_cast<DISPID>(parameters.cArgs - 1 - i);
    if (place < 0 || static_cast<UINT>(place) >= parameters.cArgs) return false;
    ordered[static_cast<std::size_t>(place)] = &parameters.rgvarg[i];
  }
  return std::find(ordered.begin(), ordered.end(), nullptr) == ordered.end();
}

}  // namespace

EventSinkDispatch::EventSinkDispatch(EventSink& sink, REFIID id, std::vector<std::string> names, EventIds ids)
    : sink_(&sink), id_(id), names_(std::move(names)), ids_(std::move(ids)), thread_(GetCurrentThreadId()) {}

bool EventSinkDispatch::Answers(REFIID id) const {
  return IsEqualIID(id, id_);
}

STDMETHODIMP EventSinkDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  const auto found = std::find_if(names_.begin(), names_.end(), [&](const std::string& event) {
    return SameName(names[0], event.data(), event.size());
  });
  if (found == names_.end()) return DISP_E_UNKNOWNNAME;
  ids[0] = ids_[static_cast<std::size_t>(found - names_.begin())];
  return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

STDMETHODIMP EventSinkDispatch::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                       VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) try {
  // The program has no locks: an event from another thread would run beside the interface.
  if (GetCurrentThreadId() != thread_) return RPC_E_WRONG_THREAD;
  if (!sink_) return RPC_E_DISCONNECTED;
  if (!parameters) return E_INVALIDARG;
  const auto found = std::find(ids_.begin(), ids_.end(), id);
  if (found == ids_.end() || !(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
  if (result) VariantInit(result);
  return Raise(static_cast<std::int32_t>(found - ids_.begin()) + 1, *parameters, wrongArgument);
} catch (...) {
  return ReportCurrentException(exception);
}

HRESULT EventSinkDispatch::Raise(std::int32_t event, DISPPARAMS& parameters, UINT* wrongArgument) {
  std::vector<VARIANT*> passed;
  if (!OrderArguments(parameters, passed)) return DISP_E_PARAMNOTFOUND;
  std::vector<base::Variant> before;
  before.reserve(passed.size());
  for (const VARIANT* argument : passed) before.push_back(FromVariant(*argument));
  std::vector<base::Variant> after = before;

  // The handler may end the connection, and with it the source's hold on this object.
  const ComPointer<IDispatch> keep(this);
  sink_->OnEvent(event, after);

  for (std::size_t i = 0; i < passed.size(); ++i) {
    if (!(passed[i]->vt & VT_BYREF) || after[i].Get() == before[i].Get()) continue;
    if (wrongArgument) *wrongArgument = static_cast<UINT>(passed[i] - parameters.rgvarg);
    AssignByReference(*passed[i], after[i]);
  }
  return S_OK;
}

}  // namespace platform::win32
