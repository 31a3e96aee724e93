#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/Error.h"
#include "support/RecordingToolkit.h"
#include "support/RouterConfigTest.h"
#include "support/Shell.h"

namespace {

using support::kLook;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr const char* kFailure = "out of order";
constexpr const char* kTold = "out of order (7)";

/// Plug-ins that fail, seen on the page.
class ctlRouterConfigFailureTest : public support::RouterConfigTest {
 protected:
  static void FailOnce(support::Script& router, const std::string& member, const base::Variant& answer) {
    router.Do(member, [failed = false, answer](auto) mutable -> base::Variant {
      if (std::exchange(failed, true)) return answer;
      throw base::Error(7, kFailure);
    });
  }
  /// What the plug-in answers when it is in order.
  static base::Variant Answer(const std::string& member) {
    if (member == "IServer_ServerTitle") return "Second";
    if (member == "IServer_Version") return "1.0";
    if (member == "IServer_WANIP") return "203.0.113.9";
    return member == "IServer_Functional";
  }
  void ExpectTold(std::size_t times) {
    ASSERT_EQ(world.toolkit.messages.size(), times);
    for (const ui::Message& message : world.toolkit.messages) {
      EXPECT_EQ(message.text, kTold);
      EXPECT_EQ(message.icon, ui::MessageIcon::kCritical);
      EXPECT_EQ(message.buttons, ui::MessageButtons::kOk);
      EXPECT_EQ(message.title, "Harbourline");
    }
    world.toolkit.messages.clear();
  }
  void ExpectSecondWorks() {
    EXPECT_THAT(Titles(), ElementsAre("First", "Second"));
    EXPECT_EQ(List().Text(), "Second");
    EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle("Second"));
    EXPECT_TRUE(Configure().Enabled());
    ExpectSelectionShown(true);
    ExpectStatus("1.0", "Online");
    world.journal.clear();
    Configure().UserClick();
    EXPECT_EQ(Happened().back(), "successful");
    EXPECT_THAT(world.toolkit.messages, IsEmpty());
  }

  const std::vector<std::string> lookedAt = {"IServer_Functional", "IServer_Version", "IServer_WANIP",
                                             "IServer_SetLogging"};
};

TEST_F(ctlRouterConfigFailureTest, AMemberThatFailsOnceAtAChoiceIsToldAndTheNextChoiceIsGood) {
  KnowTwo();
  OpenFilled();
  for (const std::string& member : lookedAt) {
    SCOPED_TRACE(member);
    FailOnce(*second, member, Answer(member));
    List().UserSelect(1);
    ExpectTold(1);
    List().UserSelect(0);
    List().UserSelect(1);
    ExpectSecondWorks();
    List().UserSelect(0);
  }
}

TEST_F(ctlRouterConfigFailureTest, AMemberThatFailsAtEveryChoiceIsToldEachTimeAndAnotherRouterCanBeChosen) {
  KnowTwo();
  OpenFilled();
  for (const std::string& member : lookedAt) {
    SCOPED_TRACE(member);
    second->Fail(member, 7, kFailure);
    for (int i = 0; i < 3; ++i) {
      List().UserSelect(1);
      EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle("Second"));
      List().UserSelect(0);
      EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle("First"));
      ExpectStatus("1.0", "Online");
    }
    ExpectTold(3);
    second->Answer(member, Answer(member));
  }
}

TEST_F(ctlRouterConfigFailureTest, AMemberThatFailsOnceAtAConfigurationIsToldAndTheNextOneIsGood) {
  KnowTwo();
  Select("Second.Router");
  OpenFilled();
  for (const char* member : {"IServer_Configure", "IServer_Version", "IServer_WANIP", "IServer_Functional",
                             "IServer_SetLogging"}) {
    SCOPED_TRACE(member);
    FailOnce(*second, member, Answer(member));
    const bool isConfigured = std::string(member) != "IServer_Configure";
    Configure().UserClick();
    ExpectTold(1);
    EXPECT_EQ(Happened().back() == "successful", isConfigured);
    page->UpdateStatus();
    ExpectSecondWorks();
  }
}

TEST_F(ctlRouterConfigFailureTest, AMemberThatFailsAfterAGoodConfigurationIsToldAndTheSuccessCounts) {
  KnowTwo();
  Select("Second.Router");
  OpenFilled();
  for (const char* member : {"IServer_Configure", "IServer_Version", "IServer_WANIP", "IServer_Functional",
                             "IServer_SetLogging"}) {
    SCOPED_TRACE(member);
    second->Fail(member, 7, kFailure);
    for (int i = 0; i < 3; ++i) Configure().UserClick();
    ExpectTold(3);
    const auto happened = Happened();
    EXPECT_EQ(std::count(happened.begin(), happened.end(), "successful"),
              std::string(member) == "IServer_Configure" ? 0 : 3);
    EXPECT_TRUE(Configure().Enabled());
    second->Answer(member, Answer(member));
    page->UpdateStatus();
    ExpectSecondWorks();
  }
}

TEST_F(ctlRouterConfigFailureTest, AConfigurationThatFailsLooksAtNothing) {
  KnowTwo();
  OpenFilled();
  first->Fail("IServer_Configure", 7, kFailure);
  Configure().UserClick();
  EXPECT_THAT(Happened(), ElementsAre("call IServer_Configure()"));
  ExpectTold(1);
}

TEST_F(ctlRouterConfigFailureTest, AFailureWhileThePageIsFilledGoesToTheHostAndTheNextFillingIsGood) {
  KnowTwo();
  Select("Second.Router");
  OpenFilled();
  for (const char* member : {"IServer_ServerTitle", "IServer_Functional", "IServer_Version", "IServer_WANIP",
                             "IServer_SetLogging"}) {
    SCOPED_TRACE(member);
    second->Fail(member, 7, kFailure);
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(support::ErrorOf([this] { page->Populate(); }), 7);
      EXPECT_EQ(support::ErrorTextOf([this] { page->Populate(); }), kFailure);
    }
    EXPECT_THAT(world.toolkit.messages, IsEmpty());
    second->Answer(member, Answer(member));
    page->Populate();
    ExpectSecondWorks();
  }
}

TEST_F(ctlRouterConfigFailureTest, AnAddressThatFailsIsNotAvailableAndTheLookGoesOn) {
  KnowTwo();
  OpenFilled();
  first->Fail("IServer_WANIP", 7, kFailure);
  first->Answer("IServer_Version", "2.0");
  EXPECT_EQ(support::ErrorOf([this] { page->UpdateStatus(); }), 7);
  EXPECT_THAT(Happened(), ElementsAre("get IServer_Version", "get IServer_WANIP", "get IServer_Functional",
                                      "changed \"WAN N/A\" True", "get IServer_Functional",
                                      "call IServer_SetLogging(&\"192.168.1.7\")"));
  ExpectStatus("2.0", "Online");
}

TEST_F(ctlRouterConfigFailureTest, AVersionThatFailsIsNotAvailableAndTheLookGoesOn) {
  KnowTwo();
  OpenFilled();
  first->Fail("IServer_Version", 7, kFailure);
  EXPECT_EQ(support::ErrorOf([this] { page->UpdateStatus(); }), 7);
  EXPECT_THAT(Happened(), ElementsAreArray(kLook));
  ExpectStatus("N/A", "Online");
}

TEST_F(ctlRouterConfigFailureTest, ARouterThatCanNotTellWhetherItWorksIsOffline) {
  KnowTwo();
  OpenFilled();
  first->Fail("IServer_Functional", 7, kFailure);
  EXPECT_EQ(support::ErrorOf([this] { page->UpdateStatus(); }), 7);
  EXPECT_THAT(Happened(), testing::Contains("changed \"WAN 203.0.113.9\" False"));
  ExpectStatus("1.0", "Offline");
}

TEST_F(ctlRouterConfigFailureTest, ASelectedPlugInThatFailsKeepsNoOtherOutOfTheList) {
  KnowTwo();
  Open();
  for (const char* member : {"IServer_ServerTitle", "IServer_Functional", "IServer_Version", "IServer_WANIP",
                             "IServer_SetLogging"}) {
    SCOPED_TRACE(member);
    first->Fail(member, 7, kFailure);
    EXPECT_EQ(support::ErrorTextOf([this] { page->Populate(); }), kFailure);
    EXPECT_THAT(Titles(), ElementsAre("First", "Second"));
    ExpectSelectionShown(true);
    EXPECT_TRUE(Configure().Enabled());
    List().UserSelect(1);
    EXPECT_EQ(g_Registry->Router, g_Registry->GetRouterByTitle("Second"));
    ExpectStatus("1.0", "Online");
    g_Registry->RouterTitle("First");
    first->Answer(member, std::string(member) == "IServer_ServerTitle" ? "First" : Answer(member));
  }
}

TEST_F(ctlRouterConfigFailureTest, ALoggingThatFailsComesAfterEverythingElseIsShownAndTold) {
  KnowTwo();
  OpenFilled();
  first->Fail("IServer_SetLogging", 7, kFailure);
  first->Answer("IServer_Version", "2.0");
  EXPECT_EQ(support::ErrorOf([this] { page->UpdateStatus(); }), 7);
  EXPECT_THAT(Happened(), ElementsAreArray(kLook));
  ExpectStatus("2.0", "Online");
}

TEST_F(ctlRouterConfigFailureTest, APlugInThatLacksAMemberIsToldTheSameWay) {
  KnowTwo();
  OpenFilled();
  first->Lack("IServer_Configure");
  Configure().UserClick();
  ASSERT_EQ(world.toolkit.messages.size(), 1u);
  EXPECT_EQ(world.toolkit.messages[0].text, "Unknown name: IServer_Configure (438)");
}

/// The same in the whole program, where the tree's node fills the page.
class ctlRouterConfigFailureInMainTest : public testing::Test, protected support::Shell {
 protected:
  void Show(const std::string& node) {
    support::FindControl<ui::TreeView>(*main, "tvCategories").UserSelect(node);
  }
  ui::Control& Page() { return support::FindControl<ui::Control>(*main, "ctlRouter"); }
};

TEST_F(ctlRouterConfigFailureInMainTest,
       AFailureWhileThePageIsFilledIsToldAtEachVisitAndThePageComesUpAllTheSame) {
  SelectRouter();
  Start();
  main->Show();
  struct Member {
    std::string name;
    base::Variant answer;
  };
  for (const auto& [name, answer] : std::vector<Member>{{"IServer_ServerTitle", "Test Router"},
                                                        {"IServer_Functional", true},
                                                        {"IServer_Version", "1.0"},
                                                        {"IServer_WANIP", "203.0.113.9"},
                                                        {"IServer_SetLogging", false}}) {
    SCOPED_TRACE(name);
    Show("About");
    world.toolkit.messages.clear();
    router->Fail(name, 7, kFailure);
    for (std::size_t visit = 1; visit <= 3; ++visit) {
      Show("RouterConfiguration");
      ASSERT_EQ(world.toolkit.messages.size(), visit);
      EXPECT_EQ(world.toolkit.messages.back().text, kTold);
      EXPECT_TRUE(Page().IsSeen());
      EXPECT_EQ(support::FindControl<ui::ComboBox>(Page(), "cbRouterSelection").ListCount(), 1);
      Show("About");
    }
    router->Answer(name, answer);
    Show("RouterConfiguration");
    EXPECT_EQ(world.toolkit.messages.size(), 3u);
    EXPECT_TRUE(Page().IsSeen());
    EXPECT_EQ(support::FindControl<ui::ComboBox>(Page(), "cbRouterSelection").Text(), "Test Router");
    EXPECT_EQ(support::FindControl<ui::Label>(Page(), "lblStatus").Caption(), "Online");
  }
}

}  // namespace
