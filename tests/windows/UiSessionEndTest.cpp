#include <fstream>

#include "support/Role.h"
#include "support/Ui.h"

namespace {

using support::TestForm;

class UiSessionEndTest : public support::UiTest {
 protected:
  UiSessionEndTest() {
    first_.Load();
    second_.Load();
  }

  static bool Query(const TestForm& form) {
    return SendMessageA(form.Window(), WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF) != 0;
  }
  static void CallOff(const TestForm& form) {
    SendMessageA(form.Window(), WM_ENDSESSION, FALSE, ENDSESSION_LOGOFF);
  }

  TestForm first_{"frmFirst"};
  TestForm second_{"frmSecond"};
};

TEST_F(UiSessionEndTest, EveryWindowIsAskedByWindowsButEachFormOnlyOnce) {
  EXPECT_TRUE(Query(first_));
  EXPECT_TRUE(Query(second_));
  EXPECT_EQ(first_.asked, std::vector{ui::CloseReason::kSessionEnds});
  EXPECT_EQ(second_.asked, std::vector{ui::CloseReason::kSessionEnds});
  EXPECT_TRUE(first_.IsLoaded());
}

TEST_F(UiSessionEndTest, OneRefusalIsTheAnswerOfAllWindows) {
  second_.refuses = true;
  EXPECT_FALSE(Query(first_));
  EXPECT_FALSE(Query(second_));
  EXPECT_EQ(second_.asked.size(), 1u);
}

TEST_F(UiSessionEndTest, AnEndThatIsCalledOffIsForgotten) {
  EXPECT_TRUE(Query(first_));
  EXPECT_TRUE(Query(second_));
  CallOff(first_);
  CallOff(second_);
  EXPECT_TRUE(Query(second_));
  EXPECT_TRUE(Query(first_));
  EXPECT_EQ(first_.asked.size(), 2u);
}

TEST_F(UiSessionEndTest, AWindowThatIsAskedAgainBelongsToANewRound) {
  second_.refuses = true;
  EXPECT_FALSE(Query(first_));
  second_.refuses = false;
  EXPECT_TRUE(Query(first_));
  EXPECT_TRUE(Query(second_));
  EXPECT_EQ(first_.asked.size(), 2u);
  EXPECT_EQ(second_.asked.size(), 2u);
}

/// Writes down what it lives through until its session ends.
int EndSession(const std::vector<std::string>& arguments, bool ask) {
  const std::string& path = arguments.at(0);
  const auto note = [path](const char* line) { std::ofstream(path, std::ios::app) << line << '\n'; };
  struct Notes : TestForm {
    Notes(std::string name, std::function<void(const char*)> tell)
        : TestForm(std::move(name)), tell_(std::move(tell)) {}
    void OnQueryUnload(bool&, ui::CloseReason) override { tell_("asked"); }
    void OnUnload() override { tell_("unloaded"); }
    std::function<void(const char*)> tell_;
  };
  ui::win32::Win32Interface nativeInterface;
  auto mainWindow = std::make_unique<Notes>("frmMain", note);
  mainWindow->Load();
  TestForm other("frmOther");
  other.Load();
  nativeInterface.onSessionEnd = [&] {
    mainWindow->Unload();
    mainWindow.reset();
    // The other windows are told while the first one still saves.
    SendMessageA(other.Window(), WM_QUERYENDSESSION, 0, 0);
    SendMessageA(other.Window(), WM_ENDSESSION, TRUE, 0);
    note("saved");
    return true;
  };
  if (ask) {
    SendMessageA(mainWindow->Window(), WM_QUERYENDSESSION, 0, 0);
    SendMessageA(other.Window(), WM_QUERYENDSESSION, 0, 0);
  }
  SendMessageA(mainWindow->Window(), WM_ENDSESSION, TRUE, 0);
  note("still there");
  return 7;
}

const support::Role endSession("end-session", [](const std::vector<std::string>& arguments) {
  return EndSession(arguments, true);
});
const support::Role endSessionUnasked("end-session-unasked", [](const std::vector<std::string>& arguments) {
  return EndSession(arguments, false);
});

std::string NotesOf(const char* role) {
  const support::TemporaryFolder folder;
  const std::string path = folder.Path() + "\\notes.txt";
  const support::ChildProcess child(support::OwnProgram(), {role, path});
  EXPECT_EQ(child.ExitCode(), 0u);
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(UiSessionEnd, SavesInsideTheMessageAndEndsTheProcess) {
  EXPECT_EQ(NotesOf("end-session"), "asked\nasked\nunloaded\nsaved\n")
      << "asked about the session, then about the unloading by code";
}

TEST(UiSessionEnd, AnEndWithoutAQuestionBeforeStillSaves) {
  EXPECT_EQ(NotesOf("end-session-unasked"), "asked\nasked\nunloaded\nsaved\n");
}

}  // namespace
