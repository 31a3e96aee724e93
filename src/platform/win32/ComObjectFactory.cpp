#include "platform/win32/ComObjectFactory.h"

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include "platform/win32/ComObject.h"
#include "platform/win32/ConnectionPoints.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Text.h"

namespace platform::win32 {
namespace {

class ComEventConnection : public EventConnection {
 public:
  ComEventConnection(const EventBinding& binding, EventSink& sink, const EventInterface& events)
      : point_(binding.point),
        dispatch_(new EventSinkDispatch(sink, binding.id, events.names, binding.ids)),
        held_(ComPointer<IDispatch>::Adopt(dispatch_)) {
    const HRESULT result = point_->Advise(dispatch_, &cookie_);
    if (FAILED(result)) {
      dispatch_->Detach();
      throw ComError("The event source takes no connection", result);
    }
  }
  ComEventConnection(const ComEventConnection&) = delete;
  ComEventConnection& operator=(const ComEventConnection&) = delete;
  ~ComEventConnection() override {
    // First, so that nothing arrives any more, whatever the source makes of the rest.
    dispatch_->Detach();
    point_->Unadvise(cookie_);
  }

 private:
  ComPointer<IConnectionPoint> point_;
  EventSinkDispatch* dispatch_;
  ComPointer<IDispatch> held_;
  DWORD cookie_ = 0;
};

}  // namespace

LateBoundRef ComObjectFactory::Create(std::string_view className) {
  const std::string failure = "The class \"" + std::string(className) + "\" can't be created";
  CLSID id{};
  HRESULT result = CLSIDFromProgID(ToUtf16(className).c_str(), &id);
  if (FAILED(result)) throw ComError(failure, result);
  ComPointer<IDispatch> object;
  result = CoCreateInstance(id, nullptr, CLSCTX_SERVER, IID_IDispatch, object.PutVoid());
  if (FAILED(result)) throw ComError(failure, result);
  return std::make_shared<ComObject>(ComPointer<IUnknown>(object.Get()), object);
}

std::unique_ptr<EventConnection> ComObjectFactory::Connect(LateBoundObject& source,
                                                           const EventInterface& events, EventSink& sink) {
  const auto* object = dynamic_cast<const ComObject*>(&source);
  if (!object) throw base::Error(base::ErrorNumber::kObjectRequired, "Object required");
  IID id{};
  if (const HRESULT result = IIDFromString(ToUtf16(events.id).c_str(), &id); FAILED(result)) {
    throw ComError("\"" + events.id + "\" is no interface", result);
  }
  const auto binding = FindEventBinding(*object->Unknown(), id, events);
  if (!binding)
    throw ComError("The object raises no events of the interface " + events.id, CONNECT_E_NOCONNECTION);
  return std::make_unique<ComEventConnection>(*binding, sink, events);
}

}  // namespace platform::win32
