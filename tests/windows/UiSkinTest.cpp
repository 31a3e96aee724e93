#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>

#include <cstring>

#include "shell/frmSplash.h"
#include "support/Ui.h"
#include "ui/ctlShapeSkin.h"
#include "ui/modPictureHelper.h"
#include "ui/win32/Scale.h"

namespace {

/// A bitmap file of 24 bits a pixel, read without the program's help.
class TitleFile {
 public:
  TitleFile() : bytes_(ui::TheInterface().screen->Resource("TITLE")) {
    std::memcpy(&file_, bytes_.data(), sizeof file_);
    std::memcpy(&info_, bytes_.data() + sizeof file_, sizeof info_);
  }
  LONG Width() const { return info_.biWidth; }
  LONG Height() const { return info_.biHeight; }
  WORD Bits() const { return info_.biBitCount; }
  /// 0xRRGGBB; the rows of the file go from the bottom to the top.
  std::uint32_t At(LONG x, LONG y) const {
    const LONG row = (Width() * 3 + 3) / 4 * 4;
    std::uint32_t color = 0;
    std::memcpy(&color, bytes_.data() + file_.bfOffBits + (Height() - 1 - y) * row + 3 * x, 3);
    return color;
  }

 private:
  std::vector<std::byte> bytes_;
  BITMAPFILEHEADER file_{};
  BITMAPINFOHEADER info_{};
};

class UiSkinTest : public support::UiTest {
 protected:
  HWND Window() const { return reinterpret_cast<HWND>(splash_.Handle()); }
  RECT Place() const {
    RECT place{};
    GetWindowRect(Window(), &place);
    return place;
  }
  frmSplash splash_;
};

TEST_F(UiSkinTest, TheTitlePictureHas500By375PixelsOf24Bits) {
  const TitleFile title;
  EXPECT_EQ(title.Width(), 500);
  EXPECT_EQ(title.Height(), 375);
  EXPECT_EQ(title.Bits(), 24);
}

TEST_F(UiSkinTest, ThePixelsAreReadAsTheyStandInTheFile) {
  const TitleFile title;
  const ui::Pixels pixels = ui::TheInterface().screen->PixelsOf(ui::ResourcePicture("TITLE"));
  ASSERT_EQ(pixels.width, title.Width());
  ASSERT_EQ(pixels.height, title.Height());
  LONG different = 0;
  for (LONG y = 0; y < title.Height(); ++y) {
    for (LONG x = 0; x < title.Width(); ++x) different += pixels.At(x, y) != title.At(x, y);
  }
  EXPECT_EQ(different, 0);
}

TEST_F(UiSkinTest, TheTitleWindowIsThereWhereItsPictureHasAnotherColourThanItsCorner) {
  splash_.Show();
  EXPECT_EQ(Place().right - Place().left, 500);
  EXPECT_EQ(Place().bottom - Place().top, 375);
  const TitleFile title;
  const HRGN region = CreateRectRgn(0, 0, 0, 0);
  ASSERT_EQ(GetWindowRgn(Window(), region), COMPLEXREGION);
  LONG different = 0;
  for (LONG y = 0; y < title.Height(); ++y) {
    for (LONG x = 0; x < title.Width(); ++x) {
      different += (PtInRegion(region, x, y) != FALSE) != (title.At(x, y) != title.At(0, 0));
    }
  }
  EXPECT_EQ(different, 0);
  DeleteObject(region);
}

TEST_F(UiSkinTest, TheTitleWindowStandsInTheMiddleOfTheScreen) {
  splash_.Show();
  RECT work;
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
  EXPECT_NEAR(Place().left - work.left, work.right - Place().right, 1);
  EXPECT_NEAR(Place().top - work.top, work.bottom - Place().bottom, 1);
}

TEST_F(UiSkinTest, TheWholePictureIsThereOnAMonitorOfAnotherScale) {
  splash_.Show();
  const auto dots = static_cast<WORD>(2 * ui::win32::Scale::Of(Window()).DotsPerInch());
  RECT suggested{40, 50, 1040, 800};
  SendMessageA(Window(), WM_DPICHANGED, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(&suggested));
  ui::TheInterface().toolkit->ProcessPendingEvents();
  EXPECT_EQ(Place().left, 40);
  EXPECT_EQ(Place().top, 50);
  EXPECT_EQ(Place().right - Place().left, 500);
  EXPECT_EQ(Place().bottom - Place().top, 375);
  const HWND picture = GetWindow(GetWindow(Window(), GW_CHILD), GW_CHILD);
  ASSERT_EQ(support::ControlNameOf(picture), "picSkin");
  RECT place{};
  GetWindowRect(picture, &place);
  const RECT whole = Place();
  EXPECT_TRUE(EqualRect(&place, &whole));
}

TEST_F(UiSkinTest, AShapeWithoutRunsIsTheWholeRectangle) {
  splash_.Show();
  splash_.Shape({});
  const HRGN region = CreateRectRgn(0, 0, 0, 0);
  EXPECT_EQ(GetWindowRgn(Window(), region), ERROR);
  DeleteObject(region);
}

/// Takes the messages by which a window is dragged, and drags it nowhere.
struct Drags {
  explicit Drags(HWND window) : window_(window) {
    SetWindowSubclass(window, &Take, 1, reinterpret_cast<DWORD_PTR>(this));
  }
  ~Drags() { RemoveWindowSubclass(window_, &Take, 1); }
  static LRESULT CALLBACK Take(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR self) {
    if (message != WM_NCLBUTTONDOWN) return DefSubclassProc(window, message, wParam, lParam);
    auto& drags = *reinterpret_cast<Drags*>(self);
    drags.places.push_back(wParam);
    drags.captured = drags.captured || GetCapture() != nullptr;
    return 0;
  }

  std::vector<WPARAM> places;
  bool captured = false;

 private:
  HWND window_;
};

TEST_F(UiSkinTest, EveryMouseButtonThatIsPressedOnThePictureDragsTheWindowAsByItsTitleBar) {
  splash_.Show();
  const Drags drags(Window());
  const HWND picture = GetWindow(GetWindow(Window(), GW_CHILD), GW_CHILD);
  ASSERT_EQ(support::ControlNameOf(picture), "picSkin");
  SetCapture(picture);
  for (const UINT message : {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN}) {
    PostMessageA(picture, message, 0, MAKELPARAM(250, 187));
  }
  EXPECT_TRUE(RunUntil([&] { return drags.places.size() == 3; }));
  EXPECT_THAT(drags.places, testing::Each(HTCAPTION));
  EXPECT_FALSE(drags.captured);
}

}  // namespace
