#pragma once

// What a plug-in for Harbourline needs, in headers on the Windows API alone (C++17, Windows 7 or later).
// Include this one; HarbourlineValues.h and HarbourlineDispatch.h stand beside it.
//
//   class MyRouter : public harbourline::RouterPlugIn { ... };
//   HARBOURLINE_PLUG_INS({kMyClassId, L"Maker.MyRouter", L"My Router", harbourline::Make<MyRouter>})
//
// README.md tells the whole contract; example/ExampleRouter.cpp is a complete plug-in.
//
// Link with ole32, oleaut32, uuid and advapi32, export the four functions that HarbourlinePlugIn.def names,
// and put the compiled Harbourline.idl into the DLL as the resource "1 TYPELIB".
//
// Text is UTF-16. Every call of Harbourline, and every event, happens on one thread, the thread of its
// interface.

#include <windows.h>

#include <objbase.h>
#include <olectl.h>

#include <atomic>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "HarbourlineDispatch.h"
#include "HarbourlineValues.h"

namespace harbourline {

/// The contract, member by member. Derive from it and answer what your router can do.
class RouterPlugIn : public DispatchObject {
 public:
  RouterPlugIn() {
    Read(L"IServer_ServerTitle", [this] { return Value(ServerTitle()); });
    Read(L"IServer_EventHandler", [this] { return Value(EventHandler()); });
    Read(L"IServer_ClassName", [this] { return Value(ClassName()); });
    Write(L"IServer_DMZ", [this](Arguments& arguments) { SetDMZ(arguments.Int32(0)); });
    Read(L"IServer_Version", [this] { return Value(Version()); });
    Read(L"IServer_Functional", [this] { return Value(Functional()); });
    Read(L"IServer_EnableLog", [this] { return Value(EnableLog()); });
    Write(L"IServer_EnableLog", [this](Arguments& arguments) { SetEnableLog(arguments.Bool(0)); });
    Read(L"IServer_Configure", [this] { return Value(Configure()); });
    Read(L"IServer_WANIP", [this] { return Value(WANIP()); });
    Method(L"IServer_CheckForWarning", 1,
           [this](Arguments& arguments) { return Value(CheckForWarning(arguments.Text(0))); });
    Method(L"IServer_SetLogging", 1,
           [this](Arguments& arguments) { return Value(SetLogging(arguments.Text(0))); });
    Method(L"IServer_SetPortForwarding", 2, [this](Arguments& arguments) {
      return Value(SetPortForwarding(arguments.Mappings(0), arguments.Int16(1)));
    });
    Method(L"IServer_ApplicationExiting", 1, [this](Arguments& arguments) {
      ApplicationExiting(arguments.Text(0));
      return Value();
    });
    Method(L"IServer_GetFeatures", 2, [this](Arguments& arguments) {
      const std::vector<Feature> features = Features();
      arguments.SetFeatures(0, 1, features);
      return Value(!features.empty());
    });
    Method(L"IServer_ActivateFeaure", 2, [this](Arguments& arguments) {
      ActivateFeature(arguments.Text(0), arguments.Int16(1));
      return Value(false);
    });
    Method(L"IServer_GetPortForwardingDescription", 1,
           [this](Arguments& arguments) { return Value(PortForwardingDescription(arguments.Int32(0))); });
    Read(L"IServer_SaveSettings", [this] {
      SaveSettings();
      return Value();
    });
  }

 protected:
  /// The router's name in Harbourline's list.
  virtual std::wstring ServerTitle() = 0;
  /// The ProgID by which Harbourline makes this object again at its next start.
  virtual std::wstring ClassName() = 0;
  virtual std::wstring Version() = 0;
  /// True while the router works.
  virtual bool Functional() = 0;
  virtual std::wstring WANIP() = 0;
  /// `mappings` is the whole wish of the computer whose address ends in `localOctet`.
  virtual Outcome SetPortForwarding(const std::vector<Mapping>& mappings, short localOctet) = 0;

  /// Null for a plug-in without a log.
  virtual EventSource* EventHandler() { return nullptr; }
  /// 0 ends the exposure.
  virtual void SetDMZ(long lastOctet) { static_cast<void>(lastOctet); }
  virtual bool EnableLog() { return false; }
  virtual void SetEnableLog(bool enable) { static_cast<void>(enable); }
  /// Shows the plug-in's own dialog; kDone when the user accepted it.
  virtual Outcome Configure() { return Outcome::kDone; }
  virtual bool CheckForWarning(const std::wstring& localAddress) {
    static_cast<void>(localAddress);
    return false;
  }
  /// Log traffic goes to `localAddress` from now on, if the log is enabled.
  virtual Outcome SetLogging(const std::wstring& localAddress) {
    static_cast<void>(localAddress);
    return Outcome::kDone;
  }
  virtual void ApplicationExiting(const std::wstring& localAddress) { static_cast<void>(localAddress); }
  virtual std::vector<Feature> Features() { return {}; }
  virtual void ActivateFeature(const std::wstring& localAddress, short identifier) {
    static_cast<void>(localAddress);
    static_cast<void>(identifier);
  }
  /// Empty for a port that the plug-in doesn't know.
  virtual std::wstring PortForwardingDescription(long port) {
    static_cast<void>(port);
    return {};
  }
  virtual void SaveSettings() {}
};

/// One class of a DLL: what a program asks COM for, and how it is made.
struct PlugInClass {
  CLSID classId;
  const wchar_t* progId;
  const wchar_t* title;
  IDispatch* (*make)();
};

/// A new object, not yet counted.
template <class T>
IDispatch* Make() {
  return new T;
}

namespace module {

class Factory final : public IClassFactory {
 public:
  explicit Factory(IDispatch* (*make)()) : make_(make) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
  ULONG STDMETHODCALLTYPE Release() override {
    const long left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    Ref<IDispatch> made;
    const HRESULT result = detail::Guard(nullptr, nullptr, 0, [&] { made = Ref<IDispatch>(make_()); });
    return FAILED(result) ? result : made->QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    useCount += lock ? 1 : -1;
    return S_OK;
  }

 private:
  Use use_;
  std::atomic<long> references_{0};
  IDispatch* (*make_)();
};

template <std::size_t N>
HRESULT GetClassObject(const PlugInClass (&classes)[N], REFCLSID classId, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  for (const PlugInClass& plugIn : classes) {
    if (!IsEqualCLSID(plugIn.classId, classId)) continue;
    Ref<IClassFactory> factory;
    const HRESULT result =
        detail::Guard(nullptr, nullptr, 0, [&] { factory = Ref<IClassFactory>(new Factory(plugIn.make)); });
    return FAILED(result) ? result : factory->QueryInterface(iid, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

inline LSTATUS WriteKey(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& text) {
  HKEY key = nullptr;
  LSTATUS status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr);
  if (status != ERROR_SUCCESS) return status;
  status = RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(key);
  return status;
}

inline const wchar_t* Classes() {
  return L"Software\\Classes\\";
}

inline std::wstring ClassPath(const PlugInClass& plugIn) {
  wchar_t text[40] = {};
  StringFromGUID2(plugIn.classId, text, 40);
  return std::wstring(Classes()) + L"CLSID\\" + text;
}

inline LSTATUS RegisterClassUnder(HKEY root, const PlugInClass& plugIn) {
  const std::wstring classPath = ClassPath(plugIn);
  const std::wstring progPath = std::wstring(Classes()) + plugIn.progId;
  const std::wstring id = classPath.substr(classPath.rfind(L'\\') + 1);
  const std::initializer_list<std::pair<std::wstring, std::pair<const wchar_t*, std::wstring>>> values = {
      {classPath, {nullptr, plugIn.title}},
      {classPath + L"\\ProgID", {nullptr, plugIn.progId}},
      {classPath + L"\\InprocServer32", {nullptr, Path()}},
      {classPath + L"\\InprocServer32", {L"ThreadingModel", L"Apartment"}},
      {progPath, {nullptr, plugIn.title}},
      {progPath + L"\\CLSID", {nullptr, id}}};
  for (const auto& [path, value] : values) {
    const LSTATUS status = WriteKey(root, path, value.first, value.second);
    if (status != ERROR_SUCCESS) return status;
  }
  return ERROR_SUCCESS;
}

/// For all users when this process may write there, else for this user.
template <std::size_t N>
HRESULT Register(const PlugInClass (&classes)[N]) {
  return detail::Guard(nullptr, nullptr, 0, [&] {
    for (const PlugInClass& plugIn : classes) {
      if (RegisterClassUnder(HKEY_LOCAL_MACHINE, plugIn) != ERROR_SUCCESS &&
          RegisterClassUnder(HKEY_CURRENT_USER, plugIn) != ERROR_SUCCESS) {
        throw Failure(L"The class can't be registered.", SELFREG_E_CLASS);
      }
    }
  });
}

/// Removes what Register wrote, wherever it wrote it. What isn't there is no failure.
template <std::size_t N>
HRESULT Unregister(const PlugInClass (&classes)[N]) {
  return detail::Guard(nullptr, nullptr, 0, [&] {
    for (const PlugInClass& plugIn : classes) {
      for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        for (const std::wstring& path : {ClassPath(plugIn), std::wstring(Classes()) + plugIn.progId}) {
          const LSTATUS status = RegDeleteTreeW(root, path.c_str());
          if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
            throw Failure(L"The class can't be removed.", SELFREG_E_CLASS);
          }
        }
      }
    }
  });
}

}  // namespace module
}  // namespace harbourline

/// The four functions that COM and regsvr32 look for, for the classes of this DLL. Once, in one source file.
#define HARBOURLINE_PLUG_INS(...)                                                         \
  static const harbourline::PlugInClass harbourlinePlugIns[] = {__VA_ARGS__};             \
  STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {                 \
    return harbourline::module::GetClassObject(harbourlinePlugIns, classId, iid, object); \
  }                                                                                       \
  STDAPI DllCanUnloadNow() {                                                              \
    return harbourline::module::useCount == 0 ? S_OK : S_FALSE;                           \
  }                                                                                       \
  STDAPI DllRegisterServer() {                                                            \
    return harbourline::module::Register(harbourlinePlugIns);                             \
  }                                                                                       \
  STDAPI DllUnregisterServer() {                                                          \
    return harbourline::module::Unregister(harbourlinePlugIns);                           \
  }
