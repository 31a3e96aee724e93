#include "ui/Choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiChoice : public support::InterfaceTest {
 protected:
  UiChoice() : window("frmTest", "Test", {}, 100, 100), box(&window, "cbTest") {
    box.Click.Connect([this] { clicks.push_back(box.ListIndex()); });
  }

  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (std::int32_t i = 0; i < box.ListCount(); ++i) texts.push_back(box.List(i));
    return texts;
  }

  ui::Form window;
  ui::ComboBox box;
  /// The index at each Click.
  std::vector<std::int32_t> clicks;
};

TEST_F(UiChoice, IsEmptyAtFirst) {
  EXPECT_EQ(box.ListCount(), 0);
  EXPECT_EQ(box.ListIndex(), -1);
  EXPECT_EQ(box.NewIndex(), -1);
  EXPECT_EQ(box.Text(), "");
}

TEST_F(UiChoice, AddsAtTheEndOrInFront) {
  box.AddItem("b");
  EXPECT_EQ(box.NewIndex(), 0);
  box.AddItem("c");
  EXPECT_EQ(box.NewIndex(), 1);
  box.AddItem("[None]", 0);
  EXPECT_EQ(box.NewIndex(), 0);
  box.AddItem("", 3);
  EXPECT_THAT(Texts(), ElementsAre("[None]", "b", "c", ""));
}

TEST_F(UiChoice, EachRowCarriesItsNumber) {
  box.AddItem("one");
  box.ItemData(0, 1);
  box.AddItem("lowest");
  box.ItemData(1, INT32_MIN);
  EXPECT_EQ(box.ItemData(0), 1);
  EXPECT_EQ(box.ItemData(1), INT32_MIN);
  box.AddItem("zero", 0);
  EXPECT_EQ(box.ItemData(0), 0);
  EXPECT_EQ(box.ItemData(2), INT32_MIN);
}

TEST_F(UiChoice, ARowThatIsNotThereFailsAndNamesTheControl) {
  box.AddItem("one");
  EXPECT_EQ(support::ErrorOf([this] { box.ListIndex(1); }), base::ErrorNumber::kSubscript);
  EXPECT_EQ(support::ErrorTextOf([this] { box.ListIndex(1); }), "There is no row 1 in frmTest.cbTest");
  EXPECT_EQ(support::ErrorTextOf([this] { box.ListIndex(-2); }), "There is no row -2 in frmTest.cbTest");
  EXPECT_EQ(support::ErrorTextOf([this] { box.ItemData(-1); }), "There is no row -1 in frmTest.cbTest");
  EXPECT_EQ(support::ErrorTextOf([this] { box.ItemData(1, 5); }), "There is no row 1 in frmTest.cbTest");
  EXPECT_EQ(support::ErrorTextOf([this] { box.List(9); }), "There is no row 9 in frmTest.cbTest");
  EXPECT_EQ(support::ErrorTextOf([this] { box.AddItem("x", 2); }), "There is no row 2 in frmTest.cbTest");
  EXPECT_EQ(support::ErrorTextOf([this] { box.AddItem("x", -1); }), "There is no row -1 in frmTest.cbTest");
  EXPECT_EQ(box.ListIndex(), -1);
  EXPECT_THAT(clicks, IsEmpty());
  EXPECT_THAT(Texts(), ElementsAre("one"));
}

TEST_F(UiChoice, IsClickedWhenCodeChoosesAnotherRow) {
  box.AddItem("one");
  box.AddItem("two");
  EXPECT_THAT(clicks, IsEmpty());
  box.ListIndex(1);
  box.ListIndex(1);
  box.ListIndex(0);
  box.ListIndex(-1);
  box.ListIndex(-1);
  EXPECT_THAT(clicks, ElementsAre(1, 0, -1));
  EXPECT_EQ(box.Text(), "");
}

TEST_F(UiChoice, IsClickedWhenTheUserChoosesARowTheSameOneAgainIncluded) {
  box.AddItem("one");
  box.AddItem("two");
  box.UserSelect(1);
  box.UserSelect(1);
  EXPECT_THAT(clicks, ElementsAre(1, 1));
  EXPECT_EQ(box.Text(), "two");
}

TEST_F(UiChoice, AReportOfARowThatHasGoneIsIgnored) {
  box.AddItem("one");
  box.UserSelect(1);
  box.UserSelect(-1);
  EXPECT_EQ(box.ListIndex(), -1);
  EXPECT_THAT(clicks, IsEmpty());
}

TEST_F(UiChoice, TheChoiceStaysWithItsRowWhenOthersComeInFront) {
  box.AddItem("b");
  box.AddItem("c");
  box.ListIndex(0);
  clicks.clear();
  box.AddItem("a", 0);
  EXPECT_EQ(box.ListIndex(), 1);
  EXPECT_EQ(box.Text(), "b");
  box.AddItem("d");
  EXPECT_EQ(box.Text(), "b");
  EXPECT_THAT(clicks, IsEmpty());
}

TEST_F(UiChoice, ClearingForgetsTheChoiceWithoutAClick) {
  box.AddItem("one");
  box.ListIndex(0);
  clicks.clear();
  box.Clear();
  EXPECT_EQ(box.ListCount(), 0);
  EXPECT_EQ(box.ListIndex(), -1);
  EXPECT_EQ(box.NewIndex(), -1);
  EXPECT_THAT(clicks, IsEmpty());
  box.AddItem("again");
  box.ListIndex(0);
  EXPECT_THAT(clicks, ElementsAre(0));
}

TEST_F(UiChoice, TheListMayBeClearedInItsOwnClick) {
  box.AddItem("one");
  box.Click.Connect([this] { box.Clear(); });
  box.UserSelect(0);
  EXPECT_EQ(box.Text(), "");
}

TEST_F(UiChoice, AFailingClickOfTheUserIsToldAndThatOfCodeGoesToTheCode) {
  box.AddItem("one");
  box.AddItem("two");
  box.Click.Connect([] { throw base::Error(5, "No"); });
  box.UserSelect(0);
  EXPECT_THAT(Messages(), ElementsAre("No (5)"));
  EXPECT_EQ(support::ErrorOf([this] { box.ListIndex(1); }), 5);
  EXPECT_EQ(toolkit.messages.size(), 1u);
}

TEST_F(UiChoice, AListBoxTellsADoubleClick) {
  ui::ListBox list(&window, "lslTest");
  int doubles = 0;
  list.DblClick.Connect([&] { ++doubles; });
  list.UserDblClick();
  EXPECT_EQ(doubles, 1);
  EXPECT_EQ(list.GetKind(), ui::Kind::kListBox);
  EXPECT_EQ(box.GetKind(), ui::Kind::kComboBox);
}

}  // namespace
