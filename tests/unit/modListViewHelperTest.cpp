#include "editing/modListViewHelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/RecordingToolkit.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ModListViewHelper : public support::InterfaceTest {
 protected:
  ModListViewHelper() : window("frmTest", "Test", {}, 100, 100), lv(&window, "lvTest") { window.Load(); }

  ui::Form window;
  ui::ListView lv;
};

TEST_F(ModListViewHelper, AddsColumnsBehindTheOthersWithTheirWidth) {
  modListViewHelper::AddListViewColumn(lv, "time", "Time", false, 1000);
  modListViewHelper::AddListViewColumn(lv, "", "Type", false, 0);
  ASSERT_EQ(lv.Columns().size(), 2u);
  EXPECT_EQ(lv.Columns()[0].key, "time");
  EXPECT_EQ(lv.Columns()[0].text, "Time");
  EXPECT_EQ(lv.Columns()[0].width, 1000);
  EXPECT_EQ(lv.Columns()[1].width, 0);
}

TEST_F(ModListViewHelper, ANegativeWidthLeavesTheDefault) {
  modListViewHelper::AddListViewColumn(lv, "", "Time", false, -1);
  EXPECT_EQ(lv.Columns()[0].width, ui::ListView::kDefaultColumnWidth);
}

TEST_F(ModListViewHelper, RemovesAllColumnsFirstWhenItIsAskedTo) {
  modListViewHelper::AddListViewColumn(lv, "", "Time", false, 1000);
  modListViewHelper::AddListViewColumn(lv, "", "Type", false, 500);
  modListViewHelper::AddListViewColumn(lv, "", "Name", true, 700);
  ASSERT_EQ(lv.Columns().size(), 1u);
  EXPECT_EQ(lv.Columns()[0].text, "Name");
}

TEST_F(ModListViewHelper, FitsOneColumnCountedFromZero) {
  modListViewHelper::AddListViewColumn(lv, "", "Time", false, 1000);
  modListViewHelper::AddListViewColumn(lv, "", "Type", false, 500);
  EXPECT_TRUE(modListViewHelper::AutoSizeListViewColumn(lv, 1, true));
  EXPECT_TRUE(modListViewHelper::AutoSizeListViewColumn(lv, 0, false));
  EXPECT_FALSE(modListViewHelper::AutoSizeListViewColumn(lv, 2, true));
  EXPECT_FALSE(modListViewHelper::AutoSizeListViewColumn(lv, -1, true));
  EXPECT_THAT(toolkit.TakeRows(lv), ElementsAre("fit 1 header", "fit 0"));
}

TEST_F(ModListViewHelper, TellsWhenTheListDidNotFitTheColumn) {
  modListViewHelper::AddListViewColumn(lv, "", "Time", false, 1000);
  toolkit.fits = false;
  EXPECT_FALSE(modListViewHelper::AutoSizeListViewColumn(lv, 0, true));
}

TEST_F(ModListViewHelper, FitsEveryColumn) {
  modListViewHelper::AutoSizeListViewColumns(lv, true);
  EXPECT_THAT(toolkit.TakeRows(lv), IsEmpty());
  for (const char* text : {"Time", "Type", "Misc."}) {
    modListViewHelper::AddListViewColumn(lv, "", text, false, -1);
  }
  modListViewHelper::AutoSizeListViewColumns(lv, false);
  EXPECT_THAT(toolkit.TakeRows(lv), ElementsAre("fit 0", "fit 1", "fit 2"));
}

}  // namespace
