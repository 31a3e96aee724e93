#include "platform/win32/RecordDispatch.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/win32/DispatchObject.h"
#include "platform/win32/VariantConversion.h"

namespace platform::win32 {
namespace {

/// Which objects are records of this program: no other object answers it.
constexpr IID kRecordId = {0x1f6d3c52, 0x8a0e, 0x4b7b, {0x9d, 0x35, 0x6c, 0x41, 0xe2, 0x07, 0xb8, 0x94}};

class RecordDispatch final : public DispatchObject {
 public:
  explicit RecordDispatch(std::shared_ptr<base::Record> record) : record_(std::move(record)) {}

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* wrongArgument) override;

  const std::shared_ptr<base::Record>& Behind() const { return record_; }

 private:
  bool Answers(REFIID id) const override { return IsEqualIID(id, kRecordId); }

  std::shared_ptr<base::Record> record_;
};

STDMETHODIMP RecordDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  // A property has no arguments that could be named, so only the first name can be known.
  std::fill_n(ids, count, DISPID_UNKNOWN);
  const auto properties = record_->PropertyNames();
  const auto found = std::find_if(properties.begin(), properties.end(), [&](std::string_view property) {
    return SameName(names[0], property.data(), property.size());
  });
  if (found == properties.end()) return DISP_E_UNKNOWNNAME;
  ids[0] = static_cast<DISPID>(found - properties.begin()) + 1;
  return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

STDMETHODIMP RecordDispatch::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                    VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) try {
  if (!parameters) return E_INVALIDARG;
  if (id < 1 || static_cast<std::size_t>(id) > record_->PropertyNames().size()) return DISP_E_MEMBERNOTFOUND;
  const auto index = static_cast<std::size_t>(id - 1);
  if (flags & DISPATCH_PROPERTYPUT) {
    if (parameters->cArgs != 1) return DISP_E_BADPARAMCOUNT;
    if (wrongArgument) *wrongArgument = 0;
    record_->SetProperty(index, FromVariant(parameters->rgvarg[0]));
    return S_OK;
  }
  if (!(flags & DISPATCH_PROPERTYGET)) return DISP_E_MEMBERNOTFOUND;
  if (parameters->cArgs != 0) return DISP_E_BADPARAMCOUNT;
  if (!result) return S_OK;
  VariantInit(result);
  ToVariant(record_->Property(index), *result);
  return S_OK;
} catch (...) {
  return ReportCurrentException(exception);
}

}  // namespace

ComPointer<IDispatch> WrapRecord(std::shared_ptr<base::Record> record) {
  return ComPointer<IDispatch>::Adopt(new RecordDispatch(std::move(record)));
}

std::shared_ptr<base::Record> RecordBehind(IUnknown* object) {
  const auto own = ComPointer<IDispatch>::Query(object, kRecordId);
  return own ? static_cast<RecordDispatch*>(own.Get())->Behind() : nullptr;
}

}  // namespace platform::win32
