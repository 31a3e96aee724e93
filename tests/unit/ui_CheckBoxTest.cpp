#include "ui/CheckBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "support/RecordingToolkit.h"

namespace {

using testing::ElementsAre;

class UiCheckBox : public support::InterfaceTest {
 protected:
  UiCheckBox() : box(nullptr, "chkTest", "&Test") {
    box.Click.Connect([this] { clicks.push_back(box.Checked()); });
  }

  ui::CheckBox box;
  /// What the box held at each Click.
  std::vector<bool> clicks;
};

TEST_F(UiCheckBox, IsClickedWhenCodeChangesIt) {
  box.Checked(true);
  box.Checked(false);
  EXPECT_THAT(clicks, ElementsAre(true, false));
}

TEST_F(UiCheckBox, IsNotClickedWhenCodeLeavesItAsItIs) {
  box.Checked(false);
  box.Checked(true);
  box.Checked(true);
  EXPECT_THAT(clicks, ElementsAre(true));
}

TEST_F(UiCheckBox, FlipsWhenTheUserClicks) {
  box.UserClick();
  box.UserClick();
  EXPECT_THAT(clicks, ElementsAre(true, false));
}

TEST_F(UiCheckBox, CanNotBeClickedByTheUserWhileItIsDisabled) {
  box.Enabled(false);
  box.UserClick();
  EXPECT_FALSE(box.Checked());
  EXPECT_TRUE(clicks.empty());
  box.Checked(true);
  EXPECT_THAT(clicks, ElementsAre(true)) << "code can";
}

TEST_F(UiCheckBox, MayBeUncheckedInItsOwnClick) {
  box.Click.Connect([this] {
    if (box.Checked()) box.Checked(false);
  });
  box.UserClick();
  EXPECT_FALSE(box.Checked());
  EXPECT_THAT(clicks, ElementsAre(true, false));
}

TEST_F(UiCheckBox, AFailingClickOfTheUserIsToldAndTheTickStays) {
  box.Click.Connect([] { throw base::Error(5, "No"); });
  box.UserClick();
  EXPECT_TRUE(box.Checked());
  EXPECT_THAT(Messages(), ElementsAre("No (5)"));
}

TEST_F(UiCheckBox, AFailingClickOfCodeGoesToTheCode) {
  box.Click.Connect([] { throw base::Error(5, "No"); });
  EXPECT_EQ(support::ErrorOf([this] { box.Checked(true); }), 5);
  EXPECT_TRUE(toolkit.messages.empty());
}

}  // namespace
