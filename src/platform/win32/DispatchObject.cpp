#include "platform/win32/DispatchObject.h"

#include <exception>
#include <new>

#include "base/Error.h"
#include "platform/win32/Text.h"

namespace platform::win32 {
namespace {

/// A number as COM carries it. Those of the program itself go where automation keeps the numbers of its
/// controls.
SCODE CodeOf(std::int32_t number) {
  if (number < 0) return number;
  if (number > 0 && number <= 0xFFFF) return MAKE_SCODE(SEVERITY_ERROR, FACILITY_CONTROL, number);
  return E_FAIL;
}

HRESULT Report(EXCEPINFO* info, SCODE code, std::string_view text) {
  if (info) {
    *info = {};
    info->scode = code;
    info->bstrSource = SysAllocString(L"Harbourline");
    info->bstrDescription = NewBstr(text);
  }
  return DISP_E_EXCEPTION;
}

OLECHAR Lower(OLECHAR c) {
  return c >= L'A' && c <= L'Z' ? static_cast<OLECHAR>(c - L'A' + L'a') : c;
}

}  // namespace

STDMETHODIMP DispatchObject::QueryInterface(REFIID id, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch) && !Answers(id)) return E_NOINTERFACE;
  AddRef();
  *object = static_cast<IDispatch*>(this);
  return S_OK;
}

STDMETHODIMP_(ULONG) DispatchObject::AddRef() {
  return ++references_;
}

STDMETHODIMP_(ULONG) DispatchObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP DispatchObject::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP DispatchObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info) *info = nullptr;
  return E_NOTIMPL;
}

HRESULT ReportCurrentException(EXCEPINFO* info) noexcept {
  try {
    try {
      throw;
    } catch (const base::Error& error) {
      return Report(info, CodeOf(error.Number()), error.Text());
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
      return Report(info, E_FAIL, error.what());
    }
  } catch (...) {
    return E_UNEXPECTED;
  }
}

bool SameName(const OLECHAR* name, const char* text, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    if (Lower(name[i]) != Lower(static_cast<unsigned char>(text[i]))) return false;
  }
  return name[length] == 0;
}

}  // namespace platform::win32
