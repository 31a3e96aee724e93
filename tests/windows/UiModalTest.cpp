#include "support/Ui.h"
#include "ui/Form.h"
#include "ui/Timer.h"

namespace {

using support::TestForm;

class UiModalTest : public support::UiTest {};

/// Runs `act` once, from the message loop of whatever runs then.
class Later : public ui::Timer {
 public:
  template <typename Act>
  explicit Later(Act act) : Timer(nullptr, "tmLater") {
    Tick.Connect([this, act] {
      Enabled(false);
      act();
    });
    Interval(30);
    Enabled(true);
    AttachPeers();
  }
};

TEST_F(UiModalTest, OtherWindowsAreOutOfReachUntilTheModalOneIsHidden) {
  TestForm owner("frmOwner");
  owner.Show();
  TestForm hidden("frmHidden");
  hidden.Load();
  TestForm modal("frmModal");
  bool seen = false;
  const Later later([&] {
    EXPECT_TRUE(IsWindowVisible(modal.Window()));
    EXPECT_TRUE(IsWindowEnabled(modal.Window()));
    EXPECT_FALSE(IsWindowEnabled(owner.Window()));
    hidden.Show();
    EXPECT_FALSE(IsWindowEnabled(hidden.Window())) << "one that was there before and is shown meanwhile";
    seen = true;
    modal.Hide();
  });
  modal.ShowModal(&owner);
  EXPECT_TRUE(seen);
  EXPECT_TRUE(modal.IsLoaded());
  EXPECT_FALSE(modal.IsModal());
  EXPECT_TRUE(IsWindowEnabled(owner.Window()));
  EXPECT_TRUE(IsWindowEnabled(hidden.Window()));
}

TEST_F(UiModalTest, TheOwnerIsActiveAgainAfterTheCloseBox) {
  TestForm owner("frmOwner");
  owner.Show();
  TestForm modal("frmModal");
  const Later later([&] { PostMessageA(modal.Window(), WM_SYSCOMMAND, SC_CLOSE, 0); });
  modal.ShowModal(&owner);
  EXPECT_FALSE(modal.IsLoaded());
  EXPECT_EQ(GetActiveWindow(), owner.Window());
}

TEST_F(UiModalTest, AModalWindowOverAModalWindowGivesBackOnlyItsOwn) {
  TestForm owner("frmOwner");
  owner.Show();
  TestForm outer("frmOuter");
  TestForm inner("frmInner");
  std::vector<bool> enabled;
  const Later opensInner([&] {
    const Later closesInner([&] { inner.Unload(); });
    inner.ShowModal(&outer);
    enabled.push_back(IsWindowEnabled(outer.Window()) != FALSE);
    enabled.push_back(IsWindowEnabled(owner.Window()) != FALSE);
    outer.Unload();
  });
  outer.ShowModal(&owner);
  EXPECT_EQ(enabled, (std::vector<bool>{true, false}));
  EXPECT_TRUE(IsWindowEnabled(owner.Window()));
}

TEST_F(UiModalTest, AWindowThatIsDisabledByCodeStaysSo) {
  TestForm other("frmOther");
  other.Show();
  other.Enabled(false);
  TestForm modal("frmModal");
  const Later later([&] { modal.Unload(); });
  modal.ShowModal(nullptr);
  EXPECT_FALSE(IsWindowEnabled(other.Window()));
}

TEST_F(UiModalTest, TheCloseBoxOfAWindowOutOfReachDoesNothing) {
  TestForm other("frmOther");
  other.Show();
  TestForm modal("frmModal");
  const Later later([&] {
    SendMessageA(other.Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
    modal.Unload();
  });
  modal.ShowModal(nullptr);
  EXPECT_TRUE(other.IsLoaded());
  EXPECT_TRUE(other.asked.empty());
}

}  // namespace
