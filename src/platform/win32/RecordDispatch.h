#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "base/Variant.h"
#include "platform/win32/ComPointer.h"

namespace platform::win32 {

/// A new automation object whose properties are the record's, with the identifiers 1 to n in the order of the
/// names. The record lives for as long as somebody holds the object.
ComPointer<IDispatch> WrapRecord(std::shared_ptr<base::Record> record);

/// The record behind an object that WrapRecord made in this process; null for any other object.
std::shared_ptr<base::Record> RecordBehind(IUnknown* object);

}  // namespace platform::win32
