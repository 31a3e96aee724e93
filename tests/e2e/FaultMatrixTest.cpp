#include <cstdlib>
#include <iostream>
#include <map>

#include "support/BoxReader.h"
#include "support/Files.h"
#include "support/MainWindow.h"
#include "support/Scene.h"

namespace {

using testing::Contains;
using testing::HasSubstr;

/// What the user does that makes the program call the member, beside what every cell does.
enum class Deed { kNone, kSetDMZ, kFeature, kConfigure, kEnableLog, kKeepRouter };

/// The plug-in's own answer, of a kind that the program can't convert.
constexpr char kNoBoolean[] = "Result:text:perhaps";
constexpr char kNoText[] = "Result:null";
constexpr char kNoObject[] = "Result:text:no object";
/// The program drops the answer, or gets none.
constexpr char kDropped[] = "";

struct Member {
  const char* name;
  /// The name that the script uses.
  const char* script;
  const char* wrongKind;
  Deed deed = Deed::kNone;
  /// Whether the user is told when the call fails; where the program has another answer, it is enough.
  bool told = true;
  /// The call from which on the member is faulty. A router without a title doesn't get into the list at all.
  int from = 1;
};

constexpr Member kMembers[] = {
    {"ServerTitle", "IServer_ServerTitle", kNoText, Deed::kNone, false, 2},
    {"EventHandler", "IServer_EventHandler", kNoObject},
    {"ClassName", "IServer_ClassName", kNoText, Deed::kNone, false},
    {"DMZ", "IServer_DMZ", kDropped, Deed::kSetDMZ},
    {"Version", "IServer_Version", kNoText},
    {"Functional", "IServer_Functional", kNoBoolean},
    {"EnableLog", "IServer_EnableLog", kNoBoolean},
    {"EnableLogWritten", "IServer_EnableLog_PUT", kDropped, Deed::kEnableLog},
    {"Configure", "IServer_Configure", kNoBoolean, Deed::kConfigure},
    {"WANIP", "IServer_WANIP", kNoText},
    {"CheckForWarning", "IServer_CheckForWarning", kNoBoolean},
    {"SetLogging", "IServer_SetLogging", kNoBoolean},
    {"SetPortForwarding", "IServer_SetPortForwarding", kNoBoolean},
    {"ApplicationExiting", "IServer_ApplicationExiting", kDropped, Deed::kKeepRouter},
    {"GetFeatures", "IServer_GetFeatures", kNoBoolean},
    {"ActivateFeaure", "IServer_ActivateFeaure", kNoBoolean, Deed::kFeature},
    {"GetPortForwardingDescription", "IServer_GetPortForwardingDescription", kNoText, Deed::kNone, false},
    {"SaveSettings", "IServer_SaveSettings", kDropped, Deed::kKeepRouter},
};

constexpr char kRaised[] = "The plug-in has had enough";

enum class Fault { kMissing, kRaises, kWrongKind, kEmpty, kSlow, kReenters };
constexpr std::pair<Fault, const char*> kFaults[] = {
    {Fault::kMissing, "Missing"}, {Fault::kRaises, "Raises"}, {Fault::kWrongKind, "WrongKind"},
    {Fault::kEmpty, "Empty"},     {Fault::kSlow, "Slow"},     {Fault::kReenters, "Reenters"},
};

struct Cell {
  Member member;
  Fault fault;
  std::string name;
};

void PrintTo(const Cell& cell, std::ostream* stream) {
  *stream << cell.name;
}

/// One table. All of it takes some minutes, so that an ordinary run takes each member with one of the faults
/// that fail its call, and each of the other faults twice; the environment variable HARBOURLINE_FAULTS=all
/// asks for the whole.
std::vector<Cell> Cells() {
  const char* wanted = std::getenv("HARBOURLINE_FAULTS");
  const bool all = wanted && std::string(wanted) == "all";
  constexpr std::size_t kFailing = 3;
  std::vector<Cell> cells;
  std::size_t row = 0;
  for (const Member& member : kMembers) {
    const std::size_t failing = row % kFailing;
    const std::size_t other = row % kFailing == 0 ? kFailing + row / kFailing % kFailing : failing;
    std::size_t column = 0;
    for (const auto& [fault, name] : kFaults) {
      if (all || column == failing || column == other)
        cells.push_back({member, fault, std::string(member.name) + "_" + name});
      ++column;
    }
    ++row;
  }
  return cells;
}

/// A plug-in that is faulty at one member stands first in the list and is selected; a sound one stands behind
/// it. Nothing of that takes a window, the menu, the exit, the sound router or anything stored from the user.
class FaultMatrixTest : public Scene, public testing::WithParamInterface<Cell> {
 protected:
  static constexpr char kSound[] = "Harbourline.RecordingB";
  static constexpr char kRows[] =
      " 3\r\n"
      "01/02/26 03:04\r\nin\r\n192.0.2.77\r\n9001\r\n203.0.113.9\r\n40001\r\n\r\n"
      "01/02/26 03:05\r\nout\r\nwww.example.com\r\n9002\r\n192.0.2.77\r\n40002\r\n\r\n"
      "01/02/26 03:06\r\nin\r\n192.0.2.77\r\n9003\r\n198.51.100.1\r\n40003\r\n\r\n";

  FaultMatrixTest() {
    settings::Write({{"Version", HARBOURLINE_VERSION},
                     {"RouterCount", "2"},
                     {"Router_1", Recording::kClass},
                     {"Router_2", kSound},
                     {"RouterClass", Recording::kClass},
                     {"LastMenuLocation", "RouterConfiguration"}});
    StoreProfiles({"Game", "+Voice"});
    WriteFile(LogFile(), kRows);
    if (GetParam().member.deed == Deed::kFeature) Recording::Script("Features", "Reboot=7");
    Recording::Script("RecordLookups", "any");
    ScriptFault();
  }

  void TearDown() override {
    std::cout << "    " << GetParam().name << ": " << (HasFailure() ? "DOES NOT HOLD" : "holds") << ", "
              << texts_.size() << " boxes, " << GetTickCount64() - begin_ << " ms\n";
  }

  std::string LogFile() const { return program.Folder() + "\\RouterLog.dat"; }

  static void ScriptFault() {
    const Member& member = GetParam().member;
    const std::string name = member.script;
    if (member.from > 1) Recording::Script("From_" + name, std::to_string(member.from));
    const bool written = name.ends_with("_PUT");
    switch (GetParam().fault) {
      case Fault::kMissing:
        // A property that can be read can still lack its writing.
        Recording::Script((written ? "Break_" : "Missing_") + name, written ? "0x80020003" : "any");
        break;
      case Fault::kRaises:
        Recording::Script("Fail_" + name, kRaised);
        break;
      case Fault::kWrongKind: {
        const std::string answer = member.wrongKind;
        Recording::Script("Result_" + name,
                          answer.empty() ? "double:0.5" : answer.substr(answer.find(':') + 1));
        break;
      }
      case Fault::kEmpty:
        Recording::Script("Result_" + name, "empty");
        break;
      case Fault::kSlow:
        Recording::Script("Slow_" + name, "150");
        break;
      case Fault::kReenters:
        Recording::Script("Loop_" + name, "120");
        break;
    }
  }

  /// The user's deed that calls the member, with the faulty plug-in selected.
  void DoDeed(const MainWindow& window) const {
    switch (GetParam().member.deed) {
      case Deed::kSetDMZ:
        ASSERT_TRUE(program.ChooseByArrows("{DOWN}{DOWN}{DOWN}{ENTER}"));
        break;
      case Deed::kFeature:
        ASSERT_TRUE(program.Choose("f", "{DOWN}{ENTER}"));
        break;
      case Deed::kConfigure:
        ASSERT_TRUE(window.Click("ctlRouter.cmdConfigureRouter"));
        break;
      case Deed::kEnableLog:
        ASSERT_TRUE(window.OpenPage("Log", "ctlRouterLog.chkEnable"));
        ASSERT_TRUE(window.Click("ctlRouterLog.chkEnable"));
        break;
      case Deed::kNone:
      case Deed::kKeepRouter:
        return;
    }
    const std::string member = Called();
    EXPECT_TRUE(WaitFor([&] { return !recording.Calls(member).empty(); }))
        << "the deed must reach the member";
  }
  static std::string Called() {
    const std::string name = GetParam().member.script;
    return name.substr(0, name.rfind("_PUT"));
  }
  /// Chooses a router on its page; its plug-in is asked for its state then.
  void ChooseRouter(const MainWindow& window, const std::string& className) const {
    ASSERT_TRUE(window.OpenPage("Router", "ctlRouter.cbRouterSelection"));
    ASSERT_TRUE(MainWindow::Choose("ctlRouter.cbRouterSelection", "Router " + className)) << className;
  }

  /// The profiles are sent to the router at the end of the start; a call that can't be made is looked up.
  bool HasStarted() const {
    return program.HasEnded() || (!Activations().empty() && program.Find("frmSysTray"));
  }

  /// Takes the boxes of one act of the user; the same failure is told once in it.
  void Count(BoxReader& boxes, const char* act) {
    std::map<std::string, int> counts;
    for (const std::string& text : boxes.Take()) {
      if (text == "Are you sure you want to exit Harbourline?") continue;
      ++counts[text];
      texts_.push_back(text);
    }
    for (const auto& [text, count] : counts) EXPECT_EQ(count, 1) << "told again at " << act << ": " << text;
  }

  void CheckTexts() const {
    const Member& member = GetParam().member;
    const std::string kind = member.wrongKind;
    const Fault fault = GetParam().fault;
    if (fault == Fault::kSlow || fault == Fault::kReenters) {
      EXPECT_THAT(texts_, testing::IsEmpty());
    } else if (member.told && fault == Fault::kMissing) {
      EXPECT_THAT(texts_, Contains(HasSubstr(Called())));
    } else if (member.told && fault == Fault::kRaises) {
      EXPECT_THAT(texts_, Contains(HasSubstr(kRaised)));
    } else if (member.told && fault == Fault::kWrongKind && !kind.empty()) {
      EXPECT_THAT(texts_, testing::Not(testing::IsEmpty()));
    }
  }

  void CheckStore() const {
    EXPECT_EQ(settings::Read("MapProfileCount"), "2");
    EXPECT_EQ(settings::Read("MP_1_Name"), "Game");
    EXPECT_EQ(settings::Read("MP_1_Enabled"), "True");
    EXPECT_EQ(settings::Read("MP_2_Name"), "Voice");
    EXPECT_EQ(settings::Read("MP_2_MAP_1_BeginPort"), "1010");
    EXPECT_EQ(settings::Read("RouterCount"), "2");
    EXPECT_EQ(settings::Read("Router_1"), Recording::kClass);
    EXPECT_EQ(settings::Read("Router_2"), kSound);
    EXPECT_EQ(settings::Read("RouterClass"),
              GetParam().member.deed == Deed::kKeepRouter ? Recording::kClass : kSound);
    // What a row without a name got is the plug-in's matter.
    std::string rows;
    std::size_t line = 0;
    for (const std::string& text : Split(ReadFile(LogFile()))) {
      constexpr std::size_t kCells = 7;
      rows += (line > 0 && line % kCells == 0 ? "" : text) + "\r\n";
      ++line;
    }
    EXPECT_EQ(rows, kRows);
  }
  static std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = std::min(text.find("\r\n", begin), text.size());
      lines.push_back(text.substr(begin, end - begin));
      begin = end + 2;
    }
    return lines;
  }

  bool SoundRouterForwards() const {
    return WaitFor([this] {
      for (const std::string& line : recording.Lines()) {
        if (line.starts_with(std::string(kSound) + " IServer_SetPortForwarding") &&
            line.find("BSTR \"Game\"") != line.npos && line.find("BSTR \"Voice\"") != line.npos) {
          return true;
        }
      }
      return false;
    });
  }

  std::vector<std::string> texts_;
  const ULONGLONG begin_ = GetTickCount64();
};

TEST_P(FaultMatrixTest, LeavesTheUserEverythingElse) {
  program.Start();
  BoxReader boxes(program);
  ASSERT_TRUE(WaitFor([this] { return HasStarted(); }));
  ASSERT_FALSE(program.HasEnded()) << "the program starts";
  Count(boxes, "the start");

  const MainWindow window(program);
  ASSERT_TRUE(window.Open()) << "the menu opens and has its setup";
  ASSERT_TRUE(MainWindow::Shows("tvCategories")) << "the tree shows";
  EXPECT_TRUE(MainWindow::Shows("ctlRouter.cbRouterSelection")) << "the page that was open last shows";
  Count(boxes, "opening the menu");
  EXPECT_TRUE(window.OpenPage("Log", "ctlRouterLog.lvRouterLog"));
  Count(boxes, "opening the log");
  EXPECT_TRUE(window.OpenPage("Router", "ctlRouter.cbRouterSelection"));
  Count(boxes, "opening the page of the router");
  DoDeed(window);
  if (HasFatalFailure()) return;
  Count(boxes, "the deed");

  ChooseRouter(window, kSound);
  if (HasFatalFailure()) return;
  Count(boxes, "choosing the sound router");
  ASSERT_TRUE(program.Choose("p", "{DOWN}{ENTER}"));
  EXPECT_TRUE(SoundRouterForwards());
  if (GetParam().member.deed == Deed::kKeepRouter) ChooseRouter(window, Recording::kClass);
  if (HasFatalFailure()) return;
  Count(boxes, "forwarding");

  ASSERT_TRUE(program.Choose("e"));
  ASSERT_TRUE(program.WaitForEnd());
  EXPECT_EQ(program.ExitCode(), 0u);
  Count(boxes, "the exit");
  CheckTexts();
  CheckStore();
}

INSTANTIATE_TEST_SUITE_P(Members, FaultMatrixTest, testing::ValuesIn(Cells()),
                         [](const auto& cell) { return cell.param.name; });

}  // namespace
