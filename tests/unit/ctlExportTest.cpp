#include "editing/ctlExport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FindControl.h"
#include "support/RecordingToolkit.h"
#include "support/Shell.h"
#include "support/WithoutRights.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class ctlExportTest : public testing::Test, protected support::Shell {
 protected:
  void Open(const std::string& node, const std::vector<std::string>& names) {
    SelectRouter();
    for (std::size_t i = 0; i < names.size(); ++i) {
      StoreProfile(static_cast<int>(i) + 1, names[i], i == 0);
    }
    Store("LastMenuLocation", node);
    Start();
    main->Show();
    Page().MapProfileChange.Connect([this] { ++changes; });
    world.toolkit.answerFileDialog = [this](ui::FileDialog& dialog) {
      asked = dialog;
      dialog.fileName = chosen;
      return !chosen.empty();
    };
  }
  void OpenExport(const std::vector<std::string>& names = {"B", "A", "C"}) {
    Open("PortForwardingExport", names);
  }
  void OpenImport() { Open("PortForwardingImport", {"Game"}); }

  ctlExport& Page() { return support::FindControl<ctlExport>(*main, "ctlExport"); }
  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(Page(), name);
  }
  ui::ListView& Rows() { return Get<ui::ListView>("lvProfiles"); }
  ctlFileBrowseButton& Execute() { return Get<ctlFileBrowseButton>("cmdExecute"); }
  void Press() { Get<ui::Button>("cmdBrowse").UserClick(); }
  /// The controls that the user sees.
  std::vector<std::string> Seen() {
    std::vector<std::string> names;
    for (ui::Control* control : Page().Children()) {
      if (control->IsSeen()) names.push_back(control->Name());
    }
    return names;
  }
  std::vector<std::string> Messages() {
    std::vector<std::string> texts;
    for (const ui::Message& message : world.toolkit.messages) texts.push_back(message.text);
    return texts;
  }
  static std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& profile : g_Registry->ccMapProfiles()) names.push_back(profile->sName);
    return names;
  }
  void Select(const std::string& node) {
    support::FindControl<ui::TreeView>(*main, "tvCategories").UserSelect(node);
  }

  /// What the user chooses in the dialog; empty for Cancel.
  std::string chosen = world.folder.PathOf("out.prf");
  ui::FileDialog asked;
  int changes = 0;
};

TEST_F(ctlExportTest, ExportShowsTheProfilesByNameWithoutTicks) {
  OpenExport();
  EXPECT_THAT(Seen(), UnorderedElementsAre("lblTitle", "cmdExecute", "lvProfiles", "lblHelp"));
  EXPECT_EQ(Get<ui::Label>("lblTitle").Caption(), "Export Profile Data");
  EXPECT_EQ(Get<ui::Label>("lblHelp").Caption(), "Select profiles then press 'Export'.");
  EXPECT_EQ(Execute().Caption(), "&Export...");
  EXPECT_EQ(Execute().DialogTitle(), "Select Export Output File");
  EXPECT_EQ(Execute().BrowseType(), 1);
  EXPECT_EQ(Page().TransferType(), 0);
  EXPECT_EQ(Rows().Text(0), "A");
  EXPECT_EQ(Rows().Text(2), "C");
  EXPECT_FALSE(Rows().Checked(0));
  EXPECT_EQ(Rows().HelpContextID(), 7000);
  EXPECT_EQ(Execute().HelpContextID(), 7000);
  EXPECT_FALSE(Execute().Enabled());
}

TEST_F(ctlExportTest, AnActiveProfileShowsItsPlainNameHere) {
  OpenExport({"Active"});
  EXPECT_EQ(Rows().Text(0), "Active");
}

TEST_F(ctlExportTest, ImportHidesTheListAndIsReadyFromTheStart) {
  OpenImport();
  EXPECT_THAT(Seen(), UnorderedElementsAre("lblTitle", "cmdExecute", "lblHelp"));
  EXPECT_EQ(Get<ui::Label>("lblTitle").Caption(), "Import Profile Data");
  EXPECT_EQ(Get<ui::Label>("lblHelp").Caption(), "To begin the import select 'Import'.");
  EXPECT_EQ(Execute().Caption(), "&Import...");
  EXPECT_EQ(Execute().DialogTitle(), "Select Import Source File");
  EXPECT_EQ(Execute().BrowseType(), 0);
  EXPECT_EQ(Page().TransferType(), 1);
  EXPECT_TRUE(Execute().Enabled());
  EXPECT_EQ(Rows().HelpContextID(), 8000);
  EXPECT_EQ(Execute().HelpContextID(), 8000);
}

TEST_F(ctlExportTest, WithoutProfilesAnExportShowsOnlyTheTitleAndTheError) {
  OpenExport({});
  EXPECT_THAT(Seen(), UnorderedElementsAre("lblTitle", "lblError"));
  EXPECT_EQ(Get<ui::Label>("lblTitle").Caption(), "Export Profile Data");
  EXPECT_EQ(Get<ui::Label>("lblError").Caption(), "No profiles are available for exporting.");
  EXPECT_EQ(Execute().Caption(), "&Browse...");
  EXPECT_EQ(Get<ui::Label>("lblHelp").Caption(), "");
  // The kind is read from the button, which was left as it was.
  EXPECT_EQ(Page().TransferType(), 1);
}

TEST_F(ctlExportTest, WithoutProfilesAnImportIsReadyAllTheSame) {
  Open("PortForwardingImport", {});
  EXPECT_THAT(Seen(), UnorderedElementsAre("lblTitle", "cmdExecute", "lblHelp"));
  EXPECT_TRUE(Execute().Enabled());
}

TEST_F(ctlExportTest, TheErrorGoesWhenThereAreProfilesAndTheExportIsShownAgain) {
  OpenExport({});
  const auto profile = std::make_shared<CMapProfile>();
  profile->sName = "Game";
  g_Registry->AddMapProfile(profile, nullptr);
  Select("PortForwardingExport");
  EXPECT_THAT(Seen(), UnorderedElementsAre("lblTitle", "cmdExecute", "lvProfiles", "lblHelp"));
  EXPECT_EQ(Rows().RowCount(), 1u);
}

TEST_F(ctlExportTest, OnePageServesBothWaysInTurn) {
  OpenExport();
  Select("PortForwardingImport");
  EXPECT_EQ(Execute().Caption(), "&Import...");
  EXPECT_FALSE(Rows().IsSeen());
  Select("PortForwardingExport");
  EXPECT_EQ(Execute().Caption(), "&Export...");
  EXPECT_TRUE(Rows().IsSeen());
  EXPECT_FALSE(Execute().Enabled());
}

TEST_F(ctlExportTest, ATickEnablesTheButtonAndClearingTheLastDisablesIt) {
  OpenExport();
  Rows().UserCheck(0, true);
  EXPECT_TRUE(Execute().Enabled());
  Rows().UserCheck(2, true);
  Rows().UserCheck(0, false);
  EXPECT_TRUE(Execute().Enabled());
  Rows().UserCheck(2, false);
  EXPECT_FALSE(Execute().Enabled());
}

TEST_F(ctlExportTest, FillingTheListClearsTheTicks) {
  OpenExport();
  Rows().UserCheck(0, true);
  Page().Populate();
  EXPECT_FALSE(Rows().Checked(0));
  EXPECT_FALSE(Execute().Enabled());
}

TEST_F(ctlExportTest, TheTickedProfilesAreWrittenInTheOrderOfTheirNames) {
  OpenExport();
  Rows().UserCheck(2, true);
  Rows().UserCheck(0, true);
  Press();
  EXPECT_TRUE(asked.save);
  EXPECT_EQ(asked.title, "Select Export Output File");
  EXPECT_EQ(asked.filter, "All Files (*.*)|*.*|Profile (*.prf)|*.prf");
  EXPECT_EQ(asked.filterIndex, 2);
  EXPECT_EQ(asked.defaultExtension, "") << "a name without an extension stays so";
  EXPECT_THAT(Messages(), ElementsAre("Export Complete Successfully"));
  const std::string file = world.folder.Read("out.prf");
  EXPECT_THAT(file, HasSubstr("\"A\""));
  EXPECT_THAT(file, Not(HasSubstr("\"B\"")));
  EXPECT_LT(file.find("\"A\""), file.find("\"C\""));
  EXPECT_EQ(changes, 0);
}

TEST_F(ctlExportTest, TheSettingForExportsHasNoEffectHere) {
  Store("ExportProfiles", "False");
  OpenExport();
  Rows().UserCheck(0, true);
  Press();
  EXPECT_TRUE(world.folder.Contains("out.prf"));
}

TEST_F(ctlExportTest, CancellingTheDialogTransfersNothing) {
  OpenExport();
  Rows().UserCheck(0, true);
  chosen.clear();
  Press();
  EXPECT_THAT(Messages(), IsEmpty());
  EXPECT_FALSE(world.folder.Contains("out.prf"));
}

TEST_F(ctlExportTest, WhenNoRowIsTickedAtTheEndOfTheDialogTheExportIsGivenUp) {
  OpenExport();
  Rows().UserCheck(0, true);
  world.toolkit.answerFileDialog = [this](ui::FileDialog& dialog) {
    Rows().UserCheck(0, false);
    dialog.fileName = chosen;
    return true;
  };
  Press();
  ASSERT_THAT(world.toolkit.messages, SizeIs(1));
  EXPECT_EQ(world.toolkit.messages[0].text, "No items selected. Processes aborted");
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kWarning);
  EXPECT_EQ(world.toolkit.messages[0].title, "Harbourline");
  EXPECT_FALSE(world.folder.Contains("out.prf"));
}

TEST_F(ctlExportTest, AFileThatCannotBeWrittenIsTold) {
  OpenExport();
  Rows().UserCheck(0, true);
  world.folder.MakeFolder("out.prf");
  Press();
  ASSERT_THAT(world.toolkit.messages, SizeIs(1));
  EXPECT_EQ(world.toolkit.messages[0].text, "Unable to open file " + chosen);
  EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kWarning);
}

#ifdef __linux__
TEST_F(ctlExportTest, AFileThatMayOnlyBeReadIsToldAndStaysAsItIs) {
  OpenExport();
  Rows().UserCheck(0, true);
  world.folder.Write("out.prf", "precious");
  {
    const support::WithoutRights readOnly(chosen, support::WithoutRights::To::kWrite);
    Press();
  }
  EXPECT_THAT(Messages(), ElementsAre("Unable to open file " + chosen));
  EXPECT_EQ(world.folder.Read("out.prf"), "precious");
}
#endif

TEST_F(ctlExportTest, AnImportAddsTheProfilesOfTheFileAndTellsTheHost) {
  OpenExport({"Game"});
  Rows().UserCheck(0, true);
  Press();
  world.toolkit.messages.clear();
  Select("PortForwardingImport");
  Press();
  EXPECT_FALSE(asked.save);
  EXPECT_EQ(asked.title, "Select Import Source File");
  EXPECT_THAT(Messages(), ElementsAre("Import Complete Successfully"));
  EXPECT_THAT(Names(), ElementsAre("Game", "Game(1)"));
  EXPECT_EQ(changes, 1);
  Select("PortForwardingExport");
  EXPECT_EQ(Rows().RowCount(), 2u);
  EXPECT_EQ(Rows().Text(1), "Game(1)");
}

TEST_F(ctlExportTest, TheImportBeginsAmongTheReadyMadeProfilesBesideTheProgram) {
  OpenImport();
  world.folder.Write("out.prf", "");
  Press();
  EXPECT_EQ(asked.folder, world.folder.PathOf("Profiles"));
  Press();
  EXPECT_EQ(asked.folder, "") << "a file was chosen before";
  EXPECT_EQ(asked.fileName, chosen);
}

TEST_F(ctlExportTest, TheExportBeginsInTheCurrentFolder) {
  OpenImport();
  Select("PortForwardingExport");
  Rows().UserCheck(0, true);
  Press();
  EXPECT_EQ(asked.folder, "");
}

TEST_F(ctlExportTest, AFileThatIsDeletedBeforeItIsReadIsToldAndNoProfileComesIn) {
  OpenImport();
  world.folder.Write("out.prf", "x");
  world.toolkit.answerFileDialog = [this](ui::FileDialog& dialog) {
    dialog.fileName = chosen;
    world.folder.Remove("out.prf");
    return true;
  };
  Press();
  EXPECT_THAT(Messages(), ElementsAre("Unable to open file " + chosen));
  EXPECT_THAT(Names(), ElementsAre("Game"));
}

TEST_F(ctlExportTest, TheListShowsItsSelectedRowWhenItGetsTheFocus) {
  support::RecordingToolkit recording;
  OpenExport();
  Rows().UserSelect(1, true);
  recording.TakeRows(Rows());
  Rows().UserFocus(true);
  EXPECT_THAT(recording.TakeRows(Rows()), ElementsAre("see 1"));
  Rows().UserFocus(false);
  Rows().UserSelect(1, false);
  Rows().UserFocus(true);
  EXPECT_THAT(recording.TakeRows(Rows()), IsEmpty());
  End();
}

TEST_F(ctlExportTest, HasItsColours) {
  OpenExport();
  EXPECT_EQ(Get<ui::Label>("lblTitle").ForeColor(), ui::Rgb(51, 153, 102));
  EXPECT_EQ(Get<ui::Label>("lblHelp").ForeColor(), ui::Rgb(0, 128, 128));
  EXPECT_EQ(Get<ui::Label>("lblError").ForeColor(), ui::Rgb(128, 0, 0));
  EXPECT_EQ(Rows().ForeColor(), ui::Rgb(0, 0, 128));
  EXPECT_EQ(Rows().BackColor(), ui::Rgb(243, 225, 190));
  for (const char* name : {"lblTitle", "lblHelp", "lblError"}) {
    EXPECT_EQ(Get<ui::Control>(name).BackColor(), ui::Rgb(253, 235, 200)) << name;
  }
  EXPECT_TRUE(Rows().GetStyle().checkBoxes);
}

TEST_F(ctlExportTest, ResizingKeepsWhatShows) {
  OpenExport();
  const auto before = Seen();
  Page().Move(0, 0, 0, 0);
  EXPECT_EQ(Seen(), before);
  Page().Move(0, 0, 6180, 5695);
  EXPECT_EQ(Get<ui::Control>("lblTitle").Top(), 100);
  EXPECT_EQ(Rows().Top(), Get<ui::Control>("lblTitle").Bottom() + 100);
  EXPECT_EQ(Execute().Top(), Rows().Bottom() + 100);
  EXPECT_EQ(Get<ui::Control>("lblHelp").Top(), Execute().Bottom() + 100);
  EXPECT_EQ(Get<ui::Control>("lblHelp").Bottom(), 5695 - 100);
  EXPECT_EQ(Get<ui::Button>("cmdBrowse").Width(), Execute().Width());
}

}  // namespace
