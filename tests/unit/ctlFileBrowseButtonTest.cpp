#include "ui/ctlFileBrowseButton.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/Error.h"
#include "support/FindControl.h"
#include "support/World.h"
#include "ui/Form.h"

namespace {

using testing::IsEmpty;

class ctlFileBrowseButtonTest : public testing::Test {
 protected:
  ctlFileBrowseButtonTest() {
    button.BrowseComplete.Connect([this] { ++completed; });
    world.toolkit.answerFileDialog = [this](ui::FileDialog& dialog) {
      asked = dialog;
      if (answer.empty()) return false;
      dialog.fileName = answer;
      return true;
    };
  }
  void Press() { support::FindControl<ui::Button>(button, "cmdBrowse").UserClick(); }

  support::World world;
  ui::Form window{"frmTest", "Test", {}, 5000, 5000};
  ctlFileBrowseButton button{&window, "cmdExecute"};
  /// What the user chooses; empty for Cancel.
  std::string answer = "C:\\chosen.prf";
  std::optional<ui::FileDialog> asked;
  int completed = 0;
};

TEST_F(ctlFileBrowseButtonTest, ANewOneAsksForAnyFileInTheCurrentFolder) {
  EXPECT_EQ(button.Caption(), "cmdExecute");
  EXPECT_EQ(button.FullPathName(), "C:\\Users\\Somebody\\File.txt");
  EXPECT_EQ(button.Filter(), "All Files (*.*)|*.*");
  EXPECT_EQ(button.FilterIndex(), 1);
  EXPECT_EQ(button.DialogTitle(), "Dialog Title");
  EXPECT_EQ(button.DefaultExt(), "txt");
  EXPECT_EQ(button.BrowseType(), 0);
  EXPECT_FALSE(button.HideReadOnly());
  EXPECT_FALSE(button.HideCancelButton());
  EXPECT_TRUE(button.Enabled());
  EXPECT_EQ(button.Font(), window.Font());
}

TEST_F(ctlFileBrowseButtonTest, ANewOneTakesTheFontOfWhatItStandsOn) {
  window.Font(ui::TitleFont());
  const ctlFileBrowseButton other(&window, "cmdOther");
  EXPECT_EQ(other.Font(), ui::TitleFont());
}

TEST_F(ctlFileBrowseButtonTest, TheFolderOfADriveIsJoinedByOneBackslash) {
  world.process.currentFolder = "C:\\";
  const ctlFileBrowseButton other(&window, "cmdOther");
  EXPECT_EQ(other.FullPathName(), "C:\\File.txt");
}

TEST_F(ctlFileBrowseButtonTest, AFileToOpenMustExistAndTheReadOnlyBoxIsHidden) {
  button.Filter("Profile (*.prf)|*.prf");
  button.FilterIndex(1);
  button.DialogTitle("Select");
  button.DefaultExt("prf");
  Press();
  ASSERT_TRUE(asked);
  EXPECT_FALSE(asked->save);
  EXPECT_EQ(asked->flags, 0x1000u | 0x8000u | 4u);
  EXPECT_EQ(asked->fileName, "C:\\Users\\Somebody\\File.txt");
  EXPECT_EQ(asked->filter, "Profile (*.prf)|*.prf");
  EXPECT_EQ(asked->filterIndex, 1);
  EXPECT_EQ(asked->title, "Select");
  EXPECT_EQ(asked->defaultExtension, "prf");
  EXPECT_EQ(completed, 1);
  EXPECT_EQ(button.FullPathName(), "C:\\chosen.prf");
}

TEST_F(ctlFileBrowseButtonTest, HideReadOnlyShowsTheBoxOfTheDialogThatOpensAFile) {
  button.HideReadOnly(true);
  Press();
  EXPECT_EQ(asked->flags, 0x1000u | 0x8000u);
}

TEST_F(ctlFileBrowseButtonTest, AFileToSaveIsAskedAboutBeforeItIsOverwrittenWhateverHideReadOnlySays) {
  button.BrowseType(1);
  for (const bool hide : {false, true}) {
    button.HideReadOnly(hide);
    Press();
    EXPECT_TRUE(asked->save);
    EXPECT_EQ(asked->flags, 34822u);
  }
  EXPECT_EQ(completed, 2);
}

TEST_F(ctlFileBrowseButtonTest, AnyOtherBrowseTypeIsCompleteAtOnceWithoutADialog) {
  for (const std::int32_t type : {2, -1}) {
    completed = 0;
    button.BrowseType(type);
    Press();
    EXPECT_FALSE(asked);
    EXPECT_EQ(completed, 1);
  }
}

TEST_F(ctlFileBrowseButtonTest, CancelCompletesNothingAndKeepsTheName) {
  answer.clear();
  for (const std::int32_t type : {0, 1}) {
    button.BrowseType(type);
    Press();
    EXPECT_TRUE(asked);
  }
  EXPECT_EQ(completed, 0);
  EXPECT_EQ(button.FullPathName(), "C:\\Users\\Somebody\\File.txt");
}

TEST_F(ctlFileBrowseButtonTest, WithHideCancelButtonACancelCountsAsComplete) {
  answer.clear();
  button.HideCancelButton(true);
  EXPECT_TRUE(button.HideCancelButton());
  Press();
  EXPECT_EQ(completed, 1);
  EXPECT_EQ(button.FullPathName(), "C:\\Users\\Somebody\\File.txt");
}

TEST_F(ctlFileBrowseButtonTest, ADialogThatFailsIsLikeACancel) {
  world.toolkit.answerFileDialog = [](ui::FileDialog&) -> bool { throw base::Error(7, "no dialog"); };
  button.HideCancelButton(true);
  Press();
  EXPECT_EQ(completed, 0);
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ctlFileBrowseButtonTest, TheNextDialogStartsFromTheLastChoice) {
  Press();
  Press();
  EXPECT_EQ(asked->fileName, "C:\\chosen.prf");
}

TEST_F(ctlFileBrowseButtonTest, AFileToOpenIsLookedForInTheInitialFolderUntilOneWasChosen) {
  button.InitialFolder("C:\\Ready");
  answer.clear();
  Press();
  EXPECT_EQ(asked->folder, "C:\\Ready");
  EXPECT_EQ(asked->fileName, "C:\\Users\\Somebody\\File.txt");
  answer = "C:\\chosen.prf";
  Press();
  EXPECT_EQ(asked->folder, "C:\\Ready") << "a cancelled dialog is no choice";
  Press();
  EXPECT_EQ(asked->folder, "");
  EXPECT_EQ(asked->fileName, "C:\\chosen.prf");
}

TEST_F(ctlFileBrowseButtonTest, AFileToSaveIsNeverPutIntoTheInitialFolder) {
  button.InitialFolder("C:\\Ready");
  button.BrowseType(ctlFileBrowseButton::kSave);
  Press();
  EXPECT_EQ(asked->folder, "");
  button.BrowseType(ctlFileBrowseButton::kOpen);
  Press();
  EXPECT_EQ(asked->folder, "") << "a file was chosen before";
}

TEST_F(ctlFileBrowseButtonTest, TheAccessKeyIsTheMarkItself) {
  EXPECT_EQ(button.AccessKeys(), "");
  button.Caption("&Export...");
  EXPECT_EQ(button.Caption(), "&Export...");
  EXPECT_EQ(button.AccessKeys(), "&");
  button.Caption("Plain");
  EXPECT_EQ(button.Caption(), "Plain");
  EXPECT_EQ(button.AccessKeys(), "&");
}

TEST_F(ctlFileBrowseButtonTest, ADisabledOneCannotBePressed) {
  button.Enabled(false);
  EXPECT_FALSE(button.Enabled());
  Press();
  EXPECT_FALSE(asked);
  EXPECT_EQ(completed, 0);
}

TEST_F(ctlFileBrowseButtonTest, TheButtonTakesTheWholeControlAndItsFont) {
  button.Move(30, 40, 1800, 420);
  const auto& inner = support::FindControl<ui::Button>(button, "cmdBrowse");
  EXPECT_EQ(inner.GetBounds(), (ui::Bounds{0, 0, 1800, 420}));
  button.Font(ui::TitleFont());
  EXPECT_EQ(inner.Font(), ui::TitleFont());
}

TEST_F(ctlFileBrowseButtonTest, ANewOneIsStoredByElevenKeysInTheirOrder) {
  ui::PropertyBag bag;
  button.WriteProperties(bag);
  EXPECT_EQ(bag.Properties(),
            (std::vector<ui::PropertyBag::Property>{{"Caption", "cmdExecute"},
                                                    {"Filter", "All Files (*.*)|*.*"},
                                                    {"FilterIndex", std::int16_t{1}},
                                                    {"Font", ui::BodyFont()},
                                                    {"FullPathName", "C:\\Users\\Somebody\\File.txt"},
                                                    {"BrowseType", std::int32_t{0}},
                                                    {"HideReadOnly", false},
                                                    {"DialogTitle", "Dialog Title"},
                                                    {"HideCancelButton", true},
                                                    {"DefaultExt", "txt"},
                                                    {"Enabled", true}}));
}

TEST_F(ctlFileBrowseButtonTest, WhatIsStoredComesBack) {
  button.Caption("&Open...");
  button.Filter("Text|*.txt");
  button.FilterIndex(3);
  button.Font(ui::TitleFont());
  button.FullPathName("D:\\a.prf");
  button.BrowseType(1);
  button.HideReadOnly(true);
  button.DialogTitle("Select");
  button.HideCancelButton(true);
  button.DefaultExt("prf");
  button.Enabled(false);
  ui::PropertyBag bag;
  button.WriteProperties(bag);
  EXPECT_EQ(bag.Read("HideCancelButton", true), false) << "what is stored is whether a cancel is an error";
  ctlFileBrowseButton other(&window, "cmdOther");
  other.ReadProperties(bag);
  ui::PropertyBag again;
  other.WriteProperties(again);
  EXPECT_EQ(again.Properties(), bag.Properties());
  EXPECT_TRUE(other.HideCancelButton());
  EXPECT_EQ(other.AccessKeys(), "&");
}

TEST_F(ctlFileBrowseButtonTest, AMissingPropertyReadsAsThatOfANewOne) {
  button.Filter("Text|*.txt");
  button.HideCancelButton(true);
  button.Enabled(false);
  button.ReadProperties({{"FilterIndex", std::int16_t{2}}});
  EXPECT_EQ(button.Caption(), "cmdExecute");
  EXPECT_EQ(button.Filter(), "All Files (*.*)|*.*");
  EXPECT_EQ(button.FilterIndex(), 2);
  EXPECT_FALSE(button.HideCancelButton());
  EXPECT_TRUE(button.Enabled());
}

TEST_F(ctlFileBrowseButtonTest, APropertyOfAnotherTypeIsAFailure) {
  EXPECT_THROW(button.ReadProperties({{"FilterIndex", "2"}}), base::Error);
}

TEST_F(ctlFileBrowseButtonTest, EachPropertyThatIsSetMarksItsKeyButForTheTwoThatDoNot) {
  std::vector<std::string> changed;
  button.PropertyChanged.Connect([&](const std::string& key) { changed.push_back(key); });
  button.DefaultExt("prf");
  button.HideCancelButton(true);
  button.DialogTitle("Select");
  button.HideReadOnly(true);
  button.BrowseType(1);
  button.Caption("&Open...");
  button.Font(ui::TitleFont());
  button.Filter("Text|*.txt");
  button.FilterIndex(3);
  button.FullPathName("D:\\a.prf");
  button.Enabled(false);
  EXPECT_THAT(changed,
              testing::ElementsAre("txt", "HideCancelButton", "DialogTitle", "HideReadOnly", "BrowseType",
                                   "Caption", "Font", "Filter", "FullPathName", "Enabled"));
  changed.clear();
  button.ReadProperties({});
  EXPECT_THAT(changed, IsEmpty());
}

}  // namespace
