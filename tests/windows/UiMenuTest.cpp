#include "ui/Menu.h"

#include <optional>

#include "support/Ui.h"
#include "ui/Timer.h"

namespace {

using support::Bystander;
using support::FindOwnWindow;
using support::PressKey;
using support::TestForm;
using support::WaitFor;

constexpr char kMenuClass[] = "#32768";
constexpr UINT kGetMenuHandle = 0x01E1;

HMENU MenuOf(HWND window) {
  return reinterpret_cast<HMENU>(SendMessageA(window, kGetMenuHandle, 0, 0));
}

/// The menu that is up, once it is.
HMENU MenuOnScreen() {
  return WaitFor([] {
    const HWND window = FindOwnWindow(kMenuClass);
    return window ? MenuOf(window) : nullptr;
  });
}

struct Item {
  std::string text;
  UINT state = 0;
  UINT type = 0;
  HMENU below = nullptr;
};

Item ItemAt(HMENU menu, UINT position) {
  char text[256] = "";
  MENUITEMINFOA info{};
  info.cbSize = sizeof info;
  info.fMask = MIIM_STRING | MIIM_STATE | MIIM_FTYPE | MIIM_SUBMENU;
  info.dwTypeData = text;
  info.cch = sizeof text;
  GetMenuItemInfoA(menu, position, TRUE, &info);
  return {text, info.fState, info.fType, info.hSubMenu};
}

void WaitForMenusUp(int wanted) {
  WaitFor([wanted] {
    int up = 0;
    for (HWND menu = nullptr; (menu = FindWindowExA(nullptr, menu, kMenuClass, nullptr)) != nullptr;) {
      DWORD process = 0;
      GetWindowThreadProcessId(menu, &process);
      if (process == GetCurrentProcessId() && IsWindowVisible(menu)) ++up;
    }
    return up == wanted;
  });
}

/// The menu of a program in the notification area, with its hidden window.
class UiMenuTest : public support::UiTest {
 protected:
  UiMenuTest() {
    form_.Load();
    profiles_[0].Visible(false);
    profiles_.Load(1).Caption("Clear All");
    profiles_.Load(2).Caption("-");
    profiles_.Load(3).Caption("Web && mail");
    for (int i = 1; i <= 3; ++i) profiles_[i].Visible(true);
    profiles_[3].Checked(true);
    profiles_.Click.Connect(
        [this](std::int32_t index) { clicked_ = "mnuProfiles " + std::to_string(index); });
    exit_.Click.Connect([this] { clicked_ = "mnuExit"; });
    copy_.Click.Connect([this] { clicked_ = "mnuCopyIP"; });
    ghost_.Visible(false);
  }

  /// Shows the menu while `user` acts beside it; what was clicked.
  template <typename User>
  std::string Show(User user) {
    clicked_.clear();
    // What is left of earlier input must not reach this menu.
    ui::TheInterface().toolkit->ProcessPendingEvents();
    {
      const Bystander bystander(user);
      popup_.ShowAsPopup();
    }
    return clicked_;
  }

  TestForm form_;
  ui::Menu popup_{&form_, "mnuPopUp", "Popup"};
  ui::Menu copy_{&popup_, "mnuCopyIP", "&Copy"};
  ui::Menu spacer_{&popup_, "mnuSpacer1", "-"};
  ui::Menu portForwarding_{&popup_, "mnuPortForwarding", "&Profiles"};
  ui::MenuArray profiles_{&portForwarding_, "mnuProfiles", "Profiles go here"};
  ui::Menu empty_{&popup_, "mnuFeatures", "&Features"};
  ui::Menu ghost_{&empty_, "mnuGhost", "Nobody sees this"};
  ui::Menu exit_{&popup_, "mnuExit", "E&xit"};
  std::string clicked_;
};

TEST_F(UiMenuTest, HoldsTheVisibleEntriesWithTheirMarks) {
  copy_.Enabled(false);
  exit_.Checked(true);
  std::vector<Item> items;
  std::vector<Item> below;
  Show([&] {
    const HMENU menu = MenuOnScreen();
    for (int i = 0; i < GetMenuItemCount(menu); ++i) items.push_back(ItemAt(menu, static_cast<UINT>(i)));
    if (items.size() > 2) {
      for (int i = 0; i < GetMenuItemCount(items[2].below); ++i) {
        below.push_back(ItemAt(items[2].below, static_cast<UINT>(i)));
      }
    }
    PressKey(VK_ESCAPE);
  });
  ASSERT_EQ(items.size(), 5u);
  EXPECT_EQ(items[0].text, "&Copy");
  EXPECT_NE(items[0].state & MFS_GRAYED, 0u);
  EXPECT_EQ(items[1].type & MFT_SEPARATOR, static_cast<UINT>(MFT_SEPARATOR));
  EXPECT_EQ(items[2].text, "&Profiles");
  EXPECT_NE(items[2].below, nullptr);
  EXPECT_EQ(items[3].text, "&Features");
  EXPECT_EQ(items[3].below, nullptr) << "none of its entries is visible";
  EXPECT_EQ(items[4].text, "E&xit");
  EXPECT_EQ(items[4].state & MFS_CHECKED, static_cast<UINT>(MFS_CHECKED));
  ASSERT_EQ(below.size(), 3u);
  EXPECT_EQ(below[0].text, "Clear All");
  EXPECT_EQ(below[0].state & MFS_CHECKED, 0u);
  EXPECT_EQ(below[1].type & MFT_SEPARATOR, static_cast<UINT>(MFT_SEPARATOR));
  EXPECT_EQ(below[2].text, "Web && mail");
  EXPECT_EQ(below[2].state & MFS_CHECKED, static_cast<UINT>(MFS_CHECKED));
}

TEST_F(UiMenuTest, AnAccessKeyChooses) {
  EXPECT_EQ(Show([] {
              MenuOnScreen();
              PressKey('X');
            }),
            "mnuExit");
}

TEST_F(UiMenuTest, ArrowsAndEnterChooseInASubmenu) {
  EXPECT_EQ(Show([] {
              MenuOnScreen();
              PressKey('P');
              WaitForMenusUp(2);
              PressKey(VK_DOWN);
              PressKey(VK_RETURN);
            }),
            "mnuProfiles 3");
}

TEST_F(UiMenuTest, EscapeChoosesNothing) {
  EXPECT_EQ(Show([] {
              MenuOnScreen();
              PressKey(VK_ESCAPE);
            }),
            "");
}

TEST_F(UiMenuTest, ADisabledEntryCannotBeChosen) {
  copy_.Enabled(false);
  EXPECT_EQ(Show([] {
              MenuOnScreen();
              PressKey('C');
              Sleep(100);
              // It may have closed the menu.
              if (FindOwnWindow(kMenuClass)) PressKey(VK_ESCAPE);
            }),
            "");
}

TEST_F(UiMenuTest, AClickElsewhereClosesIt) {
  SetCursorPos(500, 400);
  const ULONGLONG start = GetTickCount64();
  EXPECT_EQ(Show([] {
              MenuOnScreen();
              support::ClickAt(5, 5);
              if (!WaitFor([] { return FindOwnWindow(kMenuClass) == nullptr; })) PressKey(VK_ESCAPE);
            }),
            "");
  EXPECT_LT(GetTickCount64() - start, 5000u);
}

TEST_F(UiMenuTest, AClickOnAnEntryChoosesIt) {
  SetCursorPos(500, 400);
  EXPECT_EQ(Show([] {
              const HMENU menu = MenuOnScreen();
              RECT place{};
              GetMenuItemRect(nullptr, menu, 4, &place);
              support::ClickAt((place.left + place.right) / 2, (place.top + place.bottom) / 2);
            }),
            "mnuExit");
}

TEST_F(UiMenuTest, AMenuDoesNotBringUpAWindowThatLiesBehindOthers) {
  form_.Show();
  TestForm front("frmFront");
  front.Show();
  RunFor(200);
  ASSERT_EQ(GetForegroundWindow(), front.Window());
  HWND active = nullptr;
  Show([&] {
    MenuOnScreen();
    active = GetForegroundWindow();
    PressKey(VK_ESCAPE);
  });
  EXPECT_NE(active, form_.Window());
}

TEST_F(UiMenuTest, TheWindowThatTheUserWorksInStaysInFront) {
  form_.Show();
  ASSERT_TRUE(RunUntil([&] { return GetForegroundWindow() == form_.Window(); }));
  HWND active = nullptr;
  Show([&] {
    MenuOnScreen();
    active = GetForegroundWindow();
    PressKey(VK_ESCAPE);
  });
  EXPECT_EQ(active, form_.Window());
}

/// A handler that changes the menu while it is up.
class UiChangingMenuTest : public UiMenuTest {
 protected:
  template <typename Change>
  std::string ChooseFirstProfileAfter(Change change) {
    ui::Timer timer(nullptr, "tmChange");
    bool changed = false;
    timer.Tick.Connect([&] {
      timer.Enabled(false);
      change();
      changed = true;
    });
    timer.AttachPeers();
    timer.Interval(50);
    timer.Enabled(true);
    return Show([&] {
      MenuOnScreen();
      WaitFor([&] { return changed; });
      PressKey('P');
      WaitForMenusUp(2);
      PressKey(VK_DOWN);
      PressKey(VK_RETURN);
    });
  }
};

TEST_F(UiChangingMenuTest, AnEntryThatWasMadeAnewUnderTheSameCaptionIsStillMeant) {
  EXPECT_EQ(ChooseFirstProfileAfter([this] {
              profiles_.Unload(3);
              profiles_.Load(3).Caption("Web && mail");
            }),
            "mnuProfiles 3");
}

TEST_F(UiChangingMenuTest, AnEntryThatIsGoneIsNotChosen) {
  EXPECT_EQ(ChooseFirstProfileAfter([this] { profiles_.Unload(3); }), "");
}

TEST_F(UiChangingMenuTest, AnotherEntryInItsPlaceIsNotMeant) {
  EXPECT_EQ(ChooseFirstProfileAfter([this] {
              profiles_.Unload(3);
              profiles_.Load(3).Caption("Another profile");
            }),
            "");
}

TEST_F(UiChangingMenuTest, AWindowThatWasUnloadedMeanwhileHasNoMenu) {
  EXPECT_EQ(ChooseFirstProfileAfter([this] { form_.Unload(); }), "");
}

TEST_F(UiMenuTest, ThousandsOfEntriesOpenAtOnceAndTheLastCanBeChosen) {
  constexpr int kLast = 5000;
  for (int i = 4; i <= kLast; ++i) {
    ui::Menu& entry = profiles_.Load(i);
    entry.Caption("Profile " + std::to_string(i));
    entry.Visible(true);
  }
  const ULONGLONG start = GetTickCount64();
  ULONGLONG opened = 0;
  EXPECT_EQ(Show([&] {
              MenuOnScreen();
              opened = GetTickCount64();
              PressKey('P');
              WaitForMenusUp(2);
              PressKey(VK_UP);
              PressKey(VK_RETURN);
            }),
            "mnuProfiles " + std::to_string(kLast));
  EXPECT_LT(opened - start, 1000u);
}

}  // namespace
