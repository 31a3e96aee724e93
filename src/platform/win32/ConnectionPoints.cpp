#include "platform/win32/ConnectionPoints.h"

#include <numeric>
#include <string>

#include "platform/win32/Text.h"

namespace platform::win32 {
namespace {

/// Type information of an attribute block that must be given back.
class TypeAttributes {
 public:
  explicit TypeAttributes(ITypeInfo& info) : info_(info) {
    if (FAILED(info.GetTypeAttr(&attributes_))) attributes_ = nullptr;
  }
  TypeAttributes(const TypeAttributes&) = delete;
  TypeAttributes& operator=(const TypeAttributes&) = delete;
  ~TypeAttributes() {
    if (attributes_) info_.ReleaseTypeAttr(attributes_);
  }

  const TYPEATTR* Get() const { return attributes_; }

 private:
  ITypeInfo& info_;
  TYPEATTR* attributes_ = nullptr;
};

ComPointer<ITypeInfo> InContainingLibrary(ITypeInfo& info, REFIID id) {
  ComPointer<ITypeLib> library;
  UINT index = 0;
  ComPointer<ITypeInfo> found;
  if (FAILED(info.GetContainingTypeLib(library.Put(), &index)) || !library) return {};
  if (FAILED(library->GetTypeInfoOfGuid(id, found.Put()))) return {};
  return found;
}

/// Among the interfaces that a class declares, which may come from other libraries.
ComPointer<ITypeInfo> AmongInterfacesOf(ITypeInfo& classInfo, REFIID id) {
  const TypeAttributes attributes(classInfo);
  if (!attributes.Get()) return {};
  for (UINT i = 0; i < attributes.Get()->cImplTypes; ++i) {
    HREFTYPE reference = 0;
    ComPointer<ITypeInfo> info;
    if (FAILED(classInfo.GetRefTypeOfImplType(i, &reference)) ||
        FAILED(classInfo.GetRefTypeInfo(reference, info.Put())) || !info) {
      continue;
    }
    const TypeAttributes own(*info.Get());
    if (own.Get() && IsEqualGUID(own.Get()->guid, id)) return info;
  }
  return {};
}

/// What the source says about one of its event interfaces; empty when it says nothing.
ComPointer<ITypeInfo> TypeInfoOf(IUnknown& source, REFIID id) {
  if (const auto provider = ComPointer<IProvideClassInfo>::Query(&source, IID_IProvideClassInfo)) {
    ComPointer<ITypeInfo> classInfo;
    if (SUCCEEDED(provider->GetClassInfo(classInfo.Put())) && classInfo) {
      if (auto info = AmongInterfacesOf(*classInfo.Get(), id)) return info;
      if (auto info = InContainingLibrary(*classInfo.Get(), id)) return info;
    }
  }
  if (const auto dispatch = ComPointer<IDispatch>::Query(&source, IID_IDispatch)) {
    ComPointer<ITypeInfo> own;
    if (SUCCEEDED(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, own.Put())) && own) {
      return InContainingLibrary(*own.Get(), id);
    }
  }
  return {};
}

/// The identifiers of all the events; nothing when a name is missing, or when the interface can't be answered
/// by an IDispatch alone.
std::optional<EventIds> IdsByName(ITypeInfo& info, const std::vector<std::string>& names) {
  const TypeAttributes attributes(info);
  if (!attributes.Get() || attributes.Get()->typekind != TKIND_DISPATCH ||
      (attributes.Get()->wTypeFlags & TYPEFLAG_FDUAL) != 0) {
    return std::nullopt;
  }
  EventIds ids;
  for (const std::string& event : names) {
    std::wstring name = ToUtf16(event);
    LPOLESTR asked[] = {name.data()};
    MEMBERID id = MEMBERID_NIL;
    if (FAILED(info.GetIDsOfNames(asked, 1, &id)) || id == MEMBERID_NIL) return std::nullopt;
    ids.push_back(id);
  }
  return ids;
}

std::optional<EventBinding> FindByNames(IUnknown& source, IConnectionPointContainer& container,
                                        const std::vector<std::string>& names) {
  ComPointer<IEnumConnectionPoints> points;
  if (FAILED(container.EnumConnectionPoints(points.Put())) || !points) return std::nullopt;
  EventBinding binding;
  ULONG fetched = 0;
  while (points->Next(1, binding.point.Put(), &fetched) == S_OK && fetched == 1) {
    if (FAILED(binding.point->GetConnectionInterface(&binding.id))) continue;
    const auto info = TypeInfoOf(source, binding.id);
    if (!info) continue;
    if (auto ids = IdsByName(*info.Get(), names)) {
      binding.ids = std::move(*ids);
      return binding;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<EventBinding> FindEventBinding(IUnknown& source, REFIID id, const EventInterface& events) {
  const auto container = ComPointer<IConnectionPointContainer>::Query(&source, IID_IConnectionPointContainer);
  if (!container) return std::nullopt;
  EventBinding binding;
  if (SUCCEEDED(container->FindConnectionPoint(id, binding.point.Put())) && binding.point) {
    binding.id = id;
    binding.ids.resize(events.names.size());
    std::iota(binding.ids.begin(), binding.ids.end(), 1);
    return binding;
  }
  return FindByNames(source, *container.Get(), events.names);
}

}  // namespace platform::win32
