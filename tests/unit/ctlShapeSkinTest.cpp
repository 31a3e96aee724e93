#include "ui/ctlShapeSkin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/RecordingToolkit.h"
#include "support/ScriptedObjects.h"
#include "ui/Form.h"
#include "ui/Label.h"
#include "ui/modPictureHelper.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Rows of a picture of one letter a pixel.
ui::Pixels Draw(const std::vector<std::string>& rows) {
  ui::Pixels pixels{static_cast<std::int32_t>(rows.empty() ? 0 : rows[0].size()),
                    static_cast<std::int32_t>(rows.size()),
                    {}};
  for (const std::string& row : rows) pixels.colors.insert(pixels.colors.end(), row.begin(), row.end());
  return pixels;
}

using ui::PixelRun;

TEST(ctlShapeSkinRegionTest, EachRowHasItsRunsOfPixelsThatAreNotTransparent) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion(Draw({".##.#.", "..aab."})),
              ElementsAre(PixelRun{1, 3, 0}, PixelRun{4, 5, 0}, PixelRun{2, 5, 1}));
}

TEST(ctlShapeSkinRegionTest, ARowThatEndsInADrawnPixelClosesItsRunAtTheWidth) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion(Draw({"..##"})), ElementsAre(PixelRun{2, 4, 0}));
}

TEST(ctlShapeSkinRegionTest, ARunNeverSpansTwoRows) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion(Draw({".##", "##."})),
              ElementsAre(PixelRun{1, 3, 0}, PixelRun{0, 2, 1}));
}

TEST(ctlShapeSkinRegionTest, ARowOfOnlyTransparentPixelsAddsNothing) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion(Draw({"..#", "...", "#.."})),
              ElementsAre(PixelRun{2, 3, 0}, PixelRun{0, 1, 2}));
}

TEST(ctlShapeSkinRegionTest, APictureInOneColourHasNoRegion) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion(Draw({"###", "###"})), IsEmpty());
}

TEST(ctlShapeSkinRegionTest, APictureOfOnePixelHasNoRegion) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion(Draw({"#"})), IsEmpty());
}

TEST(ctlShapeSkinRegionTest, NoPictureHasNoRegion) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion({}), IsEmpty());
}

TEST(ctlShapeSkinRegionTest, ACornerThatIsPartOfTheDrawingTakesItsColourOutEverywhere) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion(Draw({"#.#", ".#."})),
              ElementsAre(PixelRun{1, 2, 0}, PixelRun{0, 1, 1}, PixelRun{2, 3, 1}));
}

TEST(ctlShapeSkinRegionTest, AColourThatDiffersInOneBitIsDrawn) {
  EXPECT_THAT(ctlShapeSkin::BuildRegion({3, 1, {0xFF00FF, 0xFF00FE, 0xFF00FF}}),
              ElementsAre(PixelRun{1, 2, 0}));
}

class ctlShapeSkinTest : public testing::Test {
 protected:
  ui::PictureRef Picture() const {
    return modPictureHelper::ArrayToPicture({std::byte{'B'}, std::byte{'M'}});
  }
  ui::Image& PicSkin() { return static_cast<ui::Image&>(*skin.Children().at(0)); }

  support::RecordingToolkit toolkit;
  ui::Form form{"frmTest", "Test", {.border = false}, 4000, 3000};
  ui::Label label{&form, "lblFront", "in front"};
  ctlShapeSkin skin{&form, "Skin"};
};

TEST_F(ctlShapeSkinTest, TheWindowTakesThePicturesSizeAndShapeWhenItComesUp) {
  toolkit.pixels = Draw({".##.", "####"});
  skin.PictureSkin(Picture());
  EXPECT_EQ(form.Width(), 4000);
  form.Show();
  EXPECT_EQ(form.Width(), 4 * 15);
  EXPECT_EQ(form.Height(), 2 * 15);
  EXPECT_THAT(form.Shape(), ElementsAre(PixelRun{1, 3, 0}, PixelRun{0, 4, 1}));
  EXPECT_EQ(skin.GetBounds(), (ui::Bounds{0, 0, 60, 30}));
  EXPECT_EQ(PicSkin().GetBounds(), (ui::Bounds{0, 0, 60, 30}));
}

TEST_F(ctlShapeSkinTest, OnePixelOfThePictureIsOneOfTheScreenAtEveryScaling) {
  toolkit.twipsPerPixel = 10;
  toolkit.pixels = Draw({".##.", "####"});
  skin.PictureSkin(Picture());
  form.Show();
  EXPECT_EQ(form.Width(), 40);
  EXPECT_EQ(form.Height(), 20);
}

TEST_F(ctlShapeSkinTest, TheSkinGoesBehindTheOtherControls) {
  toolkit.pixels = Draw({".#"});
  skin.PictureSkin(Picture());
  form.Show();
  EXPECT_THAT(toolkit.TakeChanges(skin), testing::Contains(ui::Aspect::kOrder));
}

TEST_F(ctlShapeSkinTest, OfTwoSkinsTheFirstIsPutAtTheCorner) {
  ctlShapeSkin second(&form, "Second");
  skin.Move(300, 300, 10, 10);
  second.Move(500, 500, 10, 10);
  second.Move(500, 500, 20, 20);
  EXPECT_EQ(skin.Left(), 0);
  EXPECT_EQ(second.Left(), 500);
}

TEST_F(ctlShapeSkinTest, APictureInOneColourTakesTheShapeAwayAgain) {
  form.Shape({{1, 2, 0}});
  toolkit.pixels = Draw({"##", "##"});
  skin.PictureSkin(Picture());
  form.Show();
  EXPECT_THAT(form.Shape(), IsEmpty());
  EXPECT_EQ(form.Width(), 30);
}

TEST_F(ctlShapeSkinTest, APictureThatIsSetWhileTheWindowIsUpLeavesItsShape) {
  toolkit.pixels = Draw({".#"});
  skin.PictureSkin(Picture());
  form.Show();
  toolkit.pixels = Draw({"..##"});
  skin.PictureSkin(Picture());
  EXPECT_THAT(form.Shape(), ElementsAre(PixelRun{1, 2, 0}));
  EXPECT_EQ(PicSkin().Width(), 60);
}

TEST_F(ctlShapeSkinTest, WithoutAPictureTheWindowKeepsItsSize) {
  form.Show();
  EXPECT_EQ(form.Width(), 4000);
  EXPECT_EQ(form.Height(), 3000);
}

TEST_F(ctlShapeSkinTest, APressedMouseButtonDragsTheWindow) {
  toolkit.pixels = Draw({".#"});
  skin.PictureSkin(Picture());
  form.Show();
  PicSkin().UserMouseDown();
  EXPECT_EQ(toolkit.TakeDrags(form), 1);
}

TEST_F(ctlShapeSkinTest, ThePictureIsStoredAsTheBytesOfItsFileAndComesBack) {
  skin.PictureSkin(Picture());
  ui::PropertyBag bag;
  skin.WriteProperties(bag);
  EXPECT_THAT(bag.Properties(), ElementsAre(ui::PropertyBag::Property{
                                    "PictureSkin", std::vector{std::byte{'B'}, std::byte{'M'}}}));
  ctlShapeSkin other(&form, "Other");
  other.ReadProperties(bag);
  EXPECT_EQ(modPictureHelper::PictureToArray(other.PictureSkin()),
            (std::vector{std::byte{'B'}, std::byte{'M'}}));
}

TEST_F(ctlShapeSkinTest, ABagWithoutAPictureIsReadWithoutAWord) {
  skin.ReadProperties({});
  EXPECT_FALSE(skin.PictureSkin());
}

TEST_F(ctlShapeSkinTest, ABagWithAnotherTypeOfValueIsReadWithoutAWord) {
  skin.ReadProperties({{"PictureSkin", "text"}});
  EXPECT_FALSE(skin.PictureSkin());
}

TEST_F(ctlShapeSkinTest, SettingThePictureMarksItAsChangedAndReadingItDoesNot) {
  std::vector<std::string> changed;
  skin.PropertyChanged.Connect([&](const std::string& key) { changed.push_back(key); });
  skin.ReadProperties({{"PictureSkin", std::vector{std::byte{'B'}, std::byte{'M'}}}});
  EXPECT_THAT(changed, IsEmpty());
  skin.PictureSkin(Picture());
  EXPECT_THAT(changed, ElementsAre("PictureSkin"));
}

TEST_F(ctlShapeSkinTest, OnePixelOfThePictureIsOneOfItsMonitorWhateverTheScreensScaleIs) {
  toolkit.pixels = Draw({".##.", "####"});
  toolkit.monitorTwipsPerPixel = 10;
  skin.PictureSkin(Picture());
  form.Show();
  EXPECT_EQ(form.Width(), 40);
  EXPECT_EQ(form.Height(), 20);
  EXPECT_EQ(PicSkin().GetBounds(), (ui::Bounds{0, 0, 40, 20}));
}

TEST_F(ctlShapeSkinTest, AWindowThatComesToAMonitorOfAnotherScaleKeepsItsWholePicture) {
  toolkit.pixels = Draw({".##.", "####"});
  skin.PictureSkin(Picture());
  form.Show();
  toolkit.monitorTwipsPerPixel = 7.5;
  form.UserScaleChanged();
  EXPECT_EQ(form.Width(), 30);
  EXPECT_EQ(form.Height(), 15);
  EXPECT_EQ(skin.GetBounds(), (ui::Bounds{0, 0, 30, 15}));
  EXPECT_EQ(PicSkin().GetBounds(), (ui::Bounds{0, 0, 30, 15}));
  EXPECT_THAT(form.Shape(), ElementsAre(PixelRun{1, 3, 0}, PixelRun{0, 4, 1})) << "in pixels";
}

TEST_F(ctlShapeSkinTest, InADesignerAWindowsBoarderStyleBecomes0AndTheUserIsTold) {
  const auto window = std::make_shared<support::Script>();
  window->Answer("BoarderStyle", std::int32_t{2});
  window->Accept("BoarderStyle");
  support::ScriptedObject object(window);
  ctlShapeSkin::CheckInDesigner(object);
  EXPECT_THAT(window->calls, ElementsAre("get BoarderStyle", "put BoarderStyle = 0:32"));
  ASSERT_EQ(toolkit.messages.size(), 1u);
  EXPECT_EQ(toolkit.messages[0].text, "ctlShapeSkin Requires parent to have BoarderStyle = 0");
  EXPECT_EQ(toolkit.messages[0].icon, ui::MessageIcon::kCritical);
}

TEST_F(ctlShapeSkinTest, InADesignerAWindowWhoseBoarderStyleIs0OrThatHasNoneIsLeftAlone) {
  const auto window = std::make_shared<support::Script>();
  support::ScriptedObject object(window);
  ctlShapeSkin::CheckInDesigner(object);
  window->Answer("BoarderStyle", std::int32_t{0});
  ctlShapeSkin::CheckInDesigner(object);
  window->Answer("BoarderStyle", std::int32_t{1});
  ctlShapeSkin::CheckInDesigner(object);
  EXPECT_THAT(window->written, IsEmpty()) << "one that can't be written is no matter either";
  EXPECT_THAT(toolkit.messages, IsEmpty());
}

}  // namespace
