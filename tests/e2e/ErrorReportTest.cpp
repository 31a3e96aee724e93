#include <regex>

#include "support/Scene.h"

namespace {

/// The errors that a router's event source reports while the program runs.
class ErrorReportTest : public Scene {
 protected:
  void SetUp() override {
    SelectRecording();
    ASSERT_TRUE(StartWithRouter());
  }

  static void Report(const std::string& error) {
    ASSERT_TRUE(WaitFor([&] { return Recording::Raise(Recording::kClass, "Error|" + error); }));
  }
  HWND WaitForReport() const {
    return WaitFor([this] {
      const HWND window = program.Find("frmErrors");
      return window && IsWindowVisible(window) ? window : nullptr;
    });
  }
  static std::string TextOf(HWND report, const std::string& className) {
    for (const desktop::Window& part : desktop::Inside(report)) {
      if (part.className.rfind(className, 0) == 0) return part.text;
    }
    return "(no " + className + ")";
  }
  /// Waits for the list of errors, with "(time)" for each time of day; what it is in the end.
  static std::string WaitForErrors(HWND report, const std::string& wanted) {
    static const std::regex time("[0-9]{1,2}:[0-9]{2}:[0-9]{2} [AP]M - ");
    std::string errors;
    WaitFor([&] {
      errors = std::regex_replace(TextOf(report, "RichEdit"), time, "(time) - ");
      return errors == wanted;
    });
    return errors;
  }
};

TEST_F(ErrorReportTest, TheFirstErrorBringsUpTheReportWithItsTimeAndNumber) {
  EXPECT_FALSE(program.Find("frmErrors")) << "without an error there is no report";
  Report("The line is down|5");
  const HWND report = WaitForReport();
  ASSERT_TRUE(report);
  EXPECT_EQ(desktop::TextOf(report), "Harbourline - Error Report");
  EXPECT_EQ(TextOf(report, "Static"), "The following errors occured during this session.");
  const std::string one = "(time) - The line is down (5)\r\n";
  EXPECT_EQ(WaitForErrors(report, one), one);
  EXPECT_FALSE(IsWindowVisible(program.Find("frmMain"))) << "the main window stays closed";
  EXPECT_FALSE(program.FindBox());
  EXPECT_THAT(recording.Lines(),
              testing::Contains("Harbourline.Recording raised Error|The line is down|5 -> 00000000"));
  EXPECT_TRUE(program.Exit());
}

TEST_F(ErrorReportTest, AClosedReportComesBackWithAllThatItHad) {
  Report("One|1");
  Report("|0");
  Report("Drei \xE4|-32768");
  const HWND report = WaitForReport();
  ASSERT_TRUE(report);
  const std::string three = "(time) - One (1)\r\n(time) -  (0)\r\n(time) - Drei \xE4 (-32768)\r\n";
  EXPECT_EQ(WaitForErrors(report, three), three);
  PostMessageA(report, WM_SYSCOMMAND, SC_CLOSE, 0);
  ASSERT_TRUE(WaitFor([=] { return !IsWindowVisible(report); }));
  EXPECT_TRUE(IsWindow(report)) << "closed by the user it only hides";

  Report("Four|4");
  EXPECT_EQ(WaitForReport(), report);
  const std::string four = three + "(time) - Four (4)\r\n";
  EXPECT_EQ(WaitForErrors(report, four), four);
  EXPECT_TRUE(program.Exit()) << "an open report doesn't keep the program";
}

}  // namespace
