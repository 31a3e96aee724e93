#include "ui/Image.h"

#include <cmath>

#include "support/Ui.h"
#include "ui/Button.h"
#include "ui/win32/NativeBitmap.h"
#include "ui/win32/Scale.h"

namespace {

constexpr ui::Color kCream = ui::Rgb(253, 235, 200);

/// A bitmap file of 24 bits a pixel: the left half red, the right half blue.
ui::PictureRef RedAndBlue(int width, int height) {
  const int row = (width * 3 + 3) / 4 * 4;
  BITMAPFILEHEADER file{};
  file.bfType = 0x4D42;
  file.bfOffBits = sizeof file + sizeof(BITMAPINFOHEADER);
  file.bfSize = file.bfOffBits + static_cast<DWORD>(row * height);
  BITMAPINFOHEADER info{};
  info.biSize = sizeof info;
  info.biWidth = width;
  info.biHeight = height;
  info.biPlanes = 1;
  info.biBitCount = 24;
  std::vector<std::byte> bytes;
  const auto add = [&bytes](const auto& part) {
    const auto* begin = reinterpret_cast<const std::byte*>(&part);
    bytes.insert(bytes.end(), begin, begin + sizeof part);
  };
  add(file);
  add(info);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < row; ++x) {
      const bool left = x / 3 < width / 2;
      bytes.push_back(std::byte(x % 3 == (left ? 2 : 0) ? 0xFF : 0));
    }
  }
  return std::make_shared<const ui::Picture>(ui::Picture{{}, std::move(bytes)});
}

class UiImageTest : public support::UiTest {
 protected:
  UiImageTest() {
    form_.BackColor(kCream);
    image_.Move(150, 150, Twips(64), Twips(32));
    form_.Show();
  }

  /// A length of so many pixels of this screen.
  static ui::Twips Twips(int pixels) { return ui::win32::Scale::OfScreen().ToTwips(pixels); }
  HWND Native() const { return reinterpret_cast<HWND>(image_.GetPeer()->Handle()); }
  COLORREF PixelAt(int x, int y) const {
    RedrawWindow(Native(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    const HDC context = GetDC(Native());
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(Native(), context);
    return color;
  }
  bool IsAllGround() const {
    const SIZE inner = support::InnerSize(Native());
    for (int y = 0; y < inner.cy; ++y) {
      for (int x = 0; x < inner.cx; ++x) {
        if (PixelAt(x, y) != static_cast<COLORREF>(kCream)) return false;
      }
    }
    return true;
  }

  support::TestForm form_{"frmTest", {}, 6000, 4000};
  ui::Image image_{&form_, "imgTest"};
};

TEST_F(UiImageTest, ABitmapFillsItsControlInItsOwnColours) {
  image_.Picture(RedAndBlue(64, 32));
  EXPECT_EQ(PixelAt(0, 0), static_cast<COLORREF>(RGB(255, 0, 0)));
  EXPECT_EQ(PixelAt(31, 31), static_cast<COLORREF>(RGB(255, 0, 0)));
  EXPECT_EQ(PixelAt(32, 0), static_cast<COLORREF>(RGB(0, 0, 255)));
  EXPECT_EQ(PixelAt(63, 31), static_cast<COLORREF>(RGB(0, 0, 255)));
}

TEST_F(UiImageTest, ABitmapIsScaledWithItsProportionsAndTheRestIsTheGround) {
  image_.Picture(RedAndBlue(32, 32));
  image_.Move(150, 150, Twips(128), Twips(64));
  EXPECT_EQ(PixelAt(30, 10), static_cast<COLORREF>(kCream));
  EXPECT_EQ(PixelAt(33, 10), static_cast<COLORREF>(RGB(255, 0, 0)));
  EXPECT_EQ(PixelAt(94, 60), static_cast<COLORREF>(RGB(0, 0, 255)));
  EXPECT_EQ(PixelAt(97, 60), static_cast<COLORREF>(kCream));
}

TEST_F(UiImageTest, AnIconStandsOnTheGroundOfItsPage) {
  EXPECT_TRUE(IsAllGround()) << "nothing to show yet";
  image_.Picture(ui::ResourcePicture("HARBOURLINE"));
  EXPECT_FALSE(IsAllGround());
  EXPECT_EQ(PixelAt(2, 2), static_cast<COLORREF>(kCream)) << "beside the icon";
  image_.Picture(nullptr);
  EXPECT_TRUE(IsAllGround());
}

TEST_F(UiImageTest, AJpegOfTheProgramIsShown) {
  const ui::win32::NativeBitmap bitmap(*ui::ResourcePicture("CHICKENS"), {256, 192});
  ASSERT_NE(bitmap.Handle(), nullptr);
  EXPECT_EQ(bitmap.Size().cx, 256);
  EXPECT_EQ(bitmap.Size().cy, 192);
  image_.Picture(ui::ResourcePicture("CHICKENS"));
  EXPECT_NE(PixelAt(32, 16), static_cast<COLORREF>(kCream));
}

TEST_F(UiImageTest, APictureThatCanNotBeReadShowsTheGround) {
  image_.Picture(ui::ResourcePicture("NOSUCHPICTURE"));
  EXPECT_TRUE(IsAllGround());
  ui::Picture broken = *RedAndBlue(64, 32);
  broken.bitmapFile.resize(20);
  image_.Picture(std::make_shared<const ui::Picture>(std::move(broken)));
  EXPECT_TRUE(IsAllGround());
}

TEST_F(UiImageTest, EveryMouseButtonIsReported) {
  int downs = 0;
  image_.MouseDown.Connect([&] { ++downs; });
  RECT place{};
  GetWindowRect(Native(), &place);
  support::ClickAt(place.left + 5, place.top + 5);
  EXPECT_TRUE(RunUntil([&] { return downs == 1; }));
  PostMessageA(Native(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
  EXPECT_TRUE(RunUntil([&] { return downs == 2; }));
}

TEST_F(UiImageTest, AHandlerOfTheMouseMayUnloadTheWindow) {
  image_.MouseDown.Connect([this] { form_.Unload(); });
  PostMessageA(Native(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  EXPECT_TRUE(RunUntil([this] { return !form_.IsLoaded(); }));
}

TEST_F(UiImageTest, AButtonHasThePictureInTheSizeThatItHasRoomFor) {
  const auto side = [](const ui::Button& button) {
    const auto window = reinterpret_cast<HWND>(button.GetPeer()->Handle());
    const auto icon = reinterpret_cast<HICON>(SendMessageA(window, BM_GETIMAGE, IMAGE_ICON, 0));
    ICONINFO info{};
    BITMAP bitmap{};
    if (!GetIconInfo(icon, &info)) return 0L;
    GetObjectA(info.hbmColor, sizeof bitmap, &bitmap);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    return bitmap.bmWidth;
  };
  ui::Button small(&form_, "cmdSmall", "&Small");
  ui::Button large(&form_, "cmdLarge", "&Large");
  ui::Button none(&form_, "cmdNone", "&None");
  small.Move(0, 1000, 1500, 420);
  large.Move(0, 1500, 1500, 700);
  none.Move(0, 2300, 1500, 420);
  small.Picture(ui::ResourcePicture("ACCEPT"));
  large.Picture(ui::ResourcePicture("ACCEPT"));
  for (ui::Button* button : {&small, &large, &none}) button->AttachPeers();
  EXPECT_EQ(side(small), std::lround(16 * 15 / ui::TheInterface().screen->TwipsPerPixelX()));
  EXPECT_EQ(side(large), std::lround(32 * 15 / ui::TheInterface().screen->TwipsPerPixelX()));
  EXPECT_EQ(side(none), 0);
  EXPECT_EQ(support::TextOf(reinterpret_cast<HWND>(large.GetPeer()->Handle())), "&Large");
  none.Picture(ui::ResourcePicture("CANCEL"));
  EXPECT_NE(side(none), 0);
  none.Picture(nullptr);
  EXPECT_EQ(side(none), 0);
}

}  // namespace
