#include "support/Ui.h"
#include "ui/win32/Fonts.h"
#include "ui/win32/Win32Screen.h"

namespace {

class UiScreenTest : public support::UiTest {};

TEST_F(UiScreenTest, TwipsPerPixelFollowTheResolution) {
  const HDC context = GetDC(nullptr);
  const int dots = GetDeviceCaps(context, LOGPIXELSX);
  ReleaseDC(nullptr, context);
  EXPECT_EQ(ui::TheInterface().screen->TwipsPerPixelX(), 1440.0f / static_cast<float>(dots));
  EXPECT_EQ(ui::win32::TwipsPerPixel(96), 15.0f);
  EXPECT_EQ(ui::win32::TwipsPerPixel(192), 7.5f);
}

TEST_F(UiScreenTest, ASmallIconHasTheSizeOfSmallIconsAndIsMadeOnce) {
  ui::Screen& screen = *ui::TheInterface().screen;
  const auto handle = screen.SmallIcon(ui::ResourcePicture("NETLIGHT01"));
  ASSERT_NE(handle, 0u);
  EXPECT_EQ(screen.SmallIcon(ui::ResourcePicture("NETLIGHT01")), handle);
  EXPECT_NE(screen.SmallIcon(ui::ResourcePicture("NETLIGHT02")), handle);
  ICONINFO info{};
  ASSERT_TRUE(GetIconInfo(reinterpret_cast<HICON>(handle), &info));
  BITMAP bitmap{};
  GetObjectA(info.hbmColor, sizeof bitmap, &bitmap);
  EXPECT_EQ(bitmap.bmWidth, GetSystemMetrics(SM_CXSMICON));
  DeleteObject(info.hbmColor);
  DeleteObject(info.hbmMask);
}

TEST_F(UiScreenTest, NoPictureAndAnUnknownOneHaveNoIcon) {
  ui::Screen& screen = *ui::TheInterface().screen;
  EXPECT_EQ(screen.SmallIcon(nullptr), 0u);
  EXPECT_EQ(screen.SmallIcon(ui::ResourcePicture("NOSUCHPICTURE")), 0u);
}

TEST_F(UiScreenTest, AllPicturesOfTheProgramAreThere) {
  ui::Screen& screen = *ui::TheInterface().screen;
  EXPECT_NE(screen.SmallIcon(ui::ResourcePicture("HARBOURLINE")), 0u);
  for (int i = 1; i <= 20; ++i) {
    const std::string name = std::string(i < 10 ? "NETLIGHT0" : "NETLIGHT") + std::to_string(i);
    EXPECT_NE(screen.SmallIcon(ui::ResourcePicture(name)), 0u) << name;
  }
}

TEST_F(UiScreenTest, FontsAreMadeOnceInTheSizeAndWeightAsked) {
  constexpr ui::win32::Scale kPlain(96);
  ui::win32::Fonts fonts;
  const HFONT body = fonts.Get(ui::BodyFont(), kPlain);
  EXPECT_EQ(fonts.Get(ui::BodyFont(), kPlain), body);
  LOGFONTA font{};
  GetObjectA(body, sizeof font, &font);
  EXPECT_EQ(font.lfHeight, -13);
  EXPECT_EQ(font.lfWeight, FW_NORMAL);
  GetObjectA(fonts.Get({"Comic Sans MS", 20.25, true}, kPlain), sizeof font, &font);
  EXPECT_EQ(font.lfHeight, -27);
  EXPECT_EQ(font.lfWeight, FW_BOLD);
  GetObjectA(fonts.Get(ui::BodyFont(), ui::win32::Scale(192)), sizeof font, &font);
  EXPECT_EQ(font.lfHeight, -26) << "twice as large at twice the scale";
}

TEST_F(UiScreenTest, AFontThatIsMissingHasAStandIn) {
  const std::string name = ui::win32::Fonts::InstalledName("Comic Sans MS");
  EXPECT_TRUE(name == "Comic Sans MS" || name == "Comic Neue") << name;
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  EXPECT_EQ(ui::win32::Fonts::InstalledName("No Font Is Called Like This"), metrics.lfMessageFont.lfFaceName);
}

}  // namespace
