#include "ui/HeadlessToolkit.h"

#include <algorithm>
#include <limits>

namespace ui {

/// Lets a timer tick when the toolkit's clock is advanced.
class HeadlessTimerPeer : public Peer {
 public:
  HeadlessTimerPeer(HeadlessToolkit& toolkit, Timer& timer) : toolkit_(toolkit), timer_(timer) {
    toolkit_.timers_.push_back(this);
    Changed(Aspect::kValue);
  }
  ~HeadlessTimerPeer() override { std::erase(toolkit_.timers_, this); }

  void Changed(Aspect) override { due_ = toolkit_.now_ + timer_.Interval(); }

  bool Runs() const { return timer_.Enabled() && timer_.Interval() > 0; }
  std::int64_t Due() const { return due_; }
  void Tick() {
    due_ += timer_.Interval();
    timer_.UserTick();
  }

 private:
  HeadlessToolkit& toolkit_;
  Timer& timer_;
  std::int64_t due_ = 0;
};

namespace {

class HeadlessFormPeer : public Peer {
 public:
  explicit HeadlessFormPeer(std::uintptr_t handle) : handle_(handle) {}
  void Changed(Aspect) override {}
  std::uintptr_t Handle() const override { return handle_; }

 private:
  std::uintptr_t handle_;
};

}  // namespace

HeadlessToolkit::HeadlessToolkit() : before_(TheInterface()) {
  TheInterface() = {this, this, this, this};
}

HeadlessToolkit::~HeadlessToolkit() {
  TheInterface() = before_;
}

void HeadlessToolkit::Advance(std::int32_t milliseconds) {
  const std::int64_t end = now_ + milliseconds;
  for (;;) {
    HeadlessTimerPeer* next = nullptr;
    for (HeadlessTimerPeer* timer : timers_) {
      if (timer->Runs() && timer->Due() <= end && (!next || timer->Due() < next->Due())) next = timer;
    }
    if (!next) break;
    now_ = std::max(now_, next->Due());
    next->Tick();
  }
  now_ = std::max(now_, end);
}

std::unique_ptr<Peer> HeadlessToolkit::CreatePeer(Control& control) {
  switch (control.GetKind()) {
    case Kind::kTimer:
      return std::make_unique<HeadlessTimerPeer>(*this, static_cast<Timer&>(control));
    case Kind::kForm:
      return std::make_unique<HeadlessFormPeer>(++lastHandle_);
    default:
      return nullptr;
  }
}

void HeadlessToolkit::RunWhile(const std::function<bool()>& condition) {
  while (condition()) {
    if (whenIdle) {
      whenIdle();
      continue;
    }
    // Nobody is there to end the wait but a timer.
    std::int64_t due = std::numeric_limits<std::int64_t>::max();
    for (const HeadlessTimerPeer* timer : timers_) {
      if (timer->Runs()) due = std::min(due, timer->Due());
    }
    if (due == std::numeric_limits<std::int64_t>::max()) return;
    Advance(static_cast<std::int32_t>(std::max<std::int64_t>(due - now_, 0)));
  }
}

MessageResult HeadlessToolkit::ShowMessage(const Message& message) {
  messages.push_back(message);
  if (whileMessage) whileMessage(message);
  if (!answers.empty()) {
    const MessageResult answer = answers.front();
    answers.pop_front();
    return answer;
  }
  return message.buttons == MessageButtons::kYesNo ? MessageResult::kNo : MessageResult::kOk;
}

Menu* HeadlessToolkit::ShowPopupMenu(Menu& menu, Control&) {
  return choosePopup ? choosePopup(menu) : nullptr;
}

bool HeadlessToolkit::ShowFileDialog(FileDialog& dialog) {
  return answerFileDialog && answerFileDialog(dialog);
}

std::uintptr_t HeadlessToolkit::SmallIcon(const PictureRef& picture) {
  if (!picture) return 0;
  for (const auto& [known, handle] : icons_) {
    if (known == picture) return handle;
  }
  icons_.emplace_back(picture, ++lastHandle_);
  return lastHandle_;
}

}  // namespace ui
