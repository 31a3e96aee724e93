#include "driver/Controls.h"
#include "driver/Input.h"
#include "support/Files.h"
#include "support/Scene.h"

namespace {

/// Stands in for the user's browser: pages are opened by a program whose window has the page's path as its
/// title.
class Browser {
 public:
  Browser() {
    const std::string command = "\"" + BuiltFile(HARBOURLINE_WINDOW_PROGRAM) + "\" HelpPage \"%1\"";
    before_ = Read(".html");
    Write(".html", kType);
    Write(std::string(kType) + "\\shell\\open\\command", command);
  }
  ~Browser() {
    for (HWND page = FindWindowA(kClass, nullptr); page; page = FindWindowA(kClass, nullptr)) {
      PostMessageA(page, WM_SYSCOMMAND, SC_CLOSE, 0);
      WaitFor([&] { return !IsWindow(page); });
    }
    Write(".html", before_);
    RegDeleteTreeA(HKEY_CLASSES_ROOT, kType);
  }
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;

  /// True when the page is open, after a while at most; it is closed again.
  static bool Shows(const std::string& page) {
    const bool shown = WaitFor([&] {
      return FindWindowA(kClass, page.c_str()) && IsWindowVisible(FindWindowA(kClass, page.c_str()));
    });
    const HWND window = FindWindowA(kClass, page.c_str());
    PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    return shown && WaitFor([&] { return !IsWindow(window); });
  }

 private:
  static constexpr char kClass[] = "HelpPage";
  static constexpr char kType[] = "HarbourlineTest.Page";

  static std::string Read(const std::string& key) {
    char value[256] = "";
    LONG size = sizeof value;
    RegQueryValueA(HKEY_CLASSES_ROOT, key.c_str(), value, &size);
    return value;
  }
  static void Write(const std::string& key, const std::string& value) {
    RegSetValueA(HKEY_CLASSES_ROOT, key.c_str(), REG_SZ, value.c_str(), 0);
  }

  std::string before_;
};

class HelpTest : public Scene {
 protected:
  HelpTest() {
    settings::Write("Version", HARBOURLINE_VERSION);
    CreateDirectoryA((program.Folder() + "\\Help").c_str(), nullptr);
    for (const char* page : {"index", "1000", "3000", "4000", "7000", "8000", "9000", "9010"}) {
      WriteFile(Page(page), "a page");
    }
  }
  ~HelpTest() override {
    for (const char* page : {"index", "1000", "3000", "4000", "7000", "8000", "9000", "9010"}) {
      DeleteFileA(Page(page).c_str());
    }
    RemoveDirectoryA((program.Folder() + "\\Help").c_str());
  }

  std::string Page(const std::string& name) const { return program.Folder() + "\\Help\\" + name + ".html"; }
  /// Starts the program and opens its window, on that page of the tree, by a double click on the icon.
  bool OpenAt(const std::string& node) {
    settings::Write("LastMenuLocation", node);
    return program.StartAndWait() && WaitFor([this] {
             const auto icon = Program::Icon();
             if (!icon) return false;
             for (int click = 0; click < 2; ++click) {
               desktop::Click(icon->x, icon->y, desktop::MouseButton::kLeft);
             }
             const ULONGLONG end = GetTickCount64() + 1'000;
             while (!IsInFront() && GetTickCount64() < end) Sleep(20);
             return IsInFront();
           });
  }
  bool IsInFront() const { return GetForegroundWindow() == program.Find("frmMain"); }
  /// Presses keys when the window has the keyboard and keeps it.
  bool Press(const std::string& keys) const {
    return WaitFor([this] { return StaysSo(300, [this] { return IsInFront(); }); }) && desktop::Type(keys);
  }
  bool ClickOn(const std::string& control) const {
    if (!WaitFor([this] { return StaysSo(300, [this] { return IsInFront(); }); })) return false;
    const HWND window = WaitFor([&] { return desktop::FindControl("Harbourline.exe", control); });
    RECT place{};
    return GetWindowRect(window, &place) &&
           desktop::Click((place.left + place.right) / 2, (place.top + place.bottom) / 2,
                          desktop::MouseButton::kLeft);
  }

  Browser browser;
};

TEST_F(HelpTest, TheHelpKeyOpensTheTopicOfThePageThatIsOpen) {
  ASSERT_TRUE(OpenAt("WindowsConfiguration"));
  ASSERT_TRUE(Press("{F1}"));
  EXPECT_TRUE(Browser::Shows(Page("4000")));
  EXPECT_TRUE(program.Exit());
}

TEST_F(HelpTest, OnTheImportPageTheFocusTellsWhichTopicIsOpened) {
  ASSERT_TRUE(OpenAt("PortForwardingImport"));
  ASSERT_TRUE(Press("{F1}"));
  EXPECT_TRUE(Browser::Shows(Page("8000")))
      << "the tree has the focus, and the window has the topic of importing";
  ASSERT_TRUE(Press("{TAB}{F1}"));
  EXPECT_TRUE(Browser::Shows(Page("8000"))) << "the button has the topic of importing";
  EXPECT_TRUE(program.Exit());
}

TEST_F(HelpTest, AProfileThatIsEditedHasATopicOfItsOwn) {
  ASSERT_TRUE(OpenAt("PortForwardingProfiles"));
  ASSERT_TRUE(Press("{F1}"));
  EXPECT_TRUE(Browser::Shows(Page("9000")));
  const HWND tools = desktop::FindControl("Harbourline.exe", "ctlMapProfile.tbProfiles");
  const RECT add = desktop::ItemsOf(tools).at(0).place;
  ASSERT_TRUE(WaitFor([this] { return StaysSo(300, [this] { return IsInFront(); }); }));
  ASSERT_TRUE(
      desktop::Click((add.left + add.right) / 2, (add.top + add.bottom) / 2, desktop::MouseButton::kLeft));
  ASSERT_TRUE(ClickOn("ctlProfile.txtName"));
  ASSERT_TRUE(Press("{F1}"));
  EXPECT_TRUE(Browser::Shows(Page("9010")));
  EXPECT_TRUE(program.Exit());
}

TEST_F(HelpTest, ThePageHelpAndTheMenuOpenTheContents) {
  ASSERT_TRUE(OpenAt("Help"));
  ASSERT_TRUE(Press("{F1}"));
  EXPECT_TRUE(Browser::Shows(Page("index")));
  ASSERT_TRUE(ClickOn("ctlHelp.cmdHelp"));
  EXPECT_TRUE(Browser::Shows(Page("index")));
  ASSERT_TRUE(program.Choose("h"));
  EXPECT_TRUE(Browser::Shows(Page("index")));
  EXPECT_TRUE(program.Exit());
}

TEST_F(HelpTest, AMissingPageLeavesTheProgramRunning) {
  DeleteFileA(Page("index").c_str());
  ASSERT_TRUE(OpenAt("Help"));
  ASSERT_TRUE(Press("{F1}"));
  // Windows tells what is missing.
  if (WaitFor([this] { return program.FindBox(); })) desktop::Type("{ENTER}");
  EXPECT_TRUE(WaitFor([this] { return !program.FindBox(); }));
  EXPECT_TRUE(program.Exit());
}

/// The title window, with the setting that shows it.
class TitleTest : public Scene {
 protected:
  TitleTest() {
    settings::Write("Version", HARBOURLINE_VERSION);
    settings::Write("ShowSplashOnStartup", "True");
  }

  bool IsUp() const { return IsWindowVisible(program.Find("frmSplash")) != FALSE; }
};

TEST_F(TitleTest, TheTitleWindowHasThePicturesSizeAndShapeAndGoesAfterSevenSeconds) {
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(WaitFor([this] { return IsUp(); }));
  RECT place{};
  GetWindowRect(program.Find("frmSplash"), &place);
  EXPECT_EQ(place.right - place.left, 500);
  EXPECT_EQ(place.bottom - place.top, 375);
  EXPECT_TRUE(StaysSo(3'000, [this] { return IsUp(); }));
  EXPECT_TRUE(WaitFor([this] { return !IsUp(); }));
  EXPECT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("ShowSplashOnStartup"), "True");
}

TEST_F(TitleTest, TheProgramCanBeExitedWhileTheTitleWindowIsUp) {
  ASSERT_TRUE(program.StartAndWait());
  ASSERT_TRUE(WaitFor([this] { return IsUp(); }));
  EXPECT_TRUE(program.Exit());
  EXPECT_EQ(program.ExitCode(), 0u);
}

}  // namespace
