#pragma once

#include <windows.h>

#include <oaidl.h>

#include <atomic>

namespace platform::win32 {

/// What every automation object of the program has in common: a reference count that starts at one, and no
/// type information. Derived objects live on the heap.
class DispatchObject : public IDispatch {
 public:
  DispatchObject() = default;
  DispatchObject(const DispatchObject&) = delete;
  DispatchObject& operator=(const DispatchObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;

 protected:
  virtual ~DispatchObject() = default;
  /// Whether the object answers this interface with its IDispatch, besides IUnknown and IDispatch.
  virtual bool Answers(REFIID id) const = 0;

 private:
  std::atomic<ULONG> references_{1};
};

/// Within a catch handler: what the exception is for a COM caller. `info` may be null.
HRESULT ReportCurrentException(EXCEPINFO* info) noexcept;

/// Whether two names are the same without regard to the case of A to Z. Member names are plain ASCII.
bool SameName(const OLECHAR* name, const char* text, std::size_t length);

}  // namespace platform::win32
