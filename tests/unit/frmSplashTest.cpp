#include "shell/frmSplash.h"

#include <gtest/gtest.h>

#include "base/Error.h"
#include "support/World.h"
#include "ui/modPictureHelper.h"

namespace {

class frmSplashTest : public testing::Test {
 protected:
  support::World world;
};

TEST_F(frmSplashTest, TheWindowIsBorderlessInTheMiddleOfTheScreenAndNotInTheTaskBar) {
  const frmSplash splash;
  EXPECT_EQ(splash.Caption(), "Splash");
  EXPECT_EQ(splash.Width(), 7485);
  EXPECT_EQ(splash.Height(), 5625);
  EXPECT_FALSE(splash.GetStyle().border);
  EXPECT_FALSE(splash.GetStyle().minimiseAndMaximise);
  EXPECT_FALSE(splash.GetStyle().inTaskBar);
  EXPECT_TRUE(splash.GetStyle().centreOnScreen);
}

TEST_F(frmSplashTest, ItsSkinHoldsTheTitlePicture) {
  const std::vector<std::byte> file{std::byte{'B'}, std::byte{'M'}};
  world.toolkit.resources["TITLE"] = file;
  const frmSplash splash;
  const auto& skin = static_cast<const ctlShapeSkin&>(*splash.Children().at(1));
  EXPECT_EQ(skin.Name(), "Skin");
  EXPECT_EQ(modPictureHelper::PictureToArray(skin.PictureSkin()), file);
}

TEST_F(frmSplashTest, ItTakesThePicturesSize) {
  world.toolkit.resources["TITLE"] = {std::byte{'B'}};
  world.toolkit.pixels = {500, 375, std::vector<std::uint32_t>(500 * 375)};
  frmSplash splash;
  splash.Show();
  EXPECT_EQ(splash.Width(), 7500);
  EXPECT_EQ(splash.Height(), 5625);
}

TEST_F(frmSplashTest, ItClosesItselfWhenItsTimeIsOver) {
  frmSplash splash;
  splash.SetTimer(7);
  splash.Show();
  world.toolkit.Advance(6'999);
  EXPECT_TRUE(splash.IsLoaded());
  world.toolkit.Advance(1);
  EXPECT_FALSE(splash.IsLoaded());
}

TEST_F(frmSplashTest, TheTimeIsAtMost32SecondsBecauseTheMillisecondsHave16Bits) {
  frmSplash splash;
  EXPECT_NO_THROW(splash.SetTimer(32));
  EXPECT_THROW(splash.SetTimer(33), base::Error);
}

}  // namespace
