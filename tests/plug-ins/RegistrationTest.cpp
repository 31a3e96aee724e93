#include <gmock/gmock.h>

#include <string>

#include "support/Host.h"

namespace {

constexpr wchar_t kProgId[] = L"Software\\Classes\\Harbourline.PracticeRouter";
constexpr wchar_t kClass[] = L"Software\\Classes\\CLSID\\{B06138F8-05D7-423B-9D45-1476F9B3C321}";

TEST(RegistrationTest, Regsvr32WritesTheClassUnderTheMachinesBranch) {
  EXPECT_EQ(host::RegistryText(HKEY_LOCAL_MACHINE, (std::wstring(kProgId) + L"\\CLSID").c_str(), nullptr),
            L"{B06138F8-05D7-423B-9D45-1476F9B3C321}");
  const std::wstring server = std::wstring(kClass) + L"\\InprocServer32";
  EXPECT_THAT(host::RegistryText(HKEY_LOCAL_MACHINE, server.c_str(), nullptr),
              testing::EndsWith(L"PracticeRouter.dll"));
  EXPECT_EQ(host::RegistryText(HKEY_LOCAL_MACHINE, server.c_str(), L"ThreadingModel"), L"Apartment");
}

TEST(RegistrationTest, RegistrationDoesNotAnnounceThePlugIn) {
  for (int n = 1; n <= 100; ++n) {
    EXPECT_NE(host::RegistryText(HKEY_CURRENT_USER, L"Software\\Harbourline\\RouterSection",
                                 (L"RouterPlugIn_" + std::to_wstring(n)).c_str()),
              L"Harbourline.PracticeRouter");
  }
}

TEST(RegistrationTest, UnregisteredTheClassIsGoneAndComesBack) {
  const std::wstring path = L"\"" + host::PathOf(L"PracticeRouter") + L"\"";
  EXPECT_EQ(host::RunRegsvr32(L"/s /u " + path), 0u);
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kProgId, 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kClass, 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(host::RunRegsvr32(L"/s /u " + path), 0u) << "a second time there is nothing to do";
  EXPECT_EQ(host::RunRegsvr32(L"/s " + path), 0u);
  EXPECT_TRUE(host::Make(L"Harbourline.PracticeRouter"));
}

class Library {
 public:
  explicit Library(const wchar_t* plugIn) : module_(LoadLibraryW(host::PathOf(plugIn).c_str())) {}
  ~Library() { FreeLibrary(module_); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  HRESULT CanUnloadNow() const {
    using Function = HRESULT(STDAPICALLTYPE*)();
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, "DllCanUnloadNow")))();
  }
  HRESULT GetClassObject(const CLSID& id, const IID& iid, void** object) const {
    using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject")))(
        id, iid, object);
  }

 private:
  HMODULE module_;
};

TEST(RegistrationTest, TheDllMayLeaveWhenItsLastObjectIsGone) {
  const Library library(L"PracticeRouter");
  EXPECT_EQ(library.CanUnloadNow(), S_OK);
  late::Ref<IDispatch> router = host::Make(L"Harbourline.PracticeRouter");
  EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
  late::Answer source = late::Call(router.get(), L"IServer_EventHandler");
  router.reset();
  EXPECT_EQ(library.CanUnloadNow(), S_FALSE) << "its event source lives";
  VariantClear(&source.value);
  EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST(RegistrationTest, ADllThatLeavesTakesItsWindowClassWithIt) {
  const auto use = [] {
    const late::Ref<IDispatch> first = host::Make(L"Harbourline.PracticeRouter");
    const late::Ref<IDispatch> second = host::Make(L"Harbourline.PracticeRouter");
    late::Call(first.get(), L"IServer_WANIP");
    late::Call(second.get(), L"IServer_WANIP");
    EXPECT_NE(FindWindowW(L"HarbourlinePracticeRouter", nullptr), nullptr);
  };
  use();
  const HINSTANCE library = GetModuleHandleW(L"PracticeRouter.dll");
  ASSERT_NE(library, nullptr);
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  EXPECT_FALSE(GetClassInfoExW(library, L"HarbourlinePracticeRouter", &windowClass));
  CoFreeUnusedLibrariesEx(0, 0);
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(L"PracticeRouter.dll"), nullptr);
  use();
}

TEST(RegistrationTest, TheFactoryRefusesWhatItCannotMake) {
  const Library library(L"PracticeRouter");
  CLSID id = {};
  ASSERT_EQ(CLSIDFromProgID(L"Harbourline.PracticeRouter", &id), S_OK);
  void* object = nullptr;
  EXPECT_EQ(library.GetClassObject(IID_IDispatch, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(library.GetClassObject(id, IID_IDispatch, &object), E_NOINTERFACE);
  ASSERT_EQ(library.GetClassObject(id, IID_IClassFactory, &object), S_OK);
  const late::Ref<IClassFactory> factory(static_cast<IClassFactory*>(object));
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, &object), E_NOINTERFACE);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
}

TEST(RegistrationTest, EveryPlugInTellsItsVersion) {
  const std::string version = HARBOURLINE_VERSION;
  for (const wchar_t* plugIn : {L"PracticeRouter", L"ExampleRouter", L"RecordingPlugIn"}) {
    const std::wstring path = host::PathOf(plugIn);
    std::vector<char> information(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    ASSERT_TRUE(
        GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(information.size()), information.data()));
    void* text = nullptr;
    UINT length = 0;
    ASSERT_TRUE(
        VerQueryValueW(information.data(), L"\\StringFileInfo\\040904B0\\FileVersion", &text, &length));
    EXPECT_EQ(std::wstring(static_cast<wchar_t*>(text)), std::wstring(version.begin(), version.end()));
  }
}

}  // namespace
