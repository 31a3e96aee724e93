#include "setup/modSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/modCommon.h"
#include "support/World.h"

namespace {

using testing::ElementsAre;

class modSystemTest : public testing::Test {
 protected:
  modSystemTest() { modCommon::HelpFile("C:\\Programs\\Harbourline\\Harbourline.hlp"); }

  support::World world;
};

TEST_F(modSystemTest, HelpIsTheContentsPageBesideTheHelpFile) {
  modSystem::ShowHelp(7, 0);
  EXPECT_THAT(world.shell.shown, ElementsAre("C:\\Programs\\Harbourline\\Help\\index.html"));
  EXPECT_THAT(world.shell.inFrontOf, ElementsAre(7u));
}

TEST_F(modSystemTest, TheHelpIsFoundInAFolderWhoseNameHasABackslashAsSecondByte) {
  world.codePage.leadBytes = "\x83";
  modCommon::HelpFile("C:\\\x83\\\\Harbourline.hlp");
  modSystem::ShowHelp(7, 0);
  EXPECT_THAT(world.shell.shown, ElementsAre("C:\\\x83\\\\Help\\index.html"));
}

TEST_F(modSystemTest, EveryTopicHasThePageOfItsNumber) {
  modSystem::ShowTopic(7, 9030);
  modSystem::ShowTopic(7, 0);
  EXPECT_THAT(world.shell.shown, ElementsAre("C:\\Programs\\Harbourline\\Help\\9030.html",
                                             "C:\\Programs\\Harbourline\\Help\\index.html"));
}

TEST_F(modSystemTest, AMissingPageOrBrowserIsIgnored) {
  world.shell.answer = 2;
  EXPECT_NO_THROW(modSystem::ShowTopic(7, 1000));
  EXPECT_NO_THROW(modSystem::ShowHelp(7, 0));
  EXPECT_EQ(modSystem::OpenWebAddress("https://harbourline.example/"), 2);
  EXPECT_TRUE(world.toolkit.messages.empty());
}

}  // namespace
