#pragma once

#include <windows.h>

#include <oaidl.h>

#include "platform/LateBoundObject.h"
#include "platform/win32/ComPointer.h"

namespace platform::win32 {

/// A COM object that is used by the names of its members.
class ComObject : public LateBoundObject {
 public:
  /// The members are those of `dispatch`; an object without any can still be an event source.
  ComObject(ComPointer<IUnknown> object, ComPointer<IDispatch> dispatch);

  base::Variant Get(std::string_view member) override;
  void Put(std::string_view member, const base::Variant& value) override;
  base::Variant Call(std::string_view member, std::span<Argument> arguments) override;

  IUnknown* Unknown() const { return object_.Get(); }
  const ComPointer<IDispatch>& Dispatch() const { return dispatch_; }

 private:
  ComPointer<IUnknown> object_;
  ComPointer<IDispatch> dispatch_;
};

/// What stands for the object across COM: a wrapper of a Record, the COM object behind a ComObject, null for
/// null. Any other object fails with TypeMismatch.
ComPointer<IDispatch> DispatchOf(const base::ObjectRef& object);

/// The way back: the Record behind a wrapper, null for null, a ComObject for all else.
base::ObjectRef ObjectBehind(IDispatch* object);
base::ObjectRef ObjectBehind(IUnknown* object);

}  // namespace platform::win32
