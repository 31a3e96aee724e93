#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/Host.h"
#include "support/LateBound.h"

/// A practice router with nothing stored, and its window read as another program would read it.
class PracticeRouterTest : public testing::Test {
 protected:
  static constexpr wchar_t kProgId[] = L"Harbourline.PracticeRouter";
  static constexpr wchar_t kSettings[] = L"Software\\Harbourline Practice Router";

  PracticeRouterTest() { RegDeleteTreeW(HKEY_CURRENT_USER, kSettings); }
  ~PracticeRouterTest() override { RegDeleteTreeW(HKEY_CURRENT_USER, kSettings); }

  void SetUp() override {
    router = host::Make(kProgId);
    ASSERT_TRUE(router);
  }

  late::Answer Call(const wchar_t* member, std::vector<VARIANT> arguments = {}) {
    return late::Call(router.get(), member, std::move(arguments));
  }
  late::Answer CallWithAddress(const wchar_t* member) { return Call(member, {address.Reference()}); }
  late::Answer Forward(late::MappingArray& mappings, short octet) {
    return Call(L"IServer_SetPortForwarding", {mappings.Reference(), late::Reference(octet)});
  }
  late::Answer Forward(const std::vector<late::MappingFields>& mappings, short octet) {
    late::MappingArray array(mappings);
    return Forward(array, octet);
  }
  void StoreFlag(const wchar_t* name, DWORD flag) {
    RegSetKeyValueW(HKEY_CURRENT_USER, kSettings, name, REG_DWORD, &flag, sizeof flag);
  }
  /// The router as it is made at the next start.
  void MakeAgain() {
    router.reset();
    router = host::Make(kProgId);
    ASSERT_TRUE(router);
  }

  static HWND Window() { return FindWindowW(L"HarbourlinePracticeRouter", L"Practice Router"); }
  static HWND Button(HWND window, const wchar_t* text);
  /// The rows of the port-forwarding table, or of the last calls, with " | " between the cells.
  static std::vector<std::wstring> Table() { return Rows(0, 5); }
  static std::vector<std::wstring> Calls() { return Rows(1, 3); }
  /// What stands right of the label.
  static std::wstring Fact(const wchar_t* label);
  static std::vector<std::wstring> Rows(int list, int columns);

  late::Ref<IDispatch> router;
  late::Text address{L"192.168.1.5"};
};
