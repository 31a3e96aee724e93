#include "platform/ObjectFactory.h"

#include <gmock/gmock.h>

#include <array>

#include "support/ComTest.h"
#include "support/EventSource.h"
#include "support/RegistryAccess.h"
#include "support/TestRecord.h"

namespace {

using base::ElementType;
using base::MakeArray;
using base::Variant;
using platform::Argument;
using support::FailureOf;
using support::MemberCall;
using support::TestRecord;
using testing::HasSubstr;

class ObjectFactoryTest : public testing::Test {
 protected:
  platform::LateBoundRef Create(const std::string& className) {
    return platform::TheMachine().objects->Create(className);
  }

  const platform::win32::Win32Machine machine_;
  const std::string progId_ = "HarbourlineTest.Factory" + std::to_string(GetCurrentProcessId());
};

TEST_F(ObjectFactoryTest, AnUnknownClassFailsAndIsNamed) {
  const base::Error error = FailureOf([&] { Create("HarbourlineTest.Nothing"); });
  EXPECT_EQ(error.Number(), CO_E_CLASSSTRING);
  EXPECT_THAT(error.Text(), HasSubstr("\"HarbourlineTest.Nothing\""));
}

TEST_F(ObjectFactoryTest, AnEmptyClassNameFails) {
  EXPECT_LT(FailureOf([&] { Create(""); }).Number(), 0);
}

TEST_F(ObjectFactoryTest, AClassWithoutServerFailsAndIsNamed) {
  const std::wstring classId = support::IdText(support::NewId());
  support::WriteClassKeys(support::Wide(progId_), classId, L"");
  const base::Error error = FailureOf([&] { Create(progId_); });
  support::DeleteClassKeys(support::Wide(progId_), classId);
  EXPECT_EQ(error.Number(), REGDB_E_CLASSNOTREG);
  EXPECT_THAT(error.Text(), HasSubstr('"' + progId_ + '"'));
}

TEST_F(ObjectFactoryTest, AServerThatIsNoProgramLibraryFails) {
  const support::TemporaryFolder folder;
  const std::string library = folder.Path() + "\\server.dll";
  CloseHandle(CreateFileA(library.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
  const std::wstring classId = support::IdText(support::NewId());
  support::WriteClassKeys(support::Wide(progId_), classId, L"");
  support::WriteValue(L"Software\\Classes\\CLSID\\" + classId + L"\\InprocServer32", L"",
                      support::TextValue(support::Wide(library)), HKEY_LOCAL_MACHINE);
  const base::Error error = FailureOf([&] { Create(progId_); });
  support::DeleteClassKeys(support::Wide(progId_), classId);
  EXPECT_LT(error.Number(), 0);
  EXPECT_THAT(error.Text(), HasSubstr('"' + progId_ + '"'));
}

/// An object that is no automation object.
class Plain : public IUnknown, public support::CountedObject {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IUnknown*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return Drop(); }
};

TEST_F(ObjectFactoryTest, AClassThatIsNoAutomationObjectFails) {
  auto* plain = new Plain;
  {
    const support::RegisteredClass registered(progId_, plain);
    EXPECT_EQ(FailureOf([&] { Create(progId_); }).Number(), E_NOINTERFACE);
  }
  EXPECT_EQ(plain->Release(), 0u);
}

TEST_F(ObjectFactoryTest, TheClassNameMayBeWrittenInAnyCase) {
  auto* object = new support::AutomationObject;
  {
    const support::RegisteredClass registered(progId_, object);
    std::string upper = progId_;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_NE(Create(upper), nullptr);
  }
  EXPECT_EQ(object->Release(), 0u);
}

constexpr IID kEventsId = {0xE0A74CD3, 0x5372, 0x419F, {0xA5, 0xBE, 0x5D, 0x09, 0xBD, 0xCF, 0xB7, 0x40}};

VARIANT ReadOf(IDispatch* object, const wchar_t* name) {
  std::wstring copy = name;
  LPOLESTR names[] = {copy.data()};
  DISPID id = DISPID_UNKNOWN;
  VARIANT value;
  VariantInit(&value);
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  if (SUCCEEDED(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
    object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
  }
  return value;
}

HRESULT TellPort(const MemberCall& call) {
  call.Return(ReadOf(call.Argument(0).pdispVal, L"lBeginPort"));
  return S_OK;
}

HRESULT FillFeatures(const MemberCall& call) {
  SAFEARRAYBOUND bound = {2, 0};
  SafeArrayRedim(*call.Argument(0).pparray, &bound);
  LONG index = 1;
  BSTR text = SysAllocString(L"caf\x00E9");
  SafeArrayPutElement(*call.Argument(0).pparray, &index, text);
  SysFreeString(text);
  SafeArrayDestroy(*call.Argument(1).pparray);
  bound = {1, 3};
  *call.Argument(1).pparray = SafeArrayCreate(VT_I2, 1, &bound);
  index = 3;
  SHORT identifier = 77;
  SafeArrayPutElement(*call.Argument(1).pparray, &index, &identifier);
  call.Return(support::BoolVariant(true));
  return S_OK;
}

HRESULT RaiseException(const MemberCall& call) {
  call.exception->scode = E_ACCESSDENIED;
  call.exception->bstrDescription = SysAllocString(L"The router is busy");
  return DISP_E_EXCEPTION;
}

void CALLBACK GiveUp(HWND, UINT, UINT_PTR, DWORD) {
  PostQuitMessage(1);
}

/// A server in a process of its own. Its argument is the class; it ends when its member Quit is called.
const support::Role server("serve-an-object", [](const std::vector<std::string>& arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  auto* source = new support::EventSource;
  support::ConnectionPoint& point = source->AddPoint(kEventsId);
  point.AskForDispatch();
  source->Add(L"Port", TellPort);
  source->Add(L"Features", FillFeatures);
  source->Add(L"Fail", RaiseException);
  source->Add(L"Events", [&](const MemberCall& call) {
    source->AddRef();
    call.Return(support::DispatchVariant(source));
    return S_OK;
  });
  source->Add(L"Identify", [&](const MemberCall& call) {
    VARIANT port = support::LongVariant(80);
    BSTR name = SysAllocString(L"");
    VARIANT nameReference = support::ReferenceTo(VT_BSTR, &name);
    VARIANT_BOOL filter = VARIANT_FALSE;
    VARIANT filterReference = support::ReferenceTo(VT_BOOL, &filter);
    const HRESULT answer = point.Raise(2, {&port, &nameReference, &filterReference});
    VARIANT result = support::BstrVariant(support::TextOf(name) + (filter ? L" filtered" : L""));
    SysFreeString(name);
    call.Return(result);
    return answer;
  });
  source->Add(L"Quit", [](const MemberCall&) {
    PostQuitMessage(0);
    return S_OK;
  });
  CLSID id{};
  CLSIDFromString(support::Wide(arguments.at(0)).c_str(), &id);
  const DWORD cookie = support::OfferObject(id, static_cast<IDispatch*>(source), CLSCTX_LOCAL_SERVER);
  // A test that dies leaves nobody who calls Quit.
  SetTimer(nullptr, 0, 60'000, &GiveUp);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
  CoRevokeClassObject(cookie);
  source->Release();
  CoUninitialize();
  return 0;
});

class ServerProcessTest : public ObjectFactoryTest {
 protected:
  ServerProcessTest() {
    const std::wstring command =
        support::Wide("\"" + support::OwnProgram() + "\" serve-an-object ") + classId_;
    support::WriteClassKeys(support::Wide(progId_), classId_, command);
  }
  void TearDown() override {
    if (object_) object_->Call("Quit", {});
    object_.reset();
    support::DeleteClassKeys(support::Wide(progId_), classId_);
  }

  platform::LateBoundObject& Object() {
    if (!object_) object_ = Create(progId_);
    return *object_;
  }

  const std::wstring classId_ = support::IdText(support::NewId());
  platform::LateBoundRef object_;
};

TEST_F(ServerProcessTest, ARecordIsReadFromTheOtherProcess) {
  const auto record = std::make_shared<TestRecord>();
  record->lBeginPort = 443;
  std::array arguments = {Argument{record}};
  EXPECT_EQ(base::ToInt32(Object().Call("Port", arguments)), 443);
}

TEST_F(ServerProcessTest, ArraysComeBackWithTheirBounds) {
  std::array arguments = {Argument{MakeArray(ElementType::kText, 0, {}), true},
                          Argument{MakeArray(ElementType::kInt16, 0, {}), true}};
  EXPECT_TRUE(base::ToBoolean(Object().Call("Features", arguments)));
  const auto names = std::get<base::ArrayRef>(arguments[0].value.Get());
  const auto identifiers = std::get<base::ArrayRef>(arguments[1].value.Get());
  ASSERT_EQ(names->UpperBound(), 1);
  EXPECT_EQ(base::ToText(names->At(1)), "caf\xE9");
  EXPECT_EQ(identifiers->lowerBound, 3);
  ASSERT_EQ(identifiers->UpperBound(), 3);
  EXPECT_EQ(base::ToInt16(identifiers->At(3)), 77);
}

TEST_F(ServerProcessTest, AnExceptionArrivesWithItsText) {
  const base::Error error = FailureOf([&] { Object().Get("Fail"); });
  EXPECT_EQ(error.Number(), E_ACCESSDENIED);
  EXPECT_EQ(error.Text(), "The router is busy");
}

/// Answers every event.
class Answerer : public platform::EventSink {
 public:
  void OnEvent(std::int32_t event, std::span<Variant> arguments) override {
    thread = GetCurrentThreadId();
    arguments[1] = "event " + std::to_string(event) + " for " + base::ToText(arguments[0]);
    arguments[2] = true;
  }

  DWORD thread = 0;
};

TEST_F(ServerProcessTest, EventsComeOnTheThreadOfTheInterfaceAndTheirAnswersGoBack) {
  Answerer answerer;
  const auto source =
      std::dynamic_pointer_cast<platform::LateBoundObject>(base::ToObject(Object().Get("Events")));
  ASSERT_NE(source, nullptr);
  const auto connection = platform::TheMachine().objects->Connect(
      *source, {"{E0A74CD3-5372-419F-A5BE-5D09BDCFB740}", {"Error", "IdentifyPort", "Log"}}, answerer);
  EXPECT_EQ(base::ToText(Object().Get("Identify")), "event 2 for 80 filtered");
  EXPECT_EQ(answerer.thread, GetCurrentThreadId());
}

}  // namespace
