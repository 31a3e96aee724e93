#include <gmock/gmock.h>

#include "base/Error.h"
#include "support/RouterLogTest.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

/// The page, bound to a router of which it knows nothing else.
class RouterLogIntake : public support::RouterLogTest {
 protected:
  RouterLogIntake() {
    router = SelectRouter();
    OpenPage();
    page->Reset();
  }

  std::string DescriptionOf(std::int32_t port) { return Identify(port).first; }
  void PlugInNames(std::int32_t port, const std::string& name) {
    router->Do("IServer_GetPortForwardingDescription", [port, name](std::span<platform::Argument> arguments) {
      return base::Variant(base::ToInt32(arguments[0].value) == port ? name : "");
    });
  }
  std::string ErrorText() { return Find<ui::TextBox>("txtError").Text(); }
  std::string Report() {
    return support::FindControl<ui::RichTextBox>(frmErrors::Shared(), "rtErrors").Text();
  }

  std::shared_ptr<support::Script> router;
};

TEST_F(RouterLogIntake, AddsARowForALogLineWithTheTimeOfItsArrival) {
  world.clock.now = {2005, 1, 2, 3, 4, 59};
  RaiseLog("in", "203.0.113.9", 4000, "192.168.1.7", 80, "web");
  EXPECT_THAT(Row(0), ElementsAre("01/02/05 03:04", "in", "192.168.1.7", "80", "203.0.113.9", "4000", "web"));
}

TEST_F(RouterLogIntake, AddsALineAsItIs) {
  RaiseLog("", "", -1, "no address", -2147483647 - 1, "");
  EXPECT_THAT(Row(0), ElementsAre("07/09/26 18:05", "", "no address", "-2147483648", "", "-1", ""));
}

TEST_F(RouterLogIntake, AddsAtTheEndOfASortedList) {
  RaiseLog("in", "s", 1, "d", 20, "");
  RaiseLog("in", "s", 2, "d", 10, "");
  List().UserColumnClick(4);
  RaiseLog("in", "s", 3, "d", 5, "");
  EXPECT_THAT(Column(3), ElementsAre("10", "20", "5"));
  List().UserColumnClick(1);
  List().UserColumnClick(4);
  EXPECT_THAT(Column(3), ElementsAre("5", "10", "20"));
}

TEST_F(RouterLogIntake, TakesTenThousandLines) {
  for (std::int32_t port = 0; port < 10'000; ++port) RaiseLog("in", "s", port, "d", 80, "web");
  EXPECT_EQ(List().RowCount(), 10'000u);
  EXPECT_EQ(List().Text(9'999, 5), "9999");
}

TEST_F(RouterLogIntake, AddsNothingForALineWithWrongArguments) {
  std::vector<base::Variant> arguments{"in", "s", "no port", "d", 80, "web"};
  EXPECT_THROW(world.objects.Raise(3, arguments), base::Error);
  std::vector<base::Variant> few{"in"};
  EXPECT_THROW(world.objects.Raise(3, few), base::Error);
  EXPECT_THAT(Keys(), IsEmpty());
  RaiseLog("in", "s", 1, "d", 80, "web");
  EXPECT_THAT(Keys(), ElementsAre("K1"));
}

TEST_F(RouterLogIntake, NamesAPortByTheActiveProfileAlone) {
  AddProfile("Inactive", false, {{80, 80}});
  AddProfile("Active", true, {{80, 80}});
  EXPECT_EQ(DescriptionOf(80), "Active");
}

TEST_F(RouterLogIntake, JoinsTheNamesOfTwoActiveProfilesInTheirOrder) {
  AddProfile("b", true, {{80, 80}});
  AddProfile("A", true, {{80, 80}});
  AddProfile("a", true, {{81, 81}});
  EXPECT_EQ(DescriptionOf(80), "A/b");
}

TEST_F(RouterLogIntake, NamesAProfileOnceHoweverManyOfItsMappingsMatch) {
  AddProfile("A", true, {{1, 100}, {80, 80}, {50, 90}});
  AddProfile("B", true, {{1, 2}, {70, 90}});
  EXPECT_EQ(DescriptionOf(80), "A/B");
}

TEST_F(RouterLogIntake, CountsBothEndsOfARange) {
  AddProfile("A", true, {{100, 200}});
  EXPECT_EQ(DescriptionOf(99), "");
  EXPECT_EQ(DescriptionOf(100), "A");
  EXPECT_EQ(DescriptionOf(200), "A");
  EXPECT_EQ(DescriptionOf(201), "");
}

TEST_F(RouterLogIntake, FindsNothingInARangeThatEndsBeforeItBegins) {
  AddProfile("A", true, {{200, 100}});
  for (const std::int32_t port : {100, 150, 200}) EXPECT_EQ(DescriptionOf(port), "");
}

TEST_F(RouterLogIntake, LooksAtNeitherProtocolNorHost) {
  const auto profile = AddProfile("A", true, {{80, 80}});
  for (const auto& mapping : profile->ccMappings()) {
    mapping->Protocal(1);
    mapping->iForwardIPAddress(9);
  }
  EXPECT_EQ(DescriptionOf(80), "A");
}

TEST_F(RouterLogIntake, LeavesNoSlashForAProfileWithoutAName) {
  AddProfile("", true, {{80, 80}});
  EXPECT_EQ(DescriptionOf(80), "");
  AddProfile("B", true, {{80, 80}});
  EXPECT_EQ(DescriptionOf(80), "B");
}

TEST_F(RouterLogIntake, FiltersPortsOfActiveProfilesWhenThatIsSwitchedOn) {
  AddProfile("A", true, {{80, 80}});
  EXPECT_THAT(Identify(80), Pair("A", false));
  g_Registry->FilterOutProfiles = true;
  EXPECT_THAT(Identify(80), Pair("A", true));
  EXPECT_THAT(Identify(443), Pair("https", false));
  EXPECT_THAT(Identify(22), Pair("", false));
}

TEST_F(RouterLogIntake, FiltersThePortOfAProfileWithoutAName) {
  AddProfile("", true, {{80, 80}});
  g_Registry->FilterOutProfiles = true;
  EXPECT_THAT(Identify(80), Pair("", true));
}

TEST_F(RouterLogIntake, SeesEveryChangeOfTheProfilesAtOnce) {
  EXPECT_EQ(DescriptionOf(5000), "");
  const auto profile = AddProfile("A", true, {{5000, 5000}});
  EXPECT_EQ(DescriptionOf(5000), "A");
  profile->sName = "renamed";
  EXPECT_EQ(DescriptionOf(5000), "renamed");
  profile->bEnabled = false;
  EXPECT_EQ(DescriptionOf(5000), "");
  profile->bEnabled = true;
  const auto mapping = AddMapping(*profile, 6000, 6000);
  EXPECT_EQ(DescriptionOf(6000), "renamed");
  mapping->lEndPort(6005);
  EXPECT_EQ(DescriptionOf(6005), "renamed");
  mapping->lBeginPort(6001);
  EXPECT_EQ(DescriptionOf(6000), "");
  profile->RemoveMapping(mapping->sKey());
  EXPECT_EQ(DescriptionOf(6005), "");
  profile->ClearMappings();
  EXPECT_EQ(DescriptionOf(5000), "");
  AddMapping(*profile, 7000, 7000);
  EXPECT_EQ(DescriptionOf(7000), "renamed");
  g_Registry->RemoveMapProfile(profile->sKey(), nullptr);
  EXPECT_EQ(DescriptionOf(7000), "");
}

TEST_F(RouterLogIntake, AsksThePlugInAfterTheProfiles) {
  PlugInNames(80, "by plug-in");
  EXPECT_EQ(DescriptionOf(80), "by plug-in");
  AddProfile("A", true, {{80, 80}});
  router->calls.clear();
  EXPECT_EQ(DescriptionOf(80), "A");
  EXPECT_THAT(router->calls, IsEmpty());
  EXPECT_EQ(DescriptionOf(81), "");
  EXPECT_THAT(router->calls, ElementsAre("call IServer_GetPortForwardingDescription(&81:32)"));
}

TEST_F(RouterLogIntake, LooksIntoTheFileBeforeTheTable) {
  world.folder.Write("Ports.dat", "80\r\nmy web\r\n22\r\nssh\r\n0\r\nnone\r\n");
  EXPECT_EQ(DescriptionOf(80), "my web");
  EXPECT_EQ(DescriptionOf(22), "ssh");
  EXPECT_EQ(DescriptionOf(0), "none");
  EXPECT_EQ(DescriptionOf(443), "https");
}

TEST_F(RouterLogIntake, TakesAnEmptyDescriptionOfTheFileForAnAnswer) {
  world.folder.Write("Ports.dat", "80\r\n\r\n");
  EXPECT_EQ(DescriptionOf(80), "");
}

TEST_F(RouterLogIntake, GivesNoNameToAnUnknownPort) {
  for (const std::int32_t port : {0, 22, 3389, -1, 2147483647}) EXPECT_EQ(DescriptionOf(port), "") << port;
  EXPECT_EQ(DescriptionOf(80), "http");
}

TEST_F(RouterLogIntake, NeverLooksUpAPortInTheFileThatThePlugInNames) {
  PlugInNames(80, "by plug-in");
  EXPECT_EQ(DescriptionOf(80), "by plug-in");
  EXPECT_THAT(world.debug.lines, ElementsAre(HasSubstr("log database"))) << "the file was looked for";
  world.folder.Write("Ports.dat", "80\r\nby file\r\n81\r\nread now\r\n");
  EXPECT_EQ(DescriptionOf(80), "by plug-in");
  EXPECT_EQ(DescriptionOf(81), "read now");
}

TEST_F(RouterLogIntake, ReadsTheFileOnceAndNotBeforeItIsNeeded) {
  AddProfile("A", true, {{80, 80}});
  EXPECT_EQ(DescriptionOf(80), "A");
  world.folder.Write("Ports.dat", "81\r\nfirst\r\n");
  EXPECT_EQ(DescriptionOf(81), "first");
  world.folder.Write("Ports.dat", "81\r\nsecond\r\n82\r\nnew\r\n");
  EXPECT_EQ(DescriptionOf(81), "first");
  EXPECT_EQ(DescriptionOf(82), "");
}

TEST_F(RouterLogIntake, DoesNotTryAMissingFileAgain) {
  world.debug.lines.clear();
  EXPECT_EQ(DescriptionOf(81), "");
  EXPECT_THAT(world.debug.lines,
              ElementsAre("Error occured during the loading of the Port Definitions database."));
  world.folder.Write("Ports.dat", "81\r\ntoo late\r\n");
  EXPECT_EQ(DescriptionOf(81), "");
  EXPECT_EQ(world.debug.lines.size(), 1u);
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterLogIntake, GetsAlongWithAFolderInTheFilesPlace) {
  world.folder.MakeFolder("Ports.dat");
  EXPECT_EQ(DescriptionOf(80), "http");
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
}

TEST_F(RouterLogIntake, GivesAFailureOfThePlugInBackToTheSource) {
  router->Fail("IServer_GetPortForwardingDescription", 1000, "no answer");
  try {
    Identify(80);
    ADD_FAILURE() << "the source saw no failure";
  } catch (const base::Error& error) {
    EXPECT_EQ(error.Number(), 1000);
  }
  EXPECT_THAT(world.toolkit.messages, IsEmpty());
  RaiseLog("in", "s", 1, "d", 2, "m");
  EXPECT_EQ(List().RowCount(), 1u);
}

TEST_F(RouterLogIntake, TellsAnErrorInTheReportAndInTheBox) {
  const std::string before = Report();
  RaiseError("Router unreachable", 12);
  EXPECT_EQ(ErrorText(), "18.05.03 - Router unreachable (12)");
  EXPECT_EQ(Report(), before + "18.05.03 - Router unreachable (12)\r\n");
  EXPECT_TRUE(frmErrors::Shared().Visible());
  EXPECT_FALSE(frmErrors::Shared().IsModal());
  EXPECT_EQ(frmErrors::Shared().Owner(), &window);
}

TEST_F(RouterLogIntake, ReplacesTheErrorInTheBoxAndAddsToTheReport) {
  const std::string before = Report();
  RaiseError("first", 1);
  world.clock.now.hour = 0;
  RaiseError("second", -32768);
  EXPECT_EQ(ErrorText(), "00.05.03 - second (-32768)");
  EXPECT_EQ(Report(), before + "18.05.03 - first (1)\r\n00.05.03 - second (-32768)\r\n");
  RaiseLog("in", "s", 1, "d", 2, "m");
  EXPECT_EQ(List().RowCount(), 1u);
}

TEST_F(RouterLogIntake, BringsTheReportUpAgainAfterItWasClosed) {
  RaiseError("first", 0);
  frmErrors::Shared().UserClose(ui::CloseReason::kUser);
  EXPECT_FALSE(frmErrors::Shared().Visible());
  RaiseError("second", 0);
  EXPECT_TRUE(frmErrors::Shared().Visible());
  EXPECT_THAT(Report(), testing::EndsWith("- first (0)\r\n18.05.03 - second (0)\r\n"));
}

TEST_F(RouterLogIntake, HearsNothingWithoutARouter) {
  Enable().Checked(true);
  g_Registry->Router = nullptr;
  page->Reset();
  EXPECT_EQ(world.objects.Connections(), 0u);
  EXPECT_FALSE(Enable().Checked());
  RaiseLog("in", "s", 1, "d", 2, "m");
  EXPECT_THAT(Keys(), IsEmpty());
}

TEST_F(RouterLogIntake, HearsOnlyTheRouterThatIsSelected) {
  RaiseLog("in", "first", 1, "d", 2, "m");
  const auto before = source;
  source = std::make_shared<support::Script>();
  SelectRouter("Other router");
  page->Reset();
  EXPECT_EQ(world.objects.Connections(), 1u);
  RaiseLog("in", "second", 1, "d", 2, "m");
  EXPECT_THAT(Column(4), ElementsAre("first", "second"));
}

TEST_F(RouterLogIntake, HearsARouterOnceHoweverOftenItIsReset) {
  page->Reset();
  page->Reset();
  EXPECT_EQ(world.objects.Connections(), 1u);
  RaiseLog("in", "s", 1, "d", 2, "m");
  EXPECT_THAT(Keys(), ElementsAre("K1"));
}

TEST_F(RouterLogIntake, HearsNothingOfARouterWithoutAnEventSource) {
  router->Answer("IServer_EventHandler", base::ObjectRef());
  page->Reset();
  EXPECT_EQ(world.objects.Connections(), 0u);
}

TEST_F(RouterLogIntake, HearsItsRouterStillWhenThatCanNotHandOutItsEventsAgain) {
  source->lacksEvents = true;
  EXPECT_THROW(page->Reset(), base::Error);
  EXPECT_EQ(world.objects.Connections(), 1u);
  router->Fail("IServer_EventHandler", 1000, "no events");
  EXPECT_THROW(page->Reset(), base::Error);
  RaiseLog("in", "s", 1, "d", 2, "m");
  EXPECT_THAT(Keys(), ElementsAre("K1"));
}

TEST_F(RouterLogIntake, HearsNobodyAfterAnotherRouterWhoseEventsCanNotBeHad) {
  const auto other = SelectRouter("Other router");
  other->Fail("IServer_EventHandler", 1000, "no events");
  EXPECT_THROW(page->Reset(), base::Error);
  EXPECT_EQ(world.objects.Connections(), 0u);
  EXPECT_THROW(page->Reset(), base::Error);
  EXPECT_EQ(world.objects.Connections(), 0u);
  other->Answer("IServer_EventHandler", std::make_shared<support::ScriptedObject>(source));
  page->Reset();
  EXPECT_EQ(world.objects.Connections(), 1u);
}

TEST_F(RouterLogIntake, LetsGoOfARouterBeforeTheNextOneIsAskedForItsEvents) {
  const auto other = SelectRouter("Other router");
  other->Do("IServer_EventHandler", [this](std::span<platform::Argument>) {
    EXPECT_EQ(world.objects.Connections(), 0u);
    return base::Variant(base::ObjectRef());
  });
  page->Reset();
  EXPECT_EQ(world.objects.Connections(), 0u);
}

TEST_F(RouterLogIntake, HearsNothingAfterItsEnd) {
  window.Load();
  window.Unload();
  EXPECT_EQ(world.objects.Connections(), 0u);
}

TEST_F(RouterLogIntake, TakesAnEventThatIsRaisedFromInsideACall) {
  router->Do("IServer_SetLogging", [this](std::span<platform::Argument>) {
    RaiseLog("in", "s", 1, "d", 2, "from inside");
    return base::Variant(false);
  });
  Enable().UserClick();
  EXPECT_THAT(Column(6), ElementsAre("from inside"));
}

TEST_F(RouterLogIntake, MayBeResetFromInsideAnEvent) {
  router->Do("IServer_GetPortForwardingDescription", [this](std::span<platform::Argument>) {
    g_Registry->Router = nullptr;
    page->Reset();
    return base::Variant("named");
  });
  EXPECT_EQ(DescriptionOf(81), "named");
  EXPECT_EQ(world.objects.Connections(), 0u);
}

}  // namespace
