#include <olectl.h>

#include "Recording.h"

namespace {

struct Class {
  CLSID id;
  const char* idText;
  const char* name;
};

const Class kClasses[] = {
    {{0x6C5B6A1F, 0x3F0B, 0x4C53, {0x9D, 0x0B, 0x61, 0x5E, 0x42, 0x8B, 0x70, 0x11}},
     "{6C5B6A1F-3F0B-4C53-9D0B-615E428B7011}",
     "Harbourline.Recording"},
    {{0x6C5B6A1F, 0x3F0B, 0x4C53, {0x9D, 0x0B, 0x61, 0x5E, 0x42, 0x8B, 0x70, 0x12}},
     "{6C5B6A1F-3F0B-4C53-9D0B-615E428B7012}",
     "Harbourline.RecordingB"},
    {{0x6C5B6A1F, 0x3F0B, 0x4C53, {0x9D, 0x0B, 0x61, 0x5E, 0x42, 0x8B, 0x70, 0x13}},
     "{6C5B6A1F-3F0B-4C53-9D0B-615E428B7013}",
     "Harbourline.RecordingC"},
};

class Factory final : public IClassFactory {
 public:
  explicit Factory(const char* name) : name_(name) {}
  virtual ~Factory() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    IDispatch* made = recording::MakePlugIn(name_);
    const HRESULT result = made->QueryInterface(iid, object);
    made->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    recording::objects += lock ? 1 : -1;
    return S_OK;
  }

 private:
  const char* name_;
  ULONG references_ = 1;
};

/// For all users when this process may write there, else for this user.
bool WriteKey(const std::string& path, const char* name, const std::string& value) {
  const std::string full = "Software\\Classes\\" + path;
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    if (RegSetKeyValueA(root, full.c_str(), name, REG_SZ, value.c_str(),
                        static_cast<DWORD>(value.size() + 1)) == ERROR_SUCCESS) {
      return true;
    }
  }
  return false;
}

}  // namespace

HMODULE recording::ThisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCSTR>(&recording::objects), &module);
  return module;
}

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** object) {
  *object = nullptr;
  for (const Class& plugIn : kClasses) {
    if (!IsEqualCLSID(plugIn.id, id)) continue;
    auto* factory = new Factory(plugIn.name);
    const HRESULT result = factory->QueryInterface(iid, object);
    factory->Release();
    return result;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
  return recording::objects == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(recording::ThisModule(), path, sizeof path);
  for (const Class& plugIn : kClasses) {
    const std::string server = std::string("CLSID\\") + plugIn.idText + "\\InprocServer32";
    if (!WriteKey(std::string(plugIn.name) + "\\CLSID", nullptr, plugIn.idText) ||
        !WriteKey(server, nullptr, path) || !WriteKey(server, "ThreadingModel", "Apartment")) {
      return SELFREG_E_CLASS;
    }
  }
  return S_OK;
}

STDAPI DllUnregisterServer() {
  for (const Class& plugIn : kClasses) {
    for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      RegDeleteTreeA(root, (std::string("Software\\Classes\\") + plugIn.name).c_str());
      RegDeleteTreeA(root, (std::string("Software\\Classes\\CLSID\\") + plugIn.idText).c_str());
    }
  }
  return S_OK;
}
