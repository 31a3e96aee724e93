#include "ui/modControlHelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Choice.h"
#include "ui/RichTextBox.h"
#include "ui/TextBox.h"

namespace {

using testing::ElementsAre;

class ModControlHelper : public support::InterfaceTest {
 protected:
  ModControlHelper() : cb(nullptr, "cbTest"), rt(nullptr, "rtTest") {}

  ui::ComboBox cb;
  ui::RichTextBox rt;
};

TEST_F(ModControlHelper, AddComboItemGivesTheRowAndItsNumber) {
  EXPECT_EQ(modControlHelper::AddComboItem(cb, "Activity Lights", 1), 0);
  EXPECT_EQ(modControlHelper::AddComboItem(cb, "Speed Bar", 2), 1);
  EXPECT_EQ(cb.List(1), "Speed Bar");
  EXPECT_EQ(cb.ItemData(0), 1);
  EXPECT_EQ(cb.ItemData(1), 2);
  EXPECT_EQ(cb.ListIndex(), -1);
}

TEST_F(ModControlHelper, GetComboItemDataIsTheChosenRows) {
  modControlHelper::AddComboItem(cb, "one", INT32_MAX);
  modControlHelper::AddComboItem(cb, "two", -5);
  cb.ListIndex(1);
  EXPECT_EQ(modControlHelper::GetComboItemData(cb), -5);
  cb.ListIndex(-1);
  EXPECT_EQ(support::ErrorOf([this] { modControlHelper::GetComboItemData(cb); }),
            base::ErrorNumber::kSubscript);
}

TEST_F(ModControlHelper, SelectComboItemDataChoosesTheFirstRowOfTheNumber) {
  modControlHelper::AddComboItem(cb, "one", 1);
  modControlHelper::AddComboItem(cb, "two", 2);
  modControlHelper::AddComboItem(cb, "also two", 2);
  modControlHelper::SelectComboItemData(cb, 2);
  EXPECT_EQ(cb.ListIndex(), 1);
}

TEST_F(ModControlHelper, SelectComboItemDataWithANumberThatNoRowHoldsLeavesTheChoice) {
  modControlHelper::AddComboItem(cb, "one", 1);
  modControlHelper::AddComboItem(cb, "two", 2);
  cb.ListIndex(1);
  int clicks = 0;
  cb.Click.Connect([&] { ++clicks; });
  modControlHelper::SelectComboItemData(cb, 3);
  EXPECT_EQ(cb.ListIndex(), 1);
  EXPECT_EQ(clicks, 0);
  cb.Clear();
  modControlHelper::SelectComboItemData(cb, 1);
  EXPECT_EQ(cb.ListIndex(), -1);
}

TEST_F(ModControlHelper, SelectAllTextSelectsFromTheBeginToTheEnd) {
  ui::TextBox txt(nullptr, "txtTest");
  txt.Text("8080");
  txt.UserSelection(2, 1);
  modControlHelper::SelectAllText(txt);
  EXPECT_EQ(txt.SelStart(), 0);
  EXPECT_EQ(txt.SelLength(), 4);
  txt.Text("");
  modControlHelper::SelectAllText(txt);
  EXPECT_EQ(txt.SelLength(), 0);
}

TEST_F(ModControlHelper, AddRichTextAppendsAndEachTextKeepsItsColour) {
  modControlHelper::AddRichText(rt, "red", true, ui::Rgb(128, 0, 0));
  rt.SelStart(0);
  modControlHelper::AddRichText(rt, " and black", false, ui::kBlack);
  ASSERT_EQ(rt.Runs().size(), 2u);
  EXPECT_EQ(rt.Runs()[0].text, "red");
  EXPECT_EQ(rt.Runs()[0].color, ui::Rgb(128, 0, 0));
  EXPECT_TRUE(rt.Runs()[0].bold);
  EXPECT_EQ(rt.Runs()[1].text, " and black");
  EXPECT_EQ(rt.Runs()[1].color, ui::kBlack);
  EXPECT_FALSE(rt.Runs()[1].bold);
}

/// Anything with the members that the helpers name; writes down what is asked of it.
struct LooseControl {
  std::vector<std::string> calls;
  std::int32_t numbers[3] = {7, 8, 9};

  void AddItem(const std::string& text) { calls.push_back("AddItem " + text); }
  std::int32_t NewIndex() const { return 2; }
  std::int32_t ItemData(std::int32_t index) const { return numbers[index]; }
  void ItemData(std::int32_t index, std::int32_t data) {
    calls.push_back("ItemData " + std::to_string(index) + " " + std::to_string(data));
  }
  std::int32_t ListCount() const { return 3; }
  std::int32_t ListIndex() const { return 1; }
  void ListIndex(std::int32_t index) { calls.push_back("ListIndex " + std::to_string(index)); }
  std::string Text() const { return "12345"; }
  std::int32_t Length() const { return 5; }
  void SelStart(std::int32_t start) { calls.push_back("SelStart " + std::to_string(start)); }
  void SelLength(std::int32_t length) { calls.push_back("SelLength " + std::to_string(length)); }
  void SelColor(ui::Color color) { calls.push_back("SelColor " + std::to_string(color)); }
  void SelBold(bool bold) { calls.push_back(bold ? "SelBold" : "SelBold off"); }
  void SelText(const std::string& text) { calls.push_back("SelText " + text); }
};

TEST(ModControlHelperOnAnyControl, AsksInItsOrder) {
  LooseControl control;
  EXPECT_EQ(modControlHelper::AddComboItem(control, "text", 4), 2);
  EXPECT_EQ(modControlHelper::GetComboItemData(control), 8);
  modControlHelper::SelectComboItemData(control, 9);
  EXPECT_THAT(control.calls, ElementsAre("AddItem text", "ItemData 2 4", "ListIndex 2"));
  control.calls.clear();
  modControlHelper::SelectAllText(control);
  EXPECT_THAT(control.calls, ElementsAre("SelStart 0", "SelLength 5"));
  control.calls.clear();
  modControlHelper::AddRichText(control, "more", false, 255);
  EXPECT_THAT(control.calls, ElementsAre("SelStart 5", "SelColor 255", "SelBold off", "SelText more"));
}

}  // namespace
