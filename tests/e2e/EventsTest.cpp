#include <algorithm>
#include <atomic>
#include <thread>

#include "driver/Controls.h"
#include "support/Files.h"
#include "support/Scene.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// Event sources that do what they shouldn't, through real COM.
class EventsTest : public Scene {
 protected:
  EventsTest() { SelectRecording(); }

  static bool Raise(const std::string& event) {
    return WaitFor([&] { return Recording::Raise(Recording::kClass, event); });
  }
  /// What came back to the plug-in for its newest event.
  std::string Outcome() const {
    std::string newest;
    for (const std::string& line : recording.Lines()) {
      if (line.find(" raised ") != line.npos) newest = line.substr(line.rfind(" -> ") + 4);
    }
    return newest;
  }
  std::vector<std::string> Outcomes(const std::string& event) const {
    std::vector<std::string> outcomes;
    const std::string begin = "Harbourline.Recording raised " + event;
    for (const std::string& line : recording.Lines()) {
      if (line.rfind(begin, 0) == 0) outcomes.push_back(line.substr(line.rfind(" -> ") + 4));
    }
    return outcomes;
  }
  std::string LogFile() const { return ReadFile(program.Folder() + "\\RouterLog.dat"); }
  /// The file's first line.
  std::string RowCount() const {
    const std::string file = LogFile();
    return file.substr(0, file.find('\r'));
  }
};

TEST_F(EventsTest, ArgumentsOfTheWrongNumberOrKindComeBackAsErrorsAndLeaveNoTrace) {
  ASSERT_TRUE(StartWithRouter());
  for (const char* event :
       {"Raw|1", "Raw|1|text:no number", "Raw|1|text:a|int16:1|int16:2", "Raw|1|text:a|text:five",
        "Raw|1|text:a|int32:70000", "Raw|1|null|int16:1", "Raw|1|text:a|empty|empty", "Raw|2",
        "Raw|2|int32:80", "Raw|2|text:port|text:|bool:False", "Raw|2|null|null|null", "Raw|3",
        "Raw|3|text:in", "Raw|3|text:in|text:a|text:port|text:b|int32:1|text:c",
        "Raw|3|text:in|text:a|null|text:b|int32:1|text:c",
        "Raw|3|text:in|text:a|double:1e12|text:b|int32:1|text:c", "Raw|4", "Raw|0", "Raw|-1|text:a"}) {
    ASSERT_TRUE(Raise(event));
    EXPECT_THAT(Outcome(), StartsWith("8")) << event;
  }
  EXPECT_FALSE(program.FindBox()) << "the plug-in is told, not the user";
  EXPECT_FALSE(program.Find("frmErrors"));
  ASSERT_TRUE(Raise("Raw|3|int16:7|text:a|text:8|text:b|double:9.5|int32:10"));
  EXPECT_EQ(Outcome(), "00000000") << "what can be converted is";
  ASSERT_TRUE(program.Exit());
  EXPECT_THAT(LogFile(), AllOf(StartsWith(" 1\r\n"), EndsWith("\r\n7\r\nb\r\n10\r\na\r\n8\r\n10\r\n")));
}

TEST_F(EventsTest, ArgumentsComeByReferenceAndWrappedToo) {
  StoreProfiles({"+Game"});
  ASSERT_TRUE(StartWithRouter());
  for (const char* style : {"byref", "variant"}) {
    Recording::Script("EventStyle", style);
    ASSERT_TRUE(Raise("Log|in|a|1|b|2|" + std::string(style)));
    EXPECT_EQ(Outcome(), "00000000");
    ASSERT_TRUE(Raise("IdentifyPort|1000"));
    EXPECT_THAT(Outcome(), AllOf(StartsWith("00000000 "), HasSubstr("BSTR \"Game\"")));
  }
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(RowCount(), " 2");
}

TEST_F(EventsTest, EventsFromInsideACallOfOursAreTakenAsAnyOthers) {
  for (const char* member : {"IServer_SetPortForwarding", "IServer_SetLogging", "IServer_WANIP"})
    Recording::Script(std::string("Raise_") + member, "Log|in|a|1|b|2|" + std::string(member));
  StoreProfiles({"+Game"});
  ASSERT_TRUE(StartWithRouter());
  Recording::Script("Raise_IServer_GetFeatures", "Error|From inside the menu|1;IdentifyPort|1001");
  Recording::Script("Raise_IServer_ApplicationExiting", "Log|in|a|1|b|2|the end;Error|At the end|2");
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(Outcomes("Error|From inside the menu"), std::vector<std::string>{"00000000"});
  EXPECT_EQ(Outcomes("IdentifyPort|1001"),
            std::vector<std::string>{"00000000 BYREF+BSTR \"Game\", BYREF+BOOL False"});
  EXPECT_THAT(Outcomes("Log|in|a|1|b|2|IServer_SetPortForwarding"), Contains("00000000"));
  EXPECT_EQ(Outcomes("Log|in|a|1|b|2|the end"), std::vector<std::string>{"00000000"});
  EXPECT_THAT(LogFile(), AllOf(HasSubstr("IServer_SetPortForwarding"), HasSubstr("IServer_SetLogging"),
                               HasSubstr("IServer_WANIP"), HasSubstr("the end")));
}

TEST_F(EventsTest, AConnectionThatHasEndedTakesNothingWhateverTheSourceDoes) {
  // The start makes three connections, one after the other, and this source goes on raising its events to all
  // of them.
  Recording::Script("KeepSinks", "any");
  Recording::Script("Raise_IServer_SaveSettings", "Log|in|a|1|b|2|after the end");
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(Raise("Log|in|a|1|b|2|now"));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(program.ExitCode(), 0u);
  const std::string ended = "80010108";
  EXPECT_THAT(Outcomes("Log|in|a|1|b|2|now"),
              ElementsAre(StartsWith(ended), StartsWith(ended), StartsWith("00000000")));
  EXPECT_THAT(Outcomes("Log|in|a|1|b|2|after the end"), AllOf(testing::SizeIs(3), Each(StartsWith(ended))));
  EXPECT_THAT(LogFile(), AllOf(StartsWith(" 1\r\n"), EndsWith("\r\nnow\r\n")));
}

TEST_F(EventsTest, ARouterThatIsNoLongerSelectedIsNoLongerHeard) {
  settings::Write({{"RouterCount", "2"}, {"Router_2", Recording::kClassB}});
  Recording::Script("KeepSinks", "any");
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(program.Choose("{DOWN}{DOWN}{DOWN}{DOWN}{ENTER}"));
  const HWND list =
      WaitFor([] { return desktop::FindControl("Harbourline.exe", "ctlRouter.cbRouterSelection"); });
  ASSERT_TRUE(list);
  const LRESULT other = SendMessageA(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                     reinterpret_cast<LPARAM>("Router Harbourline.RecordingB"));
  ASSERT_NE(other, CB_ERR);
  SendMessageA(list, CB_SETCURSEL, static_cast<WPARAM>(other), 0);
  SendMessageA(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(list));
  ASSERT_TRUE(WaitFor([] { return Recording::Raise(Recording::kClassB, "Log|in|a|1|b|2|the new one"); }));
  ASSERT_TRUE(Raise("Log|in|a|1|b|2|the old one"));
  EXPECT_THAT(Outcomes("Log|in|a|1|b|2|the old one"),
              AllOf(testing::SizeIs(3), Each(StartsWith("80010108"))));
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(settings::Read("RouterClass"), Recording::kClassB);
  EXPECT_THAT(LogFile(), AllOf(StartsWith(" 1\r\n"), EndsWith("\r\nthe new one\r\n")));
}

/// Events at ten thousand a second, as far as the machine can take them in half of its time; the rest is left
/// to the program.
class Flood {
 public:
  explicit Flood(std::string event) : event_(std::move(event)) {
    Recording::Script("RaiseCount", std::to_string(kAtOnce));
    thread_ = std::thread([this] {
      while (!enough_) {
        const ULONGLONG begin = GetTickCount64();
        if (Recording::Raise(Recording::kClass, event_)) raised_ += kAtOnce;
        const ULONGLONG took = GetTickCount64() - begin;
        Sleep(static_cast<DWORD>(std::max(kEvery, 2 * took) - took));
      }
    });
  }
  /// Ends the flood; how many events there were.
  int End() {
    enough_ = true;
    thread_.join();
    Recording::Script("RaiseCount", "1");
    return raised_;
  }
  int Raised() const { return raised_; }

 private:
  static constexpr int kAtOnce = 500;
  static constexpr ULONGLONG kEvery = 50;

  std::string event_;
  std::atomic<bool> enough_ = false;
  std::atomic<int> raised_ = 0;
  std::thread thread_;
};

TEST_F(EventsTest, AFloodOfEventsIsKeptWholeAndLeavesTheMenuUsable) {
  constexpr int kEnough = 20'000;
  StoreProfiles({"Game"});
  ASSERT_TRUE(StartWithRouter());
  Flood flood("Log|in|203.0.113.9|40000|192.0.2.77|80|http");
  EXPECT_TRUE(program.Choose("p", "{DOWN}{ENTER}")) << "the menu answers";
  EXPECT_TRUE(WaitFor([&] { return Activations().size() == 2; })) << "and does what it is told";
  EXPECT_TRUE(WaitFor([&] { return flood.Raised() >= kEnough; }));
  const int raised = flood.End();
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(RowCount(), " " + std::to_string(raised));
}

TEST_F(EventsTest, APlugInThatFailsAtEveryLookOfTheMonitorIsToldOnce) {
  ASSERT_TRUE(StartWithRouter());
  Recording::Script("Fail_IServer_CheckForWarning", "The router is on fire");
  const auto box = program.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Harbourline");
  EXPECT_EQ(box->text, "The router is on fire (-2147220991)");
  ASSERT_TRUE(Program::Press(*box, "OK"));
  constexpr ULONGLONG kSomeTicks = 1'500;
  EXPECT_TRUE(StaysSo(kSomeTicks, [this] { return !program.FindBox(); }));

  Recording::Script("Fail_IServer_CheckForWarning", "The router is on fire for the second day");
  EXPECT_TRUE(StaysSo(kSomeTicks, [this] { return !program.FindBox(); })) << "only the text varies";

  Recording::Script("FailCode_IServer_CheckForWarning", "0x80040202");
  Recording::Script("Fail_IServer_CheckForWarning", "The router is under water");
  const auto other = program.WaitForBox();
  ASSERT_TRUE(other) << "another failure is told, too";
  EXPECT_EQ(other->text, "The router is under water (-2147220990)");
  ASSERT_TRUE(Program::Press(*other, "OK"));
  EXPECT_TRUE(program.Exit());
}

TEST_F(EventsTest, ASourceWithEventsOfItsOwnIsBoundByTheirNames) {
  Recording::Script("EventSource", "other");
  ASSERT_TRUE(StartWithRouter());
  ASSERT_TRUE(Raise("Log|in|a|1|b|2|c"));
  EXPECT_EQ(Outcome(), "00000000");
  ASSERT_TRUE(program.Exit());
  EXPECT_EQ(RowCount(), " 1");
}

}  // namespace
