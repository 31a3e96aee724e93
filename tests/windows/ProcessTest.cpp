#include "platform/Process.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/win32/Win32Process.h"
#include "support/Role.h"

namespace {

using support::ChildProcess;
using support::Signal;
using support::TemporaryFolder;
using support::UniqueName;

constexpr DWORD kFirst = 10;
constexpr DWORD kEarlierRuns = 11;

/// Waits for the first signal, asks, tells by the second that it has asked, and stays until the third comes.
const support::Role asker("ask-for-an-earlier-instance", [](const std::vector<std::string>& signals) {
  if (!Signal(signals.at(0)).Wait()) return 1;
  const bool earlier = platform::win32::Win32Process().EarlierInstanceRuns();
  Signal(signals.at(1)).Send();
  if (!Signal(signals.at(2)).Wait()) return 1;
  return static_cast<int>(earlier ? kEarlierRuns : kFirst);
});

const support::Role pathTeller("tell-the-path", [](const std::vector<std::string>& arguments) {
  return platform::win32::Win32Process().ExecutablePath() == arguments.at(0) ? 0 : 1;
});

/// Instances of one program that ask when they are told to.
class ProcessTest : public testing::Test {
 protected:
  ChildProcess Start(const std::string& program) {
    return ChildProcess(program, {"ask-for-an-earlier-instance", ask_, asked_, leave_});
  }

  /// Lets one waiting instance ask, and waits until it has.
  void LetOneAsk() {
    Signal(ask_).Send();
    ASSERT_TRUE(askedSignal_.Wait());
  }

  void LetLeave(LONG count) { leaveSignal_.Send(count); }

  const std::string ask_ = UniqueName("ask");
  const std::string asked_ = UniqueName("asked");
  const std::string leave_ = UniqueName("leave");
  const Signal askSignal_{ask_};
  const Signal askedSignal_{asked_};
  const Signal leaveSignal_{leave_};
  const TemporaryFolder folder_;
};

TEST_F(ProcessTest, AnInstanceAloneFindsNoEarlierOne) {
  const ChildProcess alone = Start(folder_.CopyOfProgram("alone.exe"));
  LetOneAsk();
  LetLeave(1);
  EXPECT_EQ(alone.ExitCode(), kFirst);
}

TEST_F(ProcessTest, TheSecondInstanceFindsTheFirstAndTheFirstDoesNotFindTheSecond) {
  const std::string program = folder_.CopyOfProgram("twice.exe");
  const ChildProcess first = Start(program);
  LetOneAsk();
  const ChildProcess second = Start(program);
  LetOneAsk();
  LetLeave(2);
  EXPECT_EQ(first.ExitCode(), kFirst);
  EXPECT_EQ(second.ExitCode(), kEarlierRuns);
}

TEST_F(ProcessTest, TheCaseOfThePathMakesNoDifference) {
  std::string program = folder_.CopyOfProgram("case.exe");
  const ChildProcess first = Start(program);
  std::transform(program.begin(), program.end(), program.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  LetOneAsk();
  const ChildProcess second = Start(program);
  LetOneAsk();
  LetLeave(2);
  EXPECT_EQ(second.ExitCode(), kEarlierRuns);
}

TEST_F(ProcessTest, ACopyOfTheProgramElsewhereIsAnotherProgram) {
  const TemporaryFolder elsewhere;
  const ChildProcess first = Start(folder_.CopyOfProgram("same.exe"));
  LetOneAsk();
  const ChildProcess second = Start(elsewhere.CopyOfProgram("same.exe"));
  LetOneAsk();
  LetLeave(2);
  EXPECT_EQ(second.ExitCode(), kFirst);
}

TEST_F(ProcessTest, AnInstanceThatHasEndedCountsNoMore) {
  const std::string program = folder_.CopyOfProgram("gone.exe");
  const ChildProcess first = Start(program);
  LetOneAsk();
  LetLeave(1);
  ASSERT_EQ(first.ExitCode(), kFirst);
  const ChildProcess second = Start(program);
  LetOneAsk();
  LetLeave(1);
  EXPECT_EQ(second.ExitCode(), kFirst) << "the test still holds a handle of the ended one";
}

TEST_F(ProcessTest, OfManyThatStartAtOnceExactlyOneFindsNoEarlierOne) {
  constexpr LONG kCount = 8;
  const std::string program = folder_.CopyOfProgram("many.exe");
  std::vector<ChildProcess> processes;
  for (LONG i = 0; i < kCount; ++i) processes.push_back(Start(program));
  askSignal_.Send(kCount);
  for (LONG i = 0; i < kCount; ++i) ASSERT_TRUE(askedSignal_.Wait());
  LetLeave(kCount);
  LONG first = 0;
  for (const ChildProcess& process : processes) {
    const auto code = process.ExitCode();
    ASSERT_TRUE(code == kFirst || code == kEarlierRuns);
    if (code == kFirst) ++first;
  }
  EXPECT_EQ(first, 1);
}

TEST_F(ProcessTest, TellsTheCurrentFolder) {
  std::vector<char> before(MAX_PATH);
  ASSERT_NE(GetCurrentDirectoryA(MAX_PATH, before.data()), 0u);
  const std::string folder = folder_.Path() + "\\Caf\xE9";
  ASSERT_TRUE(CreateDirectoryA(folder.c_str(), nullptr));
  ASSERT_TRUE(SetCurrentDirectoryA(folder.c_str()));
  EXPECT_EQ(platform::win32::Win32Process().CurrentFolder(), folder);
  ASSERT_TRUE(SetCurrentDirectoryA(before.data()));
  EXPECT_EQ(platform::win32::Win32Process().CurrentFolder(), before.data());
}

TEST_F(ProcessTest, TellsTheFullPathOfTheProgram) {
  const std::string program = folder_.CopyOfProgram("Caf\xE9.exe");
  EXPECT_EQ(ChildProcess(program, {"tell-the-path", program}).ExitCode(), 0u);
  EXPECT_EQ(ChildProcess(program, {"tell-the-path", program + "x"}).ExitCode(), 1u);
}

TEST_F(ProcessTest, TellsAPathAsLongAsAProgramCanHave) {
  // A program can't be started from a path that is longer than MAX_PATH with its terminator.
  const std::size_t room = MAX_PATH - 1 - folder_.Path().size() - 1 - 4;
  const std::string program = folder_.CopyOfProgram(std::string(room, 'p') + ".exe");
  ASSERT_EQ(program.size(), MAX_PATH - 1u);
  EXPECT_EQ(ChildProcess(program, {"tell-the-path", program}).ExitCode(), 0u);
}

}  // namespace
