// Calls that no program should make. None may crash, and none may be taken for a good one.
#include "support/PracticeRouterTest.h"

namespace {

class BadInputTest : public PracticeRouterTest {};

struct Member {
  const wchar_t* name;
  std::size_t arguments;
};
constexpr Member kMembers[] = {{L"IServer_ServerTitle", 0},
                               {L"IServer_EventHandler", 0},
                               {L"IServer_ClassName", 0},
                               {L"IServer_Version", 0},
                               {L"IServer_Functional", 0},
                               {L"IServer_EnableLog", 0},
                               {L"IServer_WANIP", 0},
                               {L"IServer_CheckForWarning", 1},
                               {L"IServer_SetLogging", 1},
                               {L"IServer_SetPortForwarding", 2},
                               {L"IServer_ApplicationExiting", 1},
                               {L"IServer_GetFeatures", 2},
                               {L"IServer_ActivateFeaure", 2},
                               {L"IServer_GetPortForwardingDescription", 1},
                               {L"IServer_SaveSettings", 0}};

TEST_F(BadInputTest, AWrongNumberOfArgumentsIsTold) {
  for (const Member& member : kMembers) {
    for (std::size_t count = 0; count < 5; ++count) {
      if (count == member.arguments) continue;
      const late::Answer answer = Call(member.name, std::vector<VARIANT>(count, late::Value(1L)));
      EXPECT_EQ(answer.code, DISP_E_BADPARAMCOUNT) << member.name << " with " << count;
    }
  }
  EXPECT_EQ(Call(L"IServer_Configure", {late::Value(1L)}).code, DISP_E_BADPARAMCOUNT);
}

TEST_F(BadInputTest, EveryMemberTakesEveryKindOfArgumentWithoutACrash) {
  VARIANT noText = {};
  noText.vt = VT_BYREF | VT_BSTR;
  VARIANT noArray = {};
  noArray.vt = VT_BYREF | VT_ARRAY | VT_DISPATCH;
  VARIANT noInner = {};
  noInner.vt = VT_BYREF | VT_VARIANT;
  VARIANT arrayByValue = {};
  arrayByValue.vt = VT_ARRAY | VT_DISPATCH;
  VARIANT unknownKind = {};
  unknownKind.vt = 0x0777;
  VARIANT missing = {};
  missing.vt = VT_ERROR;
  missing.scode = DISP_E_PARAMNOTFOUND;
  VARIANT null = {};
  null.vt = VT_NULL;
  VARIANT ownEnd = {};
  ownEnd.vt = VT_BYREF | VT_VARIANT;
  ownEnd.pvarVal = &ownEnd;
  SAFEARRAY* empty = nullptr;
  VARIANT emptyArray = late::Reference(empty, VT_BSTR);
  const late::Text text(L"x");
  for (const VARIANT& bad :
       {noText, noArray, noInner, arrayByValue, unknownKind, missing, null, ownEnd, emptyArray,
        late::Nothing(), late::Value(static_cast<IDispatch*>(nullptr)), late::Value(1e300), text.Value()}) {
    for (const Member& member : kMembers) {
      if (member.arguments > 0) Call(member.name, std::vector<VARIANT>(member.arguments, bad));
    }
    late::Put(router.get(), L"IServer_DMZ", bad);
    late::Put(router.get(), L"IServer_EnableLog", bad);
  }
  EXPECT_TRUE(Call(L"IServer_ServerTitle").IsText(L"Practice Router"));
}

TEST_F(BadInputTest, TheArgumentThatDoesNotConvertIsNamedByItsPlace) {
  short one = 1;
  const late::Text text(L"not a number");
  const late::Answer second = Call(L"IServer_ActivateFeaure", {address.Reference(), text.Value()});
  EXPECT_EQ(second.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(second.badArgument, 0u) << "COM counts from the end";
  const late::Answer first =
      Call(L"IServer_ActivateFeaure", {late::Value(static_cast<IDispatch*>(nullptr)), late::Reference(one)});
  EXPECT_TRUE(FAILED(first.code));
  EXPECT_EQ(first.badArgument, 1u);
}

TEST_F(BadInputTest, ANumberTooLargeForItsPlaceIsAnOverflow) {
  late::MappingArray empty = late::MappingArray::Empty();
  EXPECT_EQ(Call(L"IServer_SetPortForwarding", {empty.Reference(), late::Value(40000L)}).code,
            DISP_E_OVERFLOW);
}

TEST_F(BadInputTest, ArgumentsComeByValueByReferenceAndWrapped) {
  VARIANT value = address.Value();
  VARIANT reference = address.Reference();
  VARIANT inner = late::Wrapped(reference);
  for (VARIANT argument :
       {value, reference, late::Wrapped(value), late::Wrapped(reference), late::Wrapped(inner)}) {
    EXPECT_TRUE(Call(L"IServer_CheckForWarning", {argument}).IsBool(false));
  }
  EXPECT_EQ(Fact(L"DMZ host"), L"None");
  late::Put(router.get(), L"IServer_DMZ", late::Value(5L));
  EXPECT_EQ(Fact(L"DMZ host"), L"192.168.1.5");
}

TEST_F(BadInputTest, OrdinaryConversionsApply) {
  const late::Text number(L"23");
  EXPECT_EQ(late::Put(router.get(), L"IServer_DMZ", number.Value()).code, S_OK);
  EXPECT_EQ(Fact(L"DMZ host"), L"*.23");
  EXPECT_EQ(late::Put(router.get(), L"IServer_EnableLog", late::Value(2L)).code, S_OK);
  EXPECT_TRUE(Call(L"IServer_EnableLog").IsBool(true));
}

TEST_F(BadInputTest, ARecordWithoutAFieldFailsAndLeavesTheTable) {
  Forward({{L"Web", L"", 80, 80, false, true, 5, false}}, 5);
  IDispatch* record = late::MakeRecord({{L"sProfileName", late::Nothing()}});
  late::MappingArray array(std::vector<IDispatch*>{record});
  const late::Answer answer = Forward(array, 5);
  EXPECT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(answer.exceptionCode, DISP_E_UNKNOWNNAME);
  EXPECT_EQ(answer.exceptionText, L"The mapping doesn't tell its sDescription.");
  EXPECT_EQ(Table().size(), 1u);
}

TEST_F(BadInputTest, ARecordWithAFieldOfAnotherKindIsConvertedOrFails) {
  const late::Text eighty(L"80");
  std::vector<std::pair<std::wstring, VARIANT>> fields = {{L"sProfileName", late::Value(7L)},
                                                          {L"sDescription", late::Nothing()},
                                                          {L"lBeginPort", eighty.Value()},
                                                          {L"lEndPort", late::Value(81.0)},
                                                          {L"bUDP", late::Value(0L)},
                                                          {L"bTCP", late::Value(2L)},
                                                          {L"iForwardIPAddress", late::Value(5L)},
                                                          {L"bClearEntry", late::Value(false)}};
  fields[2].second.bstrVal = SysAllocString(L"80");
  late::MappingArray converted(std::vector<IDispatch*>{late::MakeRecord(fields)});
  EXPECT_TRUE(Forward(converted, 5).IsBool(false));
  EXPECT_THAT(Table(), testing::ElementsAre(L"7 |  | 80 - 81 | TCP | *.5"));
  fields[2].second = late::Value(1e300);
  late::MappingArray failing(std::vector<IDispatch*>{late::MakeRecord(fields)});
  EXPECT_EQ(Forward(failing, 5).code, DISP_E_EXCEPTION);
}

TEST_F(BadInputTest, ANullAmongTheMappingsFailsAndLeavesTheTable) {
  late::MappingArray array(std::vector<IDispatch*>{nullptr}, 0);
  const late::Answer answer = Forward(array, 5);
  EXPECT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(answer.exceptionText, L"The array of mappings has an element without a mapping.");
}

TEST_F(BadInputTest, MappingArraysOfOtherShapesAreMismatches) {
  short octet = 5;
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  SAFEARRAY* square = SafeArrayCreate(VT_DISPATCH, 2, bounds);
  SAFEARRAY* texts = SafeArrayCreateVector(VT_BSTR, 0, 1);
  SAFEARRAY* none = nullptr;
  for (VARIANT array :
       {late::Reference(square, VT_DISPATCH), late::Reference(texts, VT_BSTR),
        late::Reference(texts, VT_DISPATCH), late::Reference(none, VT_DISPATCH), late::Value(1L)}) {
    EXPECT_EQ(Call(L"IServer_SetPortForwarding", {array, late::Reference(octet)}).code, DISP_E_TYPEMISMATCH);
  }
  SafeArrayDestroy(square);
  SafeArrayDestroy(texts);
}

TEST_F(BadInputTest, AnArrayOfVariantsWithRecordsIsTakenToo) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  VARIANT element = late::Value(late::MakeMapping({L"Web", L"", 80, 80, false, true, 5, false}));
  LONG index = 0;
  SafeArrayPutElement(array, &index, &element);
  VariantClear(&element);
  VARIANT inner = {};
  inner.vt = VT_ARRAY | VT_VARIANT;
  inner.parray = array;
  short octet = 5;
  EXPECT_TRUE(
      Call(L"IServer_SetPortForwarding", {late::Wrapped(inner), late::Reference(octet)}).IsBool(false));
  EXPECT_EQ(Table().size(), 1u);
  VariantClear(&inner);
}

TEST_F(BadInputTest, FeatureArraysThatCannotBeReplacedAreToldAndKept) {
  SAFEARRAY* captions = SafeArrayCreateVector(VT_BSTR, 0, 0);
  SAFEARRAY* identifiers = SafeArrayCreateVector(VT_I2, 0, 1);
  SafeArrayLock(identifiers);
  EXPECT_EQ(
      Call(L"IServer_GetFeatures", {late::Reference(captions, VT_BSTR), late::Reference(identifiers, VT_I2)})
          .code,
      DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(captions->rgsabound[0].cElements, 0u);
  SafeArrayUnlock(identifiers);
  EXPECT_EQ(
      Call(L"IServer_GetFeatures", {late::Reference(captions, VT_I4), late::Reference(identifiers, VT_I2)})
          .code,
      DISP_E_TYPEMISMATCH);
  SafeArrayDestroy(captions);
  SafeArrayDestroy(identifiers);
}

TEST_F(BadInputTest, FeaturesAlsoComeThroughVariantsAndMissingArrays) {
  VARIANT captions = late::Nothing();
  VARIANT identifiers = late::Nothing();
  EXPECT_TRUE(
      Call(L"IServer_GetFeatures", {late::Wrapped(captions), late::Wrapped(identifiers)}).IsBool(true));
  EXPECT_EQ(captions.vt, VT_ARRAY | VT_BSTR);
  EXPECT_EQ(identifiers.vt, VT_ARRAY | VT_I2);
  VariantClear(&captions);
  VariantClear(&identifiers);
  SAFEARRAY* noCaptions = nullptr;
  SAFEARRAY* noIdentifiers = nullptr;
  EXPECT_TRUE(Call(L"IServer_GetFeatures",
                   {late::Reference(noCaptions, VT_BSTR), late::Reference(noIdentifiers, VT_I2)})
                  .IsBool(true));
  EXPECT_NE(noIdentifiers, nullptr);
  SafeArrayDestroy(noCaptions);
  SafeArrayDestroy(noIdentifiers);
}

TEST_F(BadInputTest, UnknownNamesAndNumbersAreToldApart) {
  EXPECT_EQ(late::Find(router.get(), L"IServer_ActivateFeature"), DISPID_UNKNOWN)
      << "the contract spells it otherwise";
  EXPECT_NE(late::Find(router.get(), L"IServer_ActivateFeaure"), DISPID_UNKNOWN);
  EXPECT_EQ(late::Find(router.get(), L"iserver_wanip"), late::Find(router.get(), L"IServer_WANIP"));
  EXPECT_EQ(late::Find(router.get(), L""), DISPID_UNKNOWN);
  for (const DISPID id : {0L, -1L, -4L, 1000L}) {
    EXPECT_EQ(late::Invoke(router.get(), id, DISPATCH_METHOD, {}).code, DISP_E_MEMBERNOTFOUND);
  }
}

TEST_F(BadInputTest, NamesOfArgumentsAreUnknown) {
  wchar_t member[] = L"IServer_SetLogging";
  wchar_t argument[] = L"sLocalIP";
  LPOLESTR names[] = {member, argument};
  DISPID ids[2] = {};
  EXPECT_EQ(router->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
  EXPECT_NE(ids[0], DISPID_UNKNOWN);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST_F(BadInputTest, OnlyTheWrittenPropertiesTakeWrites) {
  EXPECT_EQ(late::Put(router.get(), L"IServer_WANIP", late::Value(1L)).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(late::Invoke(router.get(), late::Find(router.get(), L"IServer_DMZ"), DISPATCH_PROPERTYPUT,
                         {late::Value(1L), late::Value(2L)})
                .code,
            DISP_E_BADPARAMCOUNT);
}

TEST_F(BadInputTest, NullPointersInPlaceOfArgumentsAreRefused) {
  const DISPID id = late::Find(router.get(), L"IServer_SetLogging");
  EXPECT_EQ(router->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
            E_INVALIDARG);
  DISPPARAMS lying = {nullptr, nullptr, 1, 0};
  EXPECT_EQ(router->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &lying, nullptr, nullptr, nullptr),
            E_INVALIDARG);
  DISPPARAMS none = {};
  EXPECT_EQ(router->Invoke(id, IID_IUnknown, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(router->GetIDsOfNames(IID_NULL, nullptr, 0, 0, nullptr), E_INVALIDARG);
}

TEST_F(BadInputTest, ACallWithoutPlacesForResultAndErrorIsFine) {
  DISPPARAMS none = {};
  EXPECT_EQ(router->Invoke(late::Find(router.get(), L"IServer_WANIP"), IID_NULL, 0, DISPATCH_PROPERTYGET,
                           &none, nullptr, nullptr, nullptr),
            S_OK);
}

}  // namespace
