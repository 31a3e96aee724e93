#include "platform/win32/ComObject.h"

#include <string>
#include <vector>

#include "platform/win32/RecordDispatch.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Text.h"
#include "platform/win32/VariantConversion.h"

namespace platform::win32 {
namespace {

/// What a call left in its EXCEPINFO.
class ExceptionInfo {
 public:
  ExceptionInfo() = default;
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;
  ~ExceptionInfo() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
  }

  EXCEPINFO* Get() { return &info_; }

  base::Error ToError() {
    if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
    const std::string description = FromBstr(info_.bstrDescription);
    if (info_.scode != 0 || info_.wCode == 0) {
      const SCODE code = info_.scode != 0 ? info_.scode : DISP_E_EXCEPTION;
      return base::Error(code, description.empty() ? SystemMessage(code) : description);
    }
    // A number of the object's own, for which the system knows no text.
    return base::Error(info_.wCode,
                       description.empty() ? "Error " + std::to_string(info_.wCode) : description);
  }

 private:
  EXCEPINFO info_{};
};

std::string Quoted(std::string_view member) {
  return '"' + std::string(member) + '"';
}

DISPID Find(IDispatch& object, std::string_view member) {
  std::wstring name = ToUtf16(member);
  LPOLESTR names[] = {name.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (result == DISP_E_UNKNOWNNAME || (SUCCEEDED(result) && id == DISPID_UNKNOWN)) {
    throw base::Error(DISP_E_UNKNOWNNAME, "The object has no member " + Quoted(member));
  }
  if (FAILED(result)) throw ComError("The member " + Quoted(member) + " can't be reached", result);
  return id;
}

void Invoke(IDispatch& object, std::string_view member, WORD flags, DISPPARAMS& parameters, VARIANT* result) {
  const DISPID id = Find(object, member);
  ExceptionInfo exception;
  UINT wrongArgument = 0;
  const HRESULT code = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                                     exception.Get(), &wrongArgument);
  if (code == DISP_E_EXCEPTION) throw exception.ToError();
  if (FAILED(code)) throw ComError("The member " + Quoted(member) + " failed", code);
}

/// The arguments of one call as COM takes them.
class Parameters {
 public:
  explicit Parameters(std::span<Argument> arguments)
      : arguments_(arguments), storage_(arguments.size()), passed_(arguments.size()) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      VARIANT& value = *storage_[i];
      VARIANT& passed = passed_[arguments.size() - 1 - i];
      ToVariant(arguments[i].value, value);
      if (!arguments[i].byReference) {
        passed = value;
      } else if (value.vt == VT_EMPTY) {
        passed.vt = VT_BYREF | VT_VARIANT;
        passed.pvarVal = &value;
      } else {
        passed.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
        passed.byref = &value.llVal;
      }
    }
  }

  DISPPARAMS ForInvoke() { return {passed_.data(), nullptr, static_cast<UINT>(passed_.size()), 0}; }

  void ReadBack() {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
      if (arguments_[i].byReference) arguments_[i].value = FromVariant(*storage_[i]);
    }
  }

 private:
  std::span<Argument> arguments_;
  /// In the order of the arguments; what is passed by reference points here.
  std::vector<OwnedVariant> storage_;
  /// In the reverse order. Owns nothing.
  std::vector<VARIANT> passed_;
};

}  // namespace

ComObject::ComObject(ComPointer<IUnknown> object, ComPointer<IDispatch> dispatch)
    : object_(std::move(object)), dispatch_(std::move(dispatch)) {}

base::Variant ComObject::Get(std::string_view member) {
  return Call(member, {});
}

void ComObject::Put(std::string_view member, const base::Variant& value) {
  // What happens during a call may release this object; the copy keeps the COM object for as long as the call
  // runs.
  const ComPointer<IDispatch> object = dispatch_;
  if (!object) throw ComError("The member " + Quoted(member) + " can't be reached", E_NOINTERFACE);
  OwnedVariant argument;
  ToVariant(value, *argument);
  DISPID name = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {argument.Get(), &name, 1, 1};
  Invoke(*object.Get(), member, DISPATCH_PROPERTYPUT, parameters, nullptr);
}

base::Variant ComObject::Call(std::string_view member, std::span<Argument> arguments) {
  const ComPointer<IDispatch> object = dispatch_;
  if (!object) throw ComError("The member " + Quoted(member) + " can't be reached", E_NOINTERFACE);
  Parameters parameters(arguments);
  DISPPARAMS passed = parameters.ForInvoke();
  OwnedVariant result;
  Invoke(*object.Get(), member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, passed, result.Get());
  parameters.ReadBack();
  return FromVariant(*result);
}

ComPointer<IDispatch> DispatchOf(const base::ObjectRef& object) {
  if (!object) return {};
  if (auto record = std::dynamic_pointer_cast<base::Record>(object)) return WrapRecord(std::move(record));
  const auto* com = dynamic_cast<const ComObject*>(object.get());
  if (!com || !com->Dispatch()) {
    throw base::Error(base::ErrorNumber::kTypeMismatch,
                      "Type mismatch: an object of this kind can't be passed on");
  }
  return com->Dispatch();
}

base::ObjectRef ObjectBehind(IDispatch* object) {
  if (!object) return nullptr;
  if (auto record = RecordBehind(object)) return record;
  return std::make_shared<ComObject>(ComPointer<IUnknown>(object), ComPointer<IDispatch>(object));
}

base::ObjectRef ObjectBehind(IUnknown* object) {
  if (!object) return nullptr;
  if (auto record = RecordBehind(object)) return record;
  return std::make_shared<ComObject>(ComPointer<IUnknown>(object),
                                     ComPointer<IDispatch>::Query(object, IID_IDispatch));
}

}  // namespace platform::win32
