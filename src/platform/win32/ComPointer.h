#pragma once

#include <unknwn.h>

#include <utility>

namespace platform::win32 {

/// Shares a COM object.
template <typename Interface>
class ComPointer {
 public:
  ComPointer() = default;
  explicit ComPointer(Interface* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  ComPointer(const ComPointer& other) : ComPointer(other.object_) {}
  ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPointer& operator=(ComPointer other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPointer() {
    if (object_) object_->Release();
  }

  /// Takes over a reference that the caller holds.
  static ComPointer Adopt(Interface* object) {
    ComPointer pointer;
    pointer.object_ = object;
    return pointer;
  }

  /// Empty when the object lacks the interface.
  static ComPointer Query(IUnknown* object, REFIID id) {
    ComPointer pointer;
    if (object && FAILED(object->QueryInterface(id, pointer.PutVoid()))) pointer.object_ = nullptr;
    return pointer;
  }

  Interface* Get() const { return object_; }
  Interface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// Where a function leaves the reference that it gives back.
  Interface** Put() {
    *this = ComPointer();
    return &object_;
  }
  void** PutVoid() { return reinterpret_cast<void**>(Put()); }

  /// The caller owns the reference from here on.
  Interface* Detach() { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

}  // namespace platform::win32
