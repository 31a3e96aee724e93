#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ui/Control.h"
#include "ui/FileDialog.h"
#include "ui/Menu.h"
#include "ui/MessageBox.h"
#include "ui/Timer.h"
#include "ui/Toolkit.h"

namespace ui {

/// The interface without a screen: pages run in memory, time stands still until it is advanced, and questions
/// get the answers that were laid ready. It puts itself in place while it lives.
class HeadlessToolkit : public Toolkit, public Dialogs, public Clipboard, public Screen {
 public:
  HeadlessToolkit();
  ~HeadlessToolkit() override;

  /// Lets the clock run; timers tick in the order in which they fall due.
  void Advance(std::int32_t milliseconds);

  /// The next message boxes are answered in this order; without an answer laid ready the box is answered OK
  /// or No.
  std::deque<MessageResult> answers;
  /// All message boxes so far.
  std::vector<Message> messages;
  /// Runs while a message box is up, before it is answered.
  std::function<void(const Message&)> whileMessage;
  /// Chooses in a pop-up menu that is up; null leaves it without a choice.
  std::function<Menu*(Menu&)> choosePopup;
  /// Answers a file dialog; false cancels.
  std::function<bool(FileDialog&)> answerFileDialog;
  /// Runs each time the message loop waits, with nothing else to do.
  std::function<void()> whenIdle;
  std::string clipboard;
  float twipsPerPixel = 15;
  /// The pixels of every picture.
  Pixels pixels;
  /// What the program carries, by name.
  std::map<std::string, std::vector<std::byte>> resources;

  std::unique_ptr<Peer> CreatePeer(Control& control) override;
  /// Returns too when nothing is there to end the wait. Throws std::logic_error when the timers tick for an
  /// hour of the clock without ending it.
  void RunWhile(const std::function<bool()>& condition) override;
  void ProcessPendingEvents() override {}
  MessageResult ShowMessage(const Message& message) override;
  Menu* ShowPopupMenu(Menu& menu, Control& owner) override;
  bool ShowFileDialog(FileDialog& dialog) override;
  void Clear() override { clipboard.clear(); }
  void SetText(const std::string& text) override { clipboard = text; }
  float TwipsPerPixelX() const override { return twipsPerPixel; }
  float TwipsPerPixelY() const override { return twipsPerPixel; }
  std::uintptr_t SmallIcon(const PictureRef& picture) override;
  Pixels PixelsOf(const PictureRef& picture) const override { return picture ? pixels : Pixels{}; }
  std::vector<std::byte> Resource(const std::string& name) const override {
    const auto found = resources.find(name);
    return found == resources.end() ? std::vector<std::byte>{} : found->second;
  }

 private:
  friend class HeadlessTimerPeer;
  struct Clock;

  /// Lets the timer that falls due first tick, if that is by `end`; false when there is none.
  bool TickNext(std::int64_t end);

  Interface before_;
  /// Windows that outlive the toolkit keep it.
  std::shared_ptr<Clock> clock_;
  std::vector<std::pair<PictureRef, std::uintptr_t>> icons_;
  std::uintptr_t lastHandle_ = 0;
};

}  // namespace ui
