#include "ui/HeadlessToolkit.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "ui/Form.h"

namespace ui {

class HeadlessTimerPeer;

struct HeadlessToolkit::Clock {
  std::int64_t now = 0;
  std::vector<HeadlessTimerPeer*> timers;
};

/// Lets a timer tick when the toolkit's clock is advanced.
class HeadlessTimerPeer : public Peer {
 public:
  HeadlessTimerPeer(std::shared_ptr<HeadlessToolkit::Clock> clock, Timer& timer)
      : clock_(std::move(clock)), timer_(timer) {
    clock_->timers.push_back(this);
    Changed(Aspect::kValue);
  }
  ~HeadlessTimerPeer() override { std::erase(clock_->timers, this); }

  void Changed(Aspect) override { due_ = clock_->now + timer_.Interval(); }

  bool Runs() const { return timer_.Enabled() && timer_.Interval() > 0; }
  std::int64_t Due() const { return due_; }
  void Tick() {
    due_ += timer_.Interval();
    timer_.UserTick();
  }

 private:
  std::shared_ptr<HeadlessToolkit::Clock> clock_;
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

HeadlessToolkit::HeadlessToolkit() : before_(TheInterface()), clock_(std::make_shared<Clock>()) {
  TheInterface() = {this, this, this, this, {}};
}

HeadlessToolkit::~HeadlessToolkit() {
  TheInterface() = before_;
}

bool HeadlessToolkit::TickNext(std::int64_t end) {
  HeadlessTimerPeer* next = nullptr;
  for (HeadlessTimerPeer* timer : clock_->timers) {
    if (timer->Runs() && timer->Due() <= end && (!next || timer->Due() < next->Due())) next = timer;
  }
  if (!next) return false;
  clock_->now = std::max(clock_->now, next->Due());
  next->Tick();
  return true;
}

void HeadlessToolkit::Advance(std::int32_t milliseconds) {
  const std::int64_t end = clock_->now + milliseconds;
  while (TickNext(end)) {
  }
  clock_->now = std::max(clock_->now, end);
}

std::unique_ptr<Peer> HeadlessToolkit::CreatePeer(Control& control) {
  switch (control.GetKind()) {
    case Kind::kTimer:
      return std::make_unique<HeadlessTimerPeer>(clock_, static_cast<Timer&>(control));
    case Kind::kForm:
      return std::make_unique<HeadlessFormPeer>(++lastHandle_);
    default:
      return nullptr;
  }
}

void HeadlessToolkit::RunWhile(const std::function<bool()>& condition) {
  constexpr std::int64_t kHour = 60 * 60 * 1000;
  const std::int64_t end = clock_->now + kHour;
  while (condition()) {
    // Copies, here and below: what a test laid ready may replace itself while it runs.
    if (const auto idle = whenIdle) {
      idle();
      continue;
    }
    if (TickNext(end)) continue;
    // Nobody is there to end the wait but a timer.
    if (std::none_of(clock_->timers.begin(), clock_->timers.end(),
                     [](const HeadlessTimerPeer* timer) { return timer->Runs(); })) {
      return;
    }
    throw std::logic_error("The message loop has waited for an hour");
  }
}

MessageResult HeadlessToolkit::ShowMessage(const Message& message) {
  messages.push_back(message);
  if (const auto meanwhile = whileMessage) meanwhile(message);
  if (!answers.empty()) {
    const MessageResult answer = answers.front();
    answers.pop_front();
    return answer;
  }
  return message.buttons == MessageButtons::kYesNo ? MessageResult::kNo : MessageResult::kOk;
}

Menu* HeadlessToolkit::ShowPopupMenu(Menu& menu, Control& owner) {
  const Form* const form = owner.ParentForm();
  const auto choose = choosePopup;
  return choose && form && form->IsLoaded() ? choose(menu) : nullptr;
}

bool HeadlessToolkit::ShowFileDialog(FileDialog& dialog) {
  const auto answer = answerFileDialog;
  return answer && answer(dialog);
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
