#include "ui/Peer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Button.h"
#include "ui/CheckBox.h"
#include "ui/Choice.h"
#include "ui/Form.h"
#include "ui/Frame.h"
#include "ui/Image.h"
#include "ui/Label.h"
#include "ui/ListView.h"
#include "ui/RichTextBox.h"
#include "ui/TextBox.h"
#include "ui/ToolBar.h"
#include "ui/TreeView.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::Aspect;

/// What the peers of every kind are told when code changes a control, and that they are told nothing when
/// they report what the user did.
class UiPeer : public support::InterfaceTest {
 protected:
  UiPeer()
      : window("frmTest", "Test", {}, 100, 100),
        label(&window, "lblTest"),
        button(&window, "cmdTest"),
        check(&window, "chkTest"),
        text(&window, "txtTest"),
        combo(&window, "cbTest"),
        list(&window, "lvTest", {.checkBoxes = true, .multiSelect = true, .labelEdit = true}),
        tree(&window, "tvTest"),
        rich(&window, "rtTest"),
        image(&window, "imgTest"),
        bar(&window, "tbTest") {
    window.Load();
  }

  /// Setting a property by `set` tells the peer `aspect` once, and setting it to the same again tells
  /// nothing.
  void Tells(ui::Control& control, Aspect aspect, const std::function<void()>& set) {
    toolkit.TakeChanges(control);
    set();
    EXPECT_THAT(toolkit.TakeChanges(control), ElementsAre(aspect)) << control.Name();
    set();
    EXPECT_THAT(toolkit.TakeChanges(control), IsEmpty()) << control.Name() << " has that value already";
  }

  /// Each call tells `aspect` once.
  void TellsEachTime(ui::Control& control, Aspect aspect, const std::function<void()>& act) {
    toolkit.TakeChanges(control);
    act();
    EXPECT_THAT(toolkit.TakeChanges(control), ElementsAre(aspect)) << control.Name();
  }

  void TellsNothing(ui::Control& control, const std::function<void()>& report) {
    toolkit.TakeChanges(control);
    toolkit.TakeRows(control);
    report();
    EXPECT_THAT(toolkit.TakeChanges(control), IsEmpty()) << control.Name();
    EXPECT_THAT(toolkit.TakeRows(control), IsEmpty()) << control.Name();
  }

  ui::Form window;
  ui::Label label;
  ui::Button button;
  ui::CheckBox check;
  ui::TextBox text;
  ui::ComboBox combo;
  ui::ListView list;
  ui::TreeView tree;
  ui::RichTextBox rich;
  ui::Image image;
  ui::ToolBar bar;
};

TEST_F(UiPeer, HearsOfWhatAllControlsHave) {
  Tells(label, Aspect::kBounds, [this] { label.Move(1, 2, 3, 4); });
  Tells(label, Aspect::kVisible, [this] { label.Visible(false); });
  Tells(label, Aspect::kEnabled, [this] { label.Enabled(false); });
  Tells(label, Aspect::kColors, [this] { label.ForeColor(ui::Rgb(0, 128, 128)); });
  Tells(label, Aspect::kColors, [this] { label.BackColor(ui::Rgb(253, 235, 200)); });
  Tells(label, Aspect::kColors, [this] { label.Transparent(true); });
  Tells(label, Aspect::kFont, [this] { label.Font(ui::TitleFont()); });
  Tells(label, Aspect::kText, [this] { label.ToolTipText("tip"); });
}

TEST_F(UiPeer, HearsOfTheOneValueOfEachKind) {
  const ui::PictureRef picture = ui::ResourcePicture("accept");
  Tells(window, Aspect::kText, [this] { window.Caption("Other"); });
  Tells(window, Aspect::kValue, [&] { window.Icon(picture); });
  Tells(label, Aspect::kText, [this] { label.Caption("Other"); });
  Tells(button, Aspect::kText, [this] { button.Caption("&Other"); });
  Tells(button, Aspect::kValue, [&] { button.Picture(picture); });
  Tells(button, Aspect::kValue, [this] { button.Default(true); });
  Tells(button, Aspect::kValue, [this] { button.Cancel(true); });
  Tells(check, Aspect::kText, [this] { check.Caption("&Other"); });
  Tells(check, Aspect::kValue, [this] { check.Checked(true); });
  Tells(text, Aspect::kText, [this] { text.Text("Other"); });
  Tells(text, Aspect::kReadOnly, [this] { text.Locked(true); });
  Tells(image, Aspect::kValue, [&] { image.Picture(picture); });
}

TEST_F(UiPeer, HearsOfRowsNodesAndButtons) {
  TellsEachTime(combo, Aspect::kItems, [this] { combo.AddItem("one"); });
  Tells(combo, Aspect::kSelection, [this] { combo.ListIndex(0); });
  TellsEachTime(combo, Aspect::kItems, [this] { combo.Clear(); });
  TellsEachTime(tree, Aspect::kItems, [this] { tree.AddNode({"a", "A", ""}); });
  Tells(tree, Aspect::kSelection, [this] { tree.SelectedKey("a"); });
  TellsEachTime(tree, Aspect::kItems, [this] { tree.Clear(); });
  TellsEachTime(bar, Aspect::kItems, [this] { bar.AddButton("Add", "Add a Profile", nullptr); });
  Tells(bar, Aspect::kValue, [this] { bar.ButtonEnabled("Add", false); });
}

TEST_F(UiPeer, HearsOfTheSelectionEachTimeSinceTheUserMayHaveMovedItUnseen) {
  text.Text("12345");
  TellsEachTime(text, Aspect::kSelection, [this] { text.SelStart(0); });
  TellsEachTime(text, Aspect::kSelection, [this] { text.SelStart(0); });
  TellsEachTime(text, Aspect::kSelection, [this] { text.SelLength(5); });
  TellsEachTime(text, Aspect::kSelection, [this] { text.SelLength(5); });
}

TEST_F(UiPeer, HearsOnceOfEachRichText) {
  TellsEachTime(rich, Aspect::kText, [this] { rich.Text("plain"); });
  TellsEachTime(rich, Aspect::kText, [this] { rich.SelText("more"); });
  TellsNothing(rich, [this] { rich.SelText(""); });
}

TEST_F(UiPeer, HearsOfTheRowsOfAListOneByOne) {
  TellsEachTime(list, Aspect::kColumns, [this] { list.AddColumn("", "Time"); });
  Tells(list, Aspect::kColumns, [this] { list.ColumnWidth(0, 500); });
  toolkit.TakeChanges(list);
  list.AddRow("a", "A");
  list.AddRow("b", "B");
  EXPECT_THAT(toolkit.TakeRows(list), ElementsAre("added 0 1", "added 1 1"));
  list.AddSubItem(1, "Name", "B");
  list.Text(1, 1, "C");
  list.Text(1, 1, "C");
  list.CellColor(0, 0, ui::Rgb(128, 0, 0));
  list.CellColor(0, 0, ui::Rgb(128, 0, 0));
  list.Checked(0, true);
  list.Checked(0, true);
  EXPECT_THAT(toolkit.TakeRows(list), ElementsAre("changed 1", "changed 1", "changed 0", "changed 0"));
  list.EnsureVisible(1);
  list.StartLabelEdit(0);
  EXPECT_TRUE(list.FitColumn(0, true));
  EXPECT_TRUE(list.FitColumn(0, false));
  EXPECT_THAT(toolkit.TakeRows(list), ElementsAre("see 1", "edit 0", "fit 0 header", "fit 0"));
  EXPECT_THAT(toolkit.TakeChanges(list), IsEmpty());
  Tells(list, Aspect::kSelection, [this] { list.Select(1); });
  TellsEachTime(list, Aspect::kItems, [this] { list.Remove("a"); });
  TellsEachTime(list, Aspect::kItems, [this] { list.RemoveSelected(); });
  TellsNothing(list, [this] { list.RemoveSelected(); });
  TellsEachTime(list, Aspect::kColumns, [this] { list.ClearColumns(); });
}

TEST_F(UiPeer, HearsNoEchoOfTheUser) {
  combo.AddItem("one");
  tree.AddNode({"a", "A", ""});
  bar.AddButton("Add", "Add a Profile", nullptr);
  list.AddColumn("", "Time");
  list.AddRow("a", "A");
  list.AddRow("b", "B");
  TellsNothing(window, [this] { window.UserResize({10, 10, 500, 500}); });
  TellsNothing(window, [this] { window.UserMouseMove(1, 2); });
  TellsNothing(button, [this] { button.UserClick(); });
  TellsNothing(check, [this] { check.UserClick(); });
  TellsNothing(text, [this] { text.UserText("typed"); });
  TellsNothing(text, [this] { text.UserSelection(1, 2); });
  TellsNothing(text, [this] { text.UserFocus(true); });
  TellsNothing(combo, [this] { combo.UserSelect(0); });
  TellsNothing(tree, [this] { tree.UserSelect("a"); });
  TellsNothing(tree, [this] { tree.UserExpand("a", true); });
  TellsNothing(bar, [this] { bar.UserClick("Add"); });
  TellsNothing(image, [this] { image.UserMouseDown(); });
  TellsNothing(list, [this] { list.UserSelect(0, true); });
  TellsNothing(list, [this] { list.UserSelectAll(true); });
  TellsNothing(list, [this] { list.UserCheck(1, true); });
  TellsNothing(list, [this] { list.UserColumnWidth(0, 777); });
  TellsNothing(list, [this] { list.UserColumnClick(1); });
  TellsNothing(list, [this] { list.UserItemClick(); });
  TellsNothing(list, [this] { list.UserDblClick(); });
  TellsNothing(list, [this] { list.UserRightButtonUp(); });
  TellsNothing(list, [this] { list.UserKeyUp(113); });
  TellsNothing(list, [this] { list.UserLabelEditStart(0); });
  EXPECT_TRUE(check.Checked());
  EXPECT_EQ(list.SelectedCount(), 2u);
}

TEST_F(UiPeer, HearsWhatAHandlerOfTheUserChanges) {
  check.Click.Connect([this] {
    if (check.Checked()) check.Checked(false);
  });
  TellsEachTime(check, Aspect::kValue, [this] { check.UserClick(); });
  text.Change.Connect([this] {
    if (text.Text() == "bad") text.Text("good");
  });
  TellsEachTime(text, Aspect::kText, [this] { text.UserText("bad"); });
}

TEST_F(UiPeer, ThePartsOfAListWithoutAPeerAreComplete) {
  window.Unload();
  list.AddColumn("", "Time");
  list.AddRow("a", "A");
  list.EnsureVisible(0);
  list.StartLabelEdit(0);
  EXPECT_TRUE(list.FitColumn(0, true));
  EXPECT_FALSE(list.FitColumn(1, true));
  EXPECT_EQ(list.Text(0), "A");
}

TEST_F(UiPeer, MayRefuseToFitAColumn) {
  list.AddColumn("", "Time");
  toolkit.fits = false;
  EXPECT_FALSE(list.FitColumn(0, false));
}

TEST_F(UiPeer, AListThatForbidsItStartsNoLabelEdit) {
  ui::ListView plain(&window, "lvPlain");
  plain.AttachPeers();
  plain.AddRow("a", "A");
  toolkit.TakeRows(plain);
  plain.StartLabelEdit(0);
  EXPECT_THAT(toolkit.TakeRows(plain), IsEmpty());
}

}  // namespace
