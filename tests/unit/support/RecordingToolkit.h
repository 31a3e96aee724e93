#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/Error.h"
#include "ui/EventGuard.h"
#include "ui/HeadlessToolkit.h"
#include "ui/ListView.h"

namespace support {

/// The headless toolkit with a peer for every control: each keeps what it is told, in order, and shows
/// nothing. Timers have the headless peer, so that they tick.
class RecordingToolkit : public ui::HeadlessToolkit {
 public:
  /// What the peers of one control were told.
  struct Told {
    std::vector<ui::Aspect> changes;
    /// What only the peer of a list view learns: "added 0 1", "changed 3", "see 4", "edit 2", "fit 1 header".
    std::vector<std::string> rows;
    int focus = 0;
    int drags = 0;
  };

  std::unique_ptr<ui::Peer> CreatePeer(ui::Control& control) override;

  /// What was told since the last call for this control.
  std::vector<ui::Aspect> TakeChanges(const ui::Control& control) {
    return std::exchange(told_[&control].changes, {});
  }
  std::vector<std::string> TakeRows(const ui::Control& control) {
    return std::exchange(told_[&control].rows, {});
  }
  int TakeFocus(const ui::Control& control) { return std::exchange(told_[&control].focus, 0); }
  int TakeDrags(const ui::Control& control) { return std::exchange(told_[&control].drags, 0); }

  /// "make NAME" and "take NAME" for each peer, in order.
  std::vector<std::string> peers;
  /// The peer of the control of this name can't be made.
  std::string failingPeer;
  /// The scale of the monitor on which all windows are; 0 for that of the screen.
  float monitorTwipsPerPixel = 0;
  /// What a list view's peer answers to FitColumn.
  bool fits = true;

 private:
  class RecordingPeer;

  std::map<const ui::Control*, Told> told_;
};

class RecordingToolkit::RecordingPeer : public ui::ListViewPeer {
 public:
  RecordingPeer(RecordingToolkit& toolkit, ui::Control& control, std::uintptr_t handle)
      : toolkit_(toolkit), control_(control), name_(control.Name()), handle_(handle) {
    toolkit_.peers.push_back("make " + name_);
  }
  ~RecordingPeer() override {
    toolkit_.peers.push_back("take " + name_);
    // A window that goes loses the focus, and says so.
    control_.UserFocus(false);
  }

  void Changed(ui::Aspect aspect) override { Told().changes.push_back(aspect); }
  void SetFocus() override { ++Told().focus; }
  void DragByMouse() override { ++Told().drags; }
  std::uintptr_t Handle() const override { return handle_; }
  float TwipsPerPixel() const override { return toolkit_.monitorTwipsPerPixel; }
  void RowsAdded(std::size_t first, std::size_t count) override {
    Row("added " + std::to_string(first) + " " + std::to_string(count));
  }
  void RowChanged(std::size_t row) override { Row("changed " + std::to_string(row)); }
  void EnsureVisible(std::size_t row) override { Row("see " + std::to_string(row)); }
  void StartLabelEdit(std::size_t row) override { Row("edit " + std::to_string(row)); }
  bool FitColumn(std::size_t column, bool useHeader) override {
    Row("fit " + std::to_string(column) + (useHeader ? " header" : ""));
    return toolkit_.fits;
  }

 private:
  RecordingToolkit::Told& Told() { return toolkit_.told_[&control_]; }
  void Row(std::string call) { Told().rows.push_back(std::move(call)); }

  RecordingToolkit& toolkit_;
  ui::Control& control_;
  std::string name_;
  std::uintptr_t handle_;
};

inline std::unique_ptr<ui::Peer> RecordingToolkit::CreatePeer(ui::Control& control) {
  if (!failingPeer.empty() && control.Name() == failingPeer) {
    throw base::Error(base::ErrorNumber::kOutOfMemory, "No more windows");
  }
  auto standard = HeadlessToolkit::CreatePeer(control);
  if (control.GetKind() == ui::Kind::kTimer) return standard;
  return std::make_unique<RecordingPeer>(*this, control, standard ? standard->Handle() : 0);
}

/// A test with a screen that records.
class InterfaceTest : public testing::Test {
 protected:
  InterfaceTest() { ui::EventGuard::Reset(); }

  /// The texts of the message boxes so far.
  std::vector<std::string> Messages() const {
    std::vector<std::string> texts;
    for (const ui::Message& message : toolkit.messages) texts.push_back(message.text);
    return texts;
  }

  RecordingToolkit toolkit;
};

/// The number of the base::Error that `action` fails with, 0 when it doesn't fail.
template <typename Action>
std::int32_t ErrorOf(Action&& action) {
  try {
    action();
    return 0;
  } catch (const base::Error& error) {
    return error.Number();
  }
}

/// Its text, empty when it doesn't fail.
template <typename Action>
std::string ErrorTextOf(Action&& action) {
  try {
    action();
    return {};
  } catch (const base::Error& error) {
    return error.Text();
  }
}

}  // namespace support
