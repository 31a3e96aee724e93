#include "ui/TextBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiTextBox : public support::InterfaceTest {
 protected:
  UiTextBox() : box(nullptr, "txtTest") {
    box.Change.Connect([this] { changes.push_back(box.Text()); });
  }

  ui::TextBox box;
  /// What the box held at each Change.
  std::vector<std::string> changes;
};

TEST_F(UiTextBox, TellsAChangeByCode) {
  box.Text("a");
  box.Text("b");
  box.Text("");
  EXPECT_THAT(changes, ElementsAre("a", "b", ""));
}

TEST_F(UiTextBox, TellsNoChangeWhenTheTextStays) {
  box.Text("");
  box.Text("a");
  box.Text("a");
  box.UserText("a");
  EXPECT_THAT(changes, ElementsAre("a"));
}

TEST_F(UiTextBox, TellsAChangeByTheUser) {
  box.UserText("x");
  box.UserText("xy");
  EXPECT_THAT(changes, ElementsAre("x", "xy"));
}

TEST_F(UiTextBox, ALockedBoxTakesNothingFromTheUser) {
  box.Text("shown");
  changes.clear();
  box.Locked(true);
  box.UserText("typed");
  EXPECT_EQ(box.Text(), "shown");
  EXPECT_THAT(changes, IsEmpty());
  box.Text("by code");
  EXPECT_THAT(changes, ElementsAre("by code"));
}

TEST_F(UiTextBox, KeepsTheSelectionWithinTheText) {
  box.Text("12345");
  box.SelStart(3);
  box.SelLength(10);
  EXPECT_EQ(box.SelStart(), 3);
  EXPECT_EQ(box.SelLength(), 2);
  box.SelStart(100);
  EXPECT_EQ(box.SelStart(), 5);
  EXPECT_EQ(box.SelLength(), 0);
  box.SelStart(-1);
  box.SelLength(-1);
  EXPECT_EQ(box.SelStart(), 0);
  EXPECT_EQ(box.SelLength(), 0);
  box.SelLength(INT32_MAX);
  EXPECT_EQ(box.SelLength(), 5);
  box.UserSelection(4, INT32_MAX);
  EXPECT_EQ(box.SelStart(), 4);
  EXPECT_EQ(box.SelLength(), 1);
}

TEST_F(UiTextBox, ANewPlaceSelectsNothing) {
  box.Text("12345");
  box.SelLength(5);
  box.SelStart(2);
  EXPECT_EQ(box.SelLength(), 0);
}

TEST_F(UiTextBox, ANewTextStartsWithNothingSelectedAtItsBegin) {
  box.Text("12345");
  box.SelStart(2);
  box.SelLength(3);
  box.Text("67890");
  EXPECT_EQ(box.SelStart(), 0);
  EXPECT_EQ(box.SelLength(), 0);
}

TEST_F(UiTextBox, TypingKeepsThePlaceWithinTheShorterText) {
  box.Text("12345");
  box.UserSelection(4, 1);
  box.UserText("1");
  EXPECT_EQ(box.SelStart(), 1);
  EXPECT_EQ(box.SelLength(), 0);
}

TEST_F(UiTextBox, TheTextMayBeSetAgainInItsOwnChange) {
  box.Change.Connect([this] {
    if (box.Text().size() > 3) box.Text(box.Text().substr(0, 3));
  });
  box.UserText("12345");
  EXPECT_EQ(box.Text(), "123");
  EXPECT_THAT(changes, ElementsAre("12345", "123"));
}

TEST_F(UiTextBox, AFailingChangeByTheUserIsTold) {
  box.Change.Connect([] { throw base::Error(5, "No"); });
  box.UserText("x");
  EXPECT_EQ(box.Text(), "x");
  EXPECT_THAT(Messages(), ElementsAre("No (5)"));
  EXPECT_EQ(support::ErrorOf([this] { box.Text("y"); }), 5);
}

TEST_F(UiTextBox, HoldsAnyCharacters) {
  const std::string odd("a\0b\r\n\xFF", 6);
  box.Text(odd);
  EXPECT_EQ(box.Text(), odd);
  box.SelLength(100);
  EXPECT_EQ(box.SelLength(), 6);
}

}  // namespace
