#include "editing/ctlMappingEditor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/Error.h"
#include "model/CMapProfile.h"
#include "support/FindControl.h"
#include "support/World.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr int kRows = 10;
const std::vector<std::string> kBoxes{"txtDescription", "txtBeginRange", "txtEndRange", "txtTargetIP"};

class ctlMappingEditorTest : public testing::Test {
 protected:
  ctlMappingEditorTest() {
    grid.Accept.Connect([this] { ++accepts; });
    grid.Cancel.Connect([this] { ++cancels; });
    window.Show();
    grid.Populate(profile);
  }

  template <typename Kind>
  Kind& Get(const std::string& name) {
    return support::FindControl<Kind>(grid, name);
  }
  ui::TextBox& Box(const std::string& name, int row) {
    return Get<ui::TextBox>(name + "(" + std::to_string(row) + ")");
  }
  ui::CheckBox& Tick(const std::string& name, int row) {
    return Get<ui::CheckBox>(name + "(" + std::to_string(row) + ")");
  }
  ui::Button& Button(const std::string& name) { return Get<ui::Button>(name); }

  void Type(const std::string& name, int row, const std::string& text) {
    Box(name, row).UserFocus(true);
    Box(name, row).UserText(text);
  }
  /// Fills a row as the user does, who leaves the end box by the next tick.
  void FillRow(int row, const std::string& begin, const std::string& end) {
    Type("txtBeginRange", row, begin);
    Type("txtEndRange", row, end);
    Tick("chkTCP", row).UserFocus(true);
    if (!Tick("chkTCP", row).Checked()) Tick("chkTCP", row).UserClick();
  }
  void Add(const std::string& description, std::int32_t begin, std::int32_t end, std::int32_t protocal = 0,
           std::int16_t target = -1) {
    const auto mapping = std::make_shared<CMapping>();
    mapping->sDescription(description);
    mapping->lBeginPort(begin);
    mapping->lEndPort(end);
    mapping->Protocal(protocal);
    mapping->iForwardIPAddress(target);
    profile.AddMapping(mapping);
  }
  /// Accepts the grid and gives each mapping of the profile as "description begin-end type target".
  std::vector<std::string> Accepted() {
    Button("cmdAccept").UserClick();
    grid.Save(profile);
    return Mappings();
  }
  std::vector<std::string> Mappings() const {
    std::vector<std::string> texts;
    for (const auto& mapping : profile.ccMappings()) {
      texts.push_back(mapping->sDescription() + " " + std::to_string(mapping->lBeginPort()) + "-" +
                      std::to_string(mapping->lEndPort()) + " " + std::string(mapping->sType()) + " " +
                      std::to_string(mapping->iForwardIPAddress()));
    }
    return texts;
  }
  std::vector<std::string> RowTexts(int row) {
    std::vector<std::string> texts;
    for (const std::string& name : kBoxes) texts.push_back(Box(name, row).Text());
    texts.push_back(std::string(Tick("chkTCP", row).Checked() ? "TCP" : "") +
                    (Tick("chkUDP", row).Checked() ? "UDP" : ""));
    return texts;
  }
  /// Accepts a grid that it can't read, and gives the message.
  std::string Refusal() {
    Button("cmdAccept").UserClick();
    EXPECT_EQ(accepts, 0);
    EXPECT_THAT(world.toolkit.messages, SizeIs(1));
    if (world.toolkit.messages.empty()) return {};
    EXPECT_EQ(world.toolkit.messages[0].icon, ui::MessageIcon::kWarning);
    EXPECT_EQ(world.toolkit.messages[0].title, "Harbourline");
    return world.toolkit.messages[0].text;
  }

  support::World world;
  ui::Form window{"frmTest", "Test", {}, 12000, 9000};
  ctlMappingEditor grid{&window, "ctlMappingEditor"};
  CMapProfile profile;
  int accepts = 0;
  int cancels = 0;
};

TEST_F(ctlMappingEditorTest, AnEmptyProfileGivesTenEmptyRowsAndADisabledAccept) {
  for (int row = 0; row < kRows; ++row) {
    EXPECT_THAT(RowTexts(row), ElementsAre("", "", "", "", "")) << row;
  }
  EXPECT_EQ(support::TryFindControl(grid, "txtDescription(10)"), nullptr);
  EXPECT_FALSE(Button("cmdAccept").Enabled());
}

TEST_F(ctlMappingEditorTest, EachMappingFillsARowInItsOrder) {
  Add("Web", 80, 81, 0);
  Add("Voice", 27015, 27030, 1, 12);
  Add("Both", -1, 99999, 2, 0);
  grid.Populate(profile);
  EXPECT_THAT(RowTexts(0), ElementsAre("Web", "80", "81", "", "TCP"));
  EXPECT_THAT(RowTexts(1), ElementsAre("Voice", "27015", "27030", "12", "UDP"));
  EXPECT_THAT(RowTexts(2), ElementsAre("Both", "-1", "99999", "0", "TCPUDP"));
  EXPECT_THAT(RowTexts(3), ElementsAre("", "", "", "", ""));
  EXPECT_FALSE(Button("cmdAccept").Enabled());
}

TEST_F(ctlMappingEditorTest, AProfileWithFewerMappingsEmptiesTheRowsThatTheOneBeforeFilled) {
  for (int i = 0; i < kRows; ++i) Add("m", 1, 2, 2, 3);
  grid.Populate(profile);
  EXPECT_THAT(RowTexts(9), ElementsAre("m", "1", "2", "3", "TCPUDP"));
  profile.ClearMappings();
  Add("only", 5, 6, 1);
  grid.Populate(profile);
  EXPECT_THAT(RowTexts(0), ElementsAre("only", "5", "6", "", "UDP"));
  for (int row = 1; row < kRows; ++row) EXPECT_THAT(RowTexts(row), ElementsAre("", "", "", "", ""));
}

TEST_F(ctlMappingEditorTest, Begin100AndEnd50ChangePlacesWhenTheEndBoxIsLeft) {
  FillRow(3, "100", "50");
  EXPECT_EQ(Box("txtBeginRange", 3).Text(), "50");
  EXPECT_EQ(Box("txtEndRange", 3).Text(), "100");
}

TEST_F(ctlMappingEditorTest, EqualPortsStayAsTheyAre) {
  FillRow(0, "100", "100.0");
  EXPECT_EQ(Box("txtBeginRange", 0).Text(), "100");
  EXPECT_EQ(Box("txtEndRange", 0).Text(), "100.0");
}

TEST_F(ctlMappingEditorTest, AnEmptyEndBoxTakesTheBeginPortWhenItIsLeft) {
  FillRow(0, "80", "");
  EXPECT_EQ(Box("txtBeginRange", 0).Text(), "");
  EXPECT_EQ(Box("txtEndRange", 0).Text(), "80");
  EXPECT_THAT(Accepted(), ElementsAre(" 0-80 TCP -1"));
}

TEST_F(ctlMappingEditorTest, PortsChangePlacesAsTheTextsThatTheyAre) {
  FillRow(0, " 9x ", "abc");
  EXPECT_EQ(Box("txtBeginRange", 0).Text(), "abc");
  EXPECT_EQ(Box("txtEndRange", 0).Text(), " 9x ");
}

TEST_F(ctlMappingEditorTest, LeavingTheBeginBoxChecksNothing) {
  Type("txtEndRange", 0, "50");
  Type("txtBeginRange", 0, "100");
  Tick("chkUDP", 0).UserFocus(true);
  Tick("chkUDP", 0).UserClick();
  EXPECT_EQ(Box("txtBeginRange", 0).Text(), "100");
  EXPECT_THAT(Accepted(), ElementsAre(" 100-50 UDP -1"));
}

TEST_F(ctlMappingEditorTest, APortIsTheNumberAtTheLeftOfItsText) {
  FillRow(0, "80x", "80x");
  FillRow(1, "abc", "abc");
  FillRow(2, "", "");
  FillRow(3, "1.5", "2.5");
  EXPECT_THAT(Accepted(), ElementsAre(" 80-80 TCP -1", " 0-0 TCP -1", " 0-0 TCP -1", " 2-2 TCP -1"));
}

TEST_F(ctlMappingEditorTest, NoPortIsTooHighOrTooLowForTheGrid) {
  FillRow(0, "0", "99999");
  FillRow(1, "-2147483648", "2147483647");
  EXPECT_THAT(Accepted(), ElementsAre(" 0-99999 TCP -1", " -2147483648-2147483647 TCP -1"));
}

TEST_F(ctlMappingEditorTest, ARowWithADescriptionAndNoTickGivesNoMapping) {
  Type("txtDescription", 0, "Web");
  Type("txtBeginRange", 0, "80");
  EXPECT_THAT(Accepted(), IsEmpty());
  EXPECT_EQ(accepts, 1);
}

TEST_F(ctlMappingEditorTest, RowsBetweenTheTickedOnesCloseUp) {
  FillRow(0, "1", "2");
  FillRow(5, "3", "4");
  EXPECT_THAT(Accepted(), ElementsAre(" 1-2 TCP -1", " 3-4 TCP -1"));
  grid.Populate(profile);
  EXPECT_THAT(RowTexts(0), ElementsAre("", "1", "2", "", "TCP"));
  EXPECT_THAT(RowTexts(1), ElementsAre("", "3", "4", "", "TCP"));
  EXPECT_THAT(RowTexts(5), ElementsAre("", "", "", "", ""));
}

TEST_F(ctlMappingEditorTest, ClearingBothTicksDeletesTheMapping) {
  Add("Web", 80, 80, 2);
  Add("Mail", 25, 25, 0);
  grid.Populate(profile);
  Tick("chkTCP", 0).UserClick();
  EXPECT_THAT(Accepted(), ElementsAre("Web 80-80 UDP -1", "Mail 25-25 TCP -1"));
  Tick("chkUDP", 0).UserClick();
  EXPECT_THAT(Accepted(), ElementsAre("Mail 25-25 TCP -1"));
}

TEST_F(ctlMappingEditorTest, EveryMappingThatIsSavedHasANewKey) {
  Add("Web", 80, 80);
  const std::string before = (*profile.ccMappings().begin())->sKey();
  grid.Populate(profile);
  Type("txtDescription", 0, "Web");
  grid.Save(profile);
  EXPECT_NE((*profile.ccMappings().begin())->sKey(), before);
}

TEST_F(ctlMappingEditorTest, ATargetIsHiddenAndKeptWhenTheGridIsAcceptedUnchanged) {
  Add("Web", 80, 80, 0, 12);
  grid.Populate(profile);
  EXPECT_FALSE(Box("txtTargetIP", 0).Visible());
  EXPECT_FALSE(Get<ui::Label>("lblIP").Visible());
  EXPECT_TRUE(Button("cmdShowAdvance").Visible());
  grid.Save(profile);
  EXPECT_THAT(Mappings(), ElementsAre("Web 80-80 TCP 12"));
}

TEST_F(ctlMappingEditorTest, ShowAdvanceShowsTheTargetsUntilTheGridIsFilledAgain) {
  Button("cmdShowAdvance").UserClick();
  for (int row = 0; row < kRows; ++row) EXPECT_TRUE(Box("txtTargetIP", row).IsSeen());
  EXPECT_TRUE(Get<ui::Label>("lblIP").IsSeen());
  EXPECT_FALSE(Button("cmdShowAdvance").Visible());
  EXPECT_FALSE(Button("cmdAccept").Enabled());
  grid.Populate(profile);
  for (int row = 0; row < kRows; ++row) EXPECT_FALSE(Box("txtTargetIP", row).Visible());
  EXPECT_TRUE(Button("cmdShowAdvance").IsSeen());
}

TEST_F(ctlMappingEditorTest, AnEmptyTargetIsThisComputer) {
  FillRow(0, "80", "80");
  FillRow(1, "81", "81");
  Button("cmdShowAdvance").UserClick();
  Type("txtTargetIP", 0, "7");
  Type("txtTargetIP", 1, " -1 ");
  EXPECT_THAT(Accepted(), ElementsAre(" 80-80 TCP 7", " 81-81 TCP -1"));
  grid.Populate(profile);
  EXPECT_EQ(Box("txtTargetIP", 0).Text(), "7");
  EXPECT_EQ(Box("txtTargetIP", 1).Text(), "");
}

TEST_F(ctlMappingEditorTest, AnyChangeOfATextOrATickEnablesAcceptUntilTheGridIsFilledAgain) {
  for (const std::string& name : kBoxes) {
    Box(name, 9).UserText("1");
    EXPECT_TRUE(Button("cmdAccept").Enabled()) << name;
    grid.Populate(profile);
    EXPECT_FALSE(Button("cmdAccept").Enabled()) << name;
  }
  for (const char* name : {"chkTCP", "chkUDP"}) {
    Tick(name, 4).UserClick();
    EXPECT_TRUE(Button("cmdAccept").Enabled()) << name;
    grid.Populate(profile);
  }
  Tick("chkTCP", 4).UserClick();
  Button("cmdAccept").UserClick();
  Tick("chkTCP", 4).UserClick();
  EXPECT_TRUE(Button("cmdAccept").Enabled());
}

TEST_F(ctlMappingEditorTest, ABoxThatGetsTheFocusHasAllItsTextSelected) {
  Add("Web", 80, 8080, 0, 12);
  grid.Populate(profile);
  Button("cmdShowAdvance").UserClick();
  for (const std::string& name : kBoxes) {
    ui::TextBox& box = Box(name, 0);
    box.UserFocus(true);
    EXPECT_EQ(box.SelStart(), 0) << name;
    EXPECT_EQ(box.SelLength(), static_cast<std::int32_t>(box.Text().size())) << name;
  }
}

TEST_F(ctlMappingEditorTest, AcceptAndCancelOnlyTellTheHost) {
  FillRow(0, "1", "2");
  Button("cmdCancel").UserClick();
  EXPECT_EQ(cancels, 1);
  EXPECT_EQ(Box("txtBeginRange", 0).Text(), "1");
  Button("cmdAccept").UserClick();
  EXPECT_EQ(accepts, 1);
  EXPECT_THAT(Mappings(), IsEmpty());
}

TEST_F(ctlMappingEditorTest, ATargetThatIsADottedAddressIsToldAndNothingIsAccepted) {
  Add("Web", 80, 80, 0, 12);
  grid.Populate(profile);
  Button("cmdShowAdvance").UserClick();
  Type("txtTargetIP", 0, "192.168.1.12");
  Button("cmdAccept").UserFocus(true);
  EXPECT_EQ(Refusal(),
            "Row 1, IP: \"192.168.1.12\" is not the last number of an address, such as 12. Leave it empty "
            "for this computer.");
  EXPECT_TRUE(Box("txtTargetIP", 0).HasFocus());
  EXPECT_EQ(Box("txtTargetIP", 0).SelLength(), 12);
  EXPECT_EQ(Box("txtTargetIP", 0).Text(), "192.168.1.12");
  EXPECT_TRUE(Box("txtTargetIP", 0).IsSeen());
  EXPECT_THAT(Mappings(), ElementsAre("Web 80-80 TCP 12"));
  // Put right, it goes through.
  Type("txtTargetIP", 0, "13");
  EXPECT_THAT(Accepted(), ElementsAre("Web 80-80 TCP 13"));
  EXPECT_EQ(accepts, 1);
}

TEST_F(ctlMappingEditorTest, ATargetEndsAt16Bits) {
  FillRow(2, "1", "1");
  Button("cmdShowAdvance").UserClick();
  Type("txtTargetIP", 2, "32768");
  EXPECT_THAT(Refusal(), HasSubstr("Row 3, IP: \"32768\""));
  Type("txtTargetIP", 2, "32767");
  EXPECT_THAT(Accepted(), ElementsAre(" 1-1 TCP 32767"));
}

TEST_F(ctlMappingEditorTest, BlanksAreNoTarget) {
  FillRow(0, "1", "1");
  Button("cmdShowAdvance").UserClick();
  Type("txtTargetIP", 0, "  ");
  EXPECT_THAT(Refusal(), HasSubstr("Row 1, IP: \"  \""));
}

TEST_F(ctlMappingEditorTest, APortBeyond32BitsIsToldAndNothingIsAccepted) {
  FillRow(9, "1", "2147483648");
  EXPECT_EQ(Refusal(), "Row 10, End: \"2147483648\" is no port number.");
  EXPECT_TRUE(Box("txtEndRange", 9).HasFocus());
  EXPECT_THAT(Mappings(), IsEmpty());
}

TEST_F(ctlMappingEditorTest, APortOfAnyLengthIsToldAndNotReadAsAnother) {
  FillRow(0, "-1e999", "9");
  EXPECT_EQ(Refusal(), "Row 1, Begin: \"-1e999\" is no port number.");
  EXPECT_TRUE(Box("txtBeginRange", 0).HasFocus());
}

TEST_F(ctlMappingEditorTest, OfSeveralUnreadableTextsTheFirstIsTold) {
  FillRow(1, "1", "99999999999");
  FillRow(0, "1", "1");
  Button("cmdShowAdvance").UserClick();
  Type("txtTargetIP", 0, "x");
  EXPECT_THAT(Refusal(), HasSubstr("Row 1, IP: \"x\""));
}

TEST_F(ctlMappingEditorTest, WhatStandsInARowWithoutATickIsNotRead) {
  Type("txtEndRange", 0, "99999999999");
  Button("cmdShowAdvance").UserClick();
  Type("txtTargetIP", 0, "192.168.1.12");
  EXPECT_THAT(Accepted(), IsEmpty());
  EXPECT_EQ(accepts, 1);
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(ctlMappingEditorTest, AMessageStaysReadableForATextOfAnyLength) {
  FillRow(0, "1", "1");
  Button("cmdShowAdvance").UserClick();
  Type("txtTargetIP", 0, std::string(10'000, '9'));
  const std::string message = Refusal();
  EXPECT_THAT(message, HasSubstr("\"" + std::string(200, '9') + "...\""));
  EXPECT_THAT(message, Not(HasSubstr(std::string(201, '9'))));
}

TEST_F(ctlMappingEditorTest, SavingWhatCannotBeReadFailsAndChangesNothing) {
  Add("Web", 80, 80);
  FillRow(0, "1", "1");
  FillRow(1, "1", "99999999999");
  EXPECT_THROW(grid.Save(profile), base::Error);
  EXPECT_THAT(Mappings(), ElementsAre("Web 80-80 TCP -1"));
}

TEST_F(ctlMappingEditorTest, MoreMappingsThanRowsFailAndChangeNothing) {
  FillRow(0, "7", "8");
  for (int i = 0; i <= kRows; ++i) Add("m", 1, 2);
  EXPECT_THROW(grid.Populate(profile), base::Error);
  EXPECT_THAT(RowTexts(0), ElementsAre("", "7", "8", "", "TCP"));
  EXPECT_TRUE(Button("cmdAccept").Enabled());
}

TEST_F(ctlMappingEditorTest, AnyTextIsADescription) {
  const std::vector<std::string> texts{"R&D \"quoted\" <tag>", "two\r\nlines", std::string(10'000, 'x')};
  for (int row = 0; row < 3; ++row) {
    Type("txtDescription", row, texts[static_cast<std::size_t>(row)]);
    Tick("chkUDP", row).UserClick();
  }
  EXPECT_THAT(Accepted(),
              ElementsAre(texts[0] + " 0-0 UDP -1", texts[1] + " 0-0 UDP -1", texts[2] + " 0-0 UDP -1"));
}

TEST_F(ctlMappingEditorTest, HasItsCaptionsAndColours) {
  const auto caption = [this](const char* name) { return Get<ui::Label>(name).Caption(); };
  EXPECT_EQ(caption("lblTitle"), "Mapping Assignments");
  EXPECT_EQ(caption("lblDescription"), "Description");
  EXPECT_EQ(caption("lblBeginRange"), "Begin");
  EXPECT_EQ(caption("lblEndRange"), "End");
  EXPECT_EQ(caption("lblIP"), "IP");
  EXPECT_EQ(caption("lblTo(9)"), "to");
  EXPECT_EQ(caption("lblError"), "");
  EXPECT_EQ(Button("cmdShowAdvance").Caption(), "&Show Advance");
  EXPECT_EQ(Button("cmdAccept").Caption(), "&Accept");
  EXPECT_EQ(Button("cmdCancel").Caption(), "&Cancel");
  EXPECT_EQ(Tick("chkTCP", 0).Caption(), "TCP");
  EXPECT_EQ(Tick("chkUDP", 9).Caption(), "UDP");
  EXPECT_EQ(Get<ui::Label>("lblTitle").ForeColor(), ui::Rgb(51, 153, 102));
  EXPECT_EQ(Get<ui::Label>("lblError").ForeColor(), ui::Rgb(128, 0, 0));
  for (const std::string& name : kBoxes) EXPECT_EQ(Box(name, 9).ForeColor(), ui::Rgb(0, 0, 128));
  for (const char* name : {"lblDescription", "lblBeginRange", "lblEndRange", "lblIP", "lblTo(0)"}) {
    EXPECT_EQ(Get<ui::Label>(name).GetAlignment(), ui::Alignment::kCenter) << name;
  }
  EXPECT_EQ(grid.HelpContextID(), 9030);
}

TEST_F(ctlMappingEditorTest, ItsColourReachesTicksFrameAndLabels) {
  grid.BackgroundColor(ui::Rgb(1, 2, 3));
  for (const char* name : {"chkTCP(0)", "chkUDP(9)", "framMappings", "lblError", "lblBeginRange",
                           "lblDescription", "lblEndRange", "lblIP"}) {
    EXPECT_EQ(Get<ui::Control>(name).BackColor(), ui::Rgb(1, 2, 3)) << name;
  }
  EXPECT_EQ(grid.BackgroundColor(), ui::Rgb(1, 2, 3));
}

TEST_F(ctlMappingEditorTest, TheTabKeyRunsAlongARowAndThenToTheNext) {
  std::vector<std::string> names;
  for (const ui::Control* control : Get<ui::Frame>("framMappings").Children()) {
    if (control->TabStop() && control->Name().ends_with(")")) names.push_back(control->Name());
  }
  std::vector<std::string> wanted;
  for (int row = 0; row < kRows; ++row) {
    for (const char* name :
         {"txtDescription", "txtBeginRange", "txtEndRange", "chkTCP", "chkUDP", "txtTargetIP"}) {
      wanted.push_back(name + ("(" + std::to_string(row) + ")"));
    }
  }
  EXPECT_EQ(names, wanted);
}

TEST_F(ctlMappingEditorTest, StandsInItsColumnsWhereThereIsRoom) {
  const auto place = [this](const std::string& name) {
    const ui::Control& control = Get<ui::Control>(name);
    return std::vector<ui::Twips>{control.Left(), control.Width()};
  };
  grid.Move(0, 0, 10305, 7320);
  Button("cmdShowAdvance").UserClick();
  for (const std::string row : {"(0)", "(9)"}) {
    EXPECT_THAT(place("txtDescription" + row), ElementsAre(0, 3075));
    EXPECT_THAT(place("txtBeginRange" + row), ElementsAre(3240, 720));
    EXPECT_THAT(place("lblTo" + row), ElementsAre(4200, 315));
    EXPECT_THAT(place("txtEndRange" + row), ElementsAre(4620, 720));
    EXPECT_THAT(place("chkTCP" + row), ElementsAre(5640, 735));
    EXPECT_THAT(place("chkUDP" + row), ElementsAre(6540, 735));
    EXPECT_THAT(place("txtTargetIP" + row), ElementsAre(7500, 555));
  }
  EXPECT_EQ(Box("txtDescription", 9).Top() - Box("txtDescription", 0).Top(), 9 * 360);
  EXPECT_EQ(Button("cmdShowAdvance").Left(), 5640);
  EXPECT_EQ(Button("cmdShowAdvance").Right(), 7275);
}

TEST_F(ctlMappingEditorTest, ANarrowPageStillShowsEveryColumnBesideTheOther) {
  grid.Move(0, 0, 6180, 5695);
  for (const bool advance : {false, true}) {
    if (advance) Button("cmdShowAdvance").UserClick();
    ui::Twips end = 0;
    for (const char* name : {"txtDescription(0)", "txtBeginRange(0)", "lblTo(0)", "txtEndRange(0)",
                             "chkTCP(0)", "chkUDP(0)", "txtTargetIP(0)"}) {
      const ui::Control& control = Get<ui::Control>(name);
      if (!control.Visible()) continue;
      EXPECT_GE(control.Left(), end) << name;
      end = control.Right();
    }
    EXPECT_LE(end, Get<ui::Frame>("framMappings").Width() - 100);
    EXPECT_GT(Box("txtDescription", 0).Width(), 1500);
    EXPECT_EQ(Box("txtBeginRange", 0).Width(), 720);
  }
}

TEST_F(ctlMappingEditorTest, ResizedToNothingAndBackItIsWholeAgain) {
  std::vector<ui::Bounds> before;
  const auto bounds = [this] {
    std::vector<ui::Bounds> all;
    for (const char* name : {"lblTitle", "framMappings", "txtTargetIP(9)", "cmdAccept", "cmdCancel"}) {
      all.push_back(Get<ui::Control>(name).GetBounds());
    }
    return all;
  };
  before = bounds();
  const ui::Bounds full = grid.GetBounds();
  grid.Move(0, 0, 0, 0);
  for (const ui::Control* control : Get<ui::Frame>("framMappings").Children()) {
    EXPECT_GE(control->Width(), 0) << control->Name();
  }
  grid.Move(full);
  EXPECT_EQ(bounds(), before);
  EXPECT_TRUE(Button("cmdAccept").IsSeen());
  EXPECT_FALSE(Box("txtTargetIP", 0).IsSeen());
}

}  // namespace
