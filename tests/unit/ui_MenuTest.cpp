#include "ui/Menu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiMenu : public support::InterfaceTest {
 protected:
  UiMenu()
      : window("frmTest", "Test", {}, 100, 100),
        popUp(&window, "mnuPopUp", "PopUp"),
        copy(&popUp, "mnuCopy", "&Copy"),
        profiles(&popUp, "mnuPortForwarding", "&Profiles"),
        entries(&profiles, "mnuProfiles", "Profiles go here") {
    window.Load();
  }

  /// The captions below `menu` that are visible.
  static std::vector<std::string> Captions(const ui::Menu& menu) {
    std::vector<std::string> captions;
    for (const ui::Control* child : menu.Children()) {
      if (child->Visible()) captions.push_back(static_cast<const ui::Menu*>(child)->Caption());
    }
    return captions;
  }

  /// As the program does it at each opening.
  void Rebuild(const std::vector<std::string>& names) {
    entries[0].Visible(true);
    for (std::int32_t i = entries.UpperBound(); i > 0; --i) entries.Unload(i);
    for (std::size_t i = 0; i < names.size(); ++i) {
      ui::Menu& entry = entries.Load(static_cast<std::int32_t>(i) + 1);
      entry.Caption(names[i]);
      entry.Visible(true);
    }
    entries[0].Visible(false);
  }

  ui::Form window;
  ui::Menu popUp;
  ui::Menu copy;
  ui::Menu profiles;
  ui::MenuArray entries;
};

TEST_F(UiMenu, HoldsItsState) {
  EXPECT_EQ(copy.Caption(), "&Copy");
  EXPECT_FALSE(copy.Checked());
  EXPECT_FALSE(copy.IsSeparator());
  copy.Checked(true);
  copy.Caption("-");
  EXPECT_TRUE(copy.Checked());
  EXPECT_TRUE(copy.IsSeparator());
}

TEST_F(UiMenu, ADisabledEntryCanNotBeClicked) {
  int clicks = 0;
  copy.Click.Connect([&] { ++clicks; });
  copy.Enabled(false);
  copy.UserClick();
  EXPECT_EQ(clicks, 0);
  copy.Enabled(true);
  copy.UserClick();
  EXPECT_EQ(clicks, 1);
}

TEST_F(UiMenu, ThePopUpIsClosedWhenTheChosenEntryIsClicked) {
  std::vector<std::string> order;
  toolkit.choosePopup = [&](ui::Menu& menu) {
    EXPECT_EQ(&menu, &popUp);
    order.push_back("closed");
    return &copy;
  };
  copy.Click.Connect([&] { order.push_back("clicked"); });
  popUp.ShowAsPopup();
  EXPECT_THAT(order, ElementsAre("closed", "clicked"));
}

TEST_F(UiMenu, NothingIsClickedWhenTheUserLeavesThePopUp) {
  int clicks = 0;
  copy.Click.Connect([&] { ++clicks; });
  popUp.ShowAsPopup();
  EXPECT_EQ(clicks, 0);
}

TEST_F(UiMenu, AFailingClickIsTold) {
  copy.Click.Connect([] { throw base::Error(5, "No"); });
  toolkit.choosePopup = [&](ui::Menu&) { return &copy; };
  popUp.ShowAsPopup();
  EXPECT_THAT(Messages(), ElementsAre("No (5)"));
}

TEST_F(UiMenu, AnArrayHasItsPatternFromTheStart) {
  EXPECT_EQ(entries.UpperBound(), 0);
  EXPECT_EQ(entries[0].Caption(), "Profiles go here");
  EXPECT_EQ(entries[0].Name(), "mnuProfiles(0)");
  EXPECT_EQ(entries[0].Parent(), &profiles);
}

TEST_F(UiMenu, ALoadedEntryIsAsThePatternIsAndStandsAtTheEnd) {
  ui::Menu after(&profiles, "mnuAfter", "After");
  entries[0].Enabled(false);
  entries[0].Checked(true);
  ui::Menu& entry = entries.Load(2);
  EXPECT_EQ(entry.Name(), "mnuProfiles(2)");
  EXPECT_TRUE(entry.Visible());
  EXPECT_FALSE(entry.Enabled());
  EXPECT_TRUE(entry.Checked());
  entries[0].Visible(false);
  EXPECT_FALSE(entries.Load(1).Visible());
  entry.Caption("two");
  EXPECT_THAT(Captions(profiles), ElementsAre("After", "two"));
  EXPECT_EQ(entries.UpperBound(), 2);
  EXPECT_EQ(&entries[2], &entry);
}

TEST_F(UiMenu, ATakenIndexCanNotBeLoaded) {
  entries.Load(1);
  EXPECT_EQ(support::ErrorOf([&] { entries.Load(1); }), base::ErrorNumber::kKeyTaken);
  EXPECT_EQ(support::ErrorOf([&] { entries.Load(0); }), base::ErrorNumber::kKeyTaken);
  EXPECT_EQ(support::ErrorOf([&] { entries.Load(-1); }), base::ErrorNumber::kSubscript);
  EXPECT_EQ(profiles.Children().size(), 2u);
}

TEST_F(UiMenu, ThePatternAndAnUnknownIndexCanNotBeUnloaded) {
  EXPECT_EQ(support::ErrorOf([&] { entries.Unload(0); }), base::ErrorNumber::kSubscript);
  EXPECT_EQ(support::ErrorOf([&] { entries.Unload(7); }), base::ErrorNumber::kSubscript);
  EXPECT_EQ(support::ErrorTextOf([&] { entries[7]; }), "There is no menu entry mnuProfiles(7)");
  EXPECT_EQ(entries[0].Caption(), "Profiles go here");
}

TEST_F(UiMenu, AClickOnAnEntryTellsItsIndex) {
  std::vector<std::int32_t> clicked;
  entries.Click.Connect([&](std::int32_t index) { clicked.push_back(index); });
  entries.Load(1);
  entries.Load(5);
  entries[5].UserClick();
  entries[1].UserClick();
  entries[0].UserClick();
  EXPECT_THAT(clicked, ElementsAre(5, 1, 0));
}

TEST_F(UiMenu, RebuildingTwiceGivesTheSameEntries) {
  Rebuild({"Clear All", "-", "One", "Two"});
  EXPECT_THAT(Captions(profiles), ElementsAre("Clear All", "-", "One", "Two"));
  Rebuild({"Clear All", "-", "One", "Two"});
  EXPECT_THAT(Captions(profiles), ElementsAre("Clear All", "-", "One", "Two"));
  Rebuild({});
  EXPECT_THAT(Captions(profiles), IsEmpty());
  EXPECT_EQ(profiles.Children().size(), 1u);
}

TEST_F(UiMenu, AnEntryMayUnloadItselfInItsOwnClick) {
  entries.Load(1);
  std::vector<std::int32_t> clicked;
  entries.Click.Connect([&](std::int32_t index) {
    entries.Unload(index);
    EXPECT_EQ(profiles.Children().size(), 1u) << "it has left the menu at once";
    clicked.push_back(index);
  });
  entries[1].UserClick();
  EXPECT_THAT(clicked, ElementsAre(1));
  EXPECT_EQ(support::ErrorOf([&] { entries[1]; }), base::ErrorNumber::kSubscript);
}

TEST_F(UiMenu, TheArrayMayBeRebuiltInAClickThatThenFails) {
  Rebuild({"Clear All", "-", "One"});
  entries.Click.Connect([&](std::int32_t index) {
    Rebuild({"Clear All", "-", "Two", "Three"});
    throw base::Error(5, "Entry " + std::to_string(index));
  });
  entries[3].UserClick();
  EXPECT_THAT(Messages(), ElementsAre("Entry 3 (5)"));
  EXPECT_THAT(Captions(profiles), ElementsAre("Clear All", "-", "Two", "Three"));
}

TEST_F(UiMenu, TheArrayMayBeRebuiltWhileAClickShowsABox) {
  Rebuild({"Clear All", "-", "One"});
  entries.Click.Connect([&](std::int32_t) { throw base::Error(5, "No"); });
  toolkit.whileMessage = [&](const ui::Message&) { Rebuild({"Clear All", "-", "Two"}); };
  entries[3].UserClick();
  EXPECT_THAT(Captions(profiles), ElementsAre("Clear All", "-", "Two"));
}

TEST_F(UiMenu, AnEntryThatWentWhileThePopUpWasUpIsNotClicked) {
  Rebuild({"Clear All", "-", "One"});
  std::vector<std::int32_t> clicked;
  entries.Click.Connect([&](std::int32_t index) { clicked.push_back(index); });
  toolkit.choosePopup = [&](ui::Menu&) {
    ui::Menu* chosen = &entries[3];
    entries.Unload(3);
    return chosen;
  };
  popUp.ShowAsPopup();
  EXPECT_THAT(clicked, IsEmpty());
  ui::Menu other(&window, "mnuOther", "Other");
  other.Click.Connect([&] { clicked.push_back(99); });
  toolkit.choosePopup = [&](ui::Menu&) { return &other; };
  popUp.ShowAsPopup();
  EXPECT_THAT(clicked, IsEmpty()) << "it stands on no menu that was shown";
  toolkit.choosePopup = [&](ui::Menu&) { return &entries[1]; };
  popUp.ShowAsPopup();
  EXPECT_THAT(clicked, ElementsAre(1)) << "an entry of a submenu is below the pop-up";
}

}  // namespace
