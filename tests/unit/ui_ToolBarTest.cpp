#include "ui/ToolBar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/RecordingToolkit.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiToolBar : public support::InterfaceTest {
 protected:
  UiToolBar() : bar(nullptr, "tbTest") {
    bar.AddButton("Add", "Add a Profile", ui::ResourcePicture("Add"));
    bar.AddButton("Delete", "Delete a Profile", nullptr);
    bar.ButtonClick.Connect([this](const std::string& key) { clicks.push_back(key); });
  }

  ui::ToolBar bar;
  std::vector<std::string> clicks;
};

TEST_F(UiToolBar, KeepsItsButtonsInOrder) {
  ASSERT_EQ(bar.Buttons().size(), 2u);
  EXPECT_EQ(bar.Buttons()[0].key, "Add");
  EXPECT_EQ(bar.Buttons()[0].toolTip, "Add a Profile");
  EXPECT_EQ(bar.Buttons()[0].picture->resource, "Add");
  EXPECT_EQ(bar.Buttons()[1].key, "Delete");
  EXPECT_TRUE(bar.ButtonEnabled("Delete"));
}

TEST_F(UiToolBar, TellsTheKeyOfThePressedButton) {
  bar.UserClick("Delete");
  bar.UserClick("Add");
  EXPECT_THAT(clicks, ElementsAre("Delete", "Add"));
}

TEST_F(UiToolBar, ADisabledButtonCanNotBePressed) {
  bar.ButtonEnabled("Add", false);
  bar.UserClick("Add");
  bar.UserClick("Delete");
  EXPECT_FALSE(bar.ButtonEnabled("Add"));
  EXPECT_THAT(clicks, ElementsAre("Delete"));
  bar.Enabled(false);
  bar.UserClick("Delete");
  EXPECT_EQ(clicks.size(), 1u);
}

TEST_F(UiToolBar, AnUnknownKeyFailsForCodeAndIsIgnoredFromTheUser) {
  EXPECT_EQ(support::ErrorOf([&] { bar.ButtonEnabled("Edit"); }), base::ErrorNumber::kKeyUnknown);
  EXPECT_EQ(support::ErrorTextOf([&] { bar.ButtonEnabled("Edit", true); }),
            "There is no button \"Edit\" in tbTest");
  bar.UserClick("Edit");
  EXPECT_THAT(clicks, IsEmpty());
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(UiToolBar, RefusesATakenKey) {
  EXPECT_EQ(support::ErrorOf([&] { bar.AddButton("Add", "", nullptr); }), base::ErrorNumber::kKeyTaken);
  EXPECT_EQ(bar.Buttons().size(), 2u);
}

TEST_F(UiToolBar, MayGrowInAClick) {
  bar.ButtonClick.Connect([this](const std::string& key) {
    for (int i = 0; i < 20; ++i) bar.AddButton("New" + std::to_string(i), "", nullptr);
    EXPECT_EQ(key, "Add");
  });
  bar.UserClick(bar.Buttons()[0].key);
  EXPECT_EQ(bar.Buttons().size(), 22u);
}

}  // namespace
