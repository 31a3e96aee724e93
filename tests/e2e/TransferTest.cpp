#include "driver/Controls.h"
#include "driver/Input.h"
#include "support/Files.h"
#include "support/MainWindow.h"
#include "support/Scene.h"

namespace {

using testing::HasSubstr;

/// Profiles out to a file and in again, through the system's own dialogs.
class TransferTest : public Scene {
 protected:
  static constexpr char kList[] = "ctlExport.lvProfiles";
  static constexpr char kButton[] = "ctlExport.cmdExecute.cmdBrowse";
  static constexpr char kExport[] = "Select Export Output File";
  static constexpr char kImport[] = "Select Import Source File";

  TransferTest() { SelectRecording(); }

  void Open(const std::vector<std::string>& names) {
    StoreProfiles(names);
    ASSERT_TRUE(program.StartAndWait());
    ASSERT_TRUE(window.Open());
  }
  std::string File() const { return program.Folder() + "\\games.prf"; }
  /// The dialog of that title, the question about overwriting aside.
  static HWND Dialog(const std::string& title) {
    for (const desktop::Window& shown : desktop::TopLevelWindows()) {
      if (shown.text == title && !HasButton(shown.handle, "No")) return shown.handle;
    }
    return nullptr;
  }
  static bool HasButton(HWND box, const std::string& caption) {
    for (const desktop::Window& part : desktop::Inside(box)) {
      if (part.className == "Button" && Replaced(part.text, "&", "") == caption) return true;
    }
    return false;
  }
  /// Types the file's name into the dialog, whose box for it has the keyboard, and presses Enter.
  bool ChooseFile(const std::string& title) const {
    const HWND dialog = WaitFor([&] { return Dialog(title); });
    if (!dialog || !WaitFor([=] { return GetForegroundWindow() == dialog; })) return false;
    return window.Type("games.prf{ENTER}");
  }
  /// The question that comes up when the file is there already; it has the dialog's title.
  static std::optional<Box> WaitForQuestion() {
    return WaitFor([]() -> std::optional<Box> {
      for (const desktop::Window& shown : desktop::TopLevelWindows()) {
        if (shown.text == kExport && HasButton(shown.handle, "No"))
          return Box{shown.handle, shown.text, {}, {}};
      }
      return std::nullopt;
    });
  }
  /// Ticks or unticks a profile of the list.
  bool Tick(const std::string& name) const {
    if (!window.ClickItem(kList, name)) return false;
    for (const desktop::Item& item : desktop::ItemsOf(MainWindow::Control(kList))) {
      // The tick stands in front of the text.
      constexpr LONG kInFront = 8;
      if (item.text == name) {
        return desktop::Click(item.place.left - kInFront, (item.place.top + item.place.bottom) / 2,
                              desktop::MouseButton::kLeft);
      }
    }
    return false;
  }
  bool IsToldOnce(const std::string& text) const {
    // The dialog may not have gone yet.
    const auto box = WaitFor([this]() -> std::optional<Box> {
      auto found = program.FindBox();
      return found && found->title == "Harbourline" ? found : std::nullopt;
    });
    if (!box) return false;
    EXPECT_EQ(box->text, text);
    return Program::Press(*box, "OK") && !program.FindBox();
  }

  MainWindow window{program};
};

TEST_F(TransferTest, TickedProfilesGoIntoTheFileThatTheDialogNames) {
  Open({"Chess", "Game", "Voice"});
  ASSERT_TRUE(window.OpenPage("Export", kList));
  EXPECT_FALSE(MainWindow::IsEnabled(kButton));
  ASSERT_TRUE(Tick("Voice"));
  ASSERT_TRUE(WaitFor([] { return MainWindow::IsEnabled(kButton); }));
  ASSERT_TRUE(Tick("Voice"));
  ASSERT_TRUE(WaitFor([] { return !MainWindow::IsEnabled(kButton); })) << "the last tick is off again";
  ASSERT_TRUE(Tick("Voice"));
  ASSERT_TRUE(Tick("Chess"));
  ASSERT_TRUE(WaitFor([] { return MainWindow::IsEnabled(kButton); }));
  ASSERT_TRUE(window.Click(kButton));
  ASSERT_TRUE(ChooseFile(kExport));
  ASSERT_TRUE(IsToldOnce("Export Complete Successfully"));
  const std::string file = ReadFile(File());
  EXPECT_THAT(file, testing::StartsWith("<MapProfile Name=\"Chess\""));
  EXPECT_THAT(file, HasSubstr("<MapProfile Name=\"Voice\""));
  EXPECT_THAT(file, testing::Not(HasSubstr("Game")));
  EXPECT_TRUE(program.Exit());
}

TEST_F(TransferTest, AFileThatIsThereIsAskedAboutBeforeItIsOverwritten) {
  WriteFile(File(), "as before");
  Open({"Game"});
  ASSERT_TRUE(window.OpenPage("Export", kList));
  ASSERT_TRUE(Tick("Game"));
  ASSERT_TRUE(WaitFor([] { return MainWindow::IsEnabled(kButton); }));
  ASSERT_TRUE(window.Click(kButton));
  ASSERT_TRUE(ChooseFile(kExport));
  auto question = WaitForQuestion();
  ASSERT_TRUE(question);
  ASSERT_TRUE(Program::Press(*question, "No"));
  EXPECT_EQ(ReadFile(File()), "as before");
  ASSERT_TRUE(Dialog(kExport)) << "another name can be chosen";
  ASSERT_TRUE(window.Type("{ENTER}"));
  question = WaitForQuestion();
  ASSERT_TRUE(question);
  ASSERT_TRUE(Program::Press(*question, "Yes"));
  ASSERT_TRUE(IsToldOnce("Export Complete Successfully"));
  EXPECT_THAT(ReadFile(File()), testing::StartsWith("<MapProfile Name=\"Game\""));
  EXPECT_TRUE(program.Exit());
}

TEST_F(TransferTest, ACancelledDialogWritesNothing) {
  Open({"Game"});
  ASSERT_TRUE(window.OpenPage("Export", kList));
  ASSERT_TRUE(Tick("Game"));
  ASSERT_TRUE(window.Click(kButton));
  ASSERT_TRUE(WaitFor([] { return Dialog(kExport); }));
  ASSERT_TRUE(window.Type("{ESC}"));
  ASSERT_TRUE(WaitFor([] { return !Dialog(kExport); }));
  EXPECT_FALSE(program.FindBox());
  EXPECT_EQ(ReadFile(File()), "(no file)");
  EXPECT_TRUE(program.Exit());
}

TEST_F(TransferTest, AnImportedFileBringsItsProfilesUnderNumberedNamesIntoTheListAndTheStore) {
  WriteFile(File(),
            "<MapProfile Name=\"Game\" Description=\"from a friend\" WindowTitle=\"\" WindowClass=\"\" "
            "AutoActivate=False Enabled=False>\r\n"
            "<Mapping Description=\"Game\" BeginPort=27015 EndPort=27030 Protocal=1 ForwardIPAddress=-1>\r\n"
            "</Mapping>\r\n</MapProfile>\r\n");
  Open({"Game"});
  ASSERT_TRUE(window.OpenPage("Import", kButton));
  EXPECT_TRUE(MainWindow::IsEnabled(kButton));
  ASSERT_TRUE(window.Click(kButton));
  ASSERT_TRUE(ChooseFile(kImport));
  ASSERT_TRUE(IsToldOnce("Import Complete Successfully"));
  ASSERT_TRUE(window.OpenPage("Export", kList));
  EXPECT_EQ(MainWindow::Texts(kList), (std::vector<std::string>{"Game", "Game(1)"}));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("MP_2_Name"), "Game(1)");
  EXPECT_EQ(settings::Read("MP_2_Description"), "from a friend");
  EXPECT_EQ(settings::Read("MP_2_MAP_1_EndPort"), "27030");
}

TEST_F(TransferTest, WithoutProfilesTheExportPageShowsItsTitleAndTheReasonOnly) {
  Open({});
  ASSERT_TRUE(window.OpenPage("Export", "ctlExport.lblError"));
  EXPECT_EQ(MainWindow::TextOf("ctlExport.lblError"), "No profiles are available for exporting.");
  EXPECT_EQ(MainWindow::TextOf("ctlExport.lblTitle"), "Export Profile Data");
  EXPECT_FALSE(IsWindowVisible(desktop::FindControl("Harbourline.exe", kList)));
  EXPECT_FALSE(IsWindowVisible(desktop::FindControl("Harbourline.exe", kButton)));
  EXPECT_TRUE(program.Exit());
}

}  // namespace
