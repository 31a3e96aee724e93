#include "Worker.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <utility>

#include "Socket.h"
#include "SsdpListener.h"
#include "WindowsNetwork.h"

namespace upnp {

namespace {

/// A program that uses the plug-in asks for warnings three times a second.
constexpr ULONGLONG kAsleepAfterMilliseconds = 5 * 60 * 1000;
constexpr Moment kTakeUpAgain = std::chrono::seconds(1);

class SteadyClock final : public Clock {
 public:
  Moment Now() const override {
    return std::chrono::duration_cast<Moment>(std::chrono::steady_clock::now().time_since_epoch());
  }
};

/// A failure on this thread would end the program. What was tried is tried again at the next check.
void Guarded(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& failure) {
    OutputDebugStringA(failure.what());
  }
}

/// Milliseconds until then, for a wait.
DWORD WaitUntil(Moment then, Moment now) {
  return static_cast<DWORD>(std::max<Moment::rep>(0, (then - now).count()));
}

}  // namespace

Task::Task(std::function<void(Engine&)> work)
    : work_(std::move(work)), done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

Task::~Task() {
  CloseHandle(done_);
}

void Task::Run(Engine& engine) {
  work_(engine);
}

Worker::Worker(MappingStore& store, std::string chosenDevice)
    : store_(store),
      chosenDevice_(std::move(chosenDevice)),
      wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      lastUse_(GetTickCount64()),
      thread_([this] { Run(); }) {}

Worker::~Worker() {
  stop_ = true;
  SetEvent(wake_);
  thread_.join();
  CloseHandle(wake_);
}

Known Worker::Look() const {
  const std::lock_guard lock(mutex_);
  return known_;
}

void Worker::KeepAwake() {
  // The first sign of life after a pause has the router looked after at once.
  const bool slept = !IsAwake();
  lastUse_ = GetTickCount64();
  if (slept) Do([](Engine& engine) { engine.Check(); });
}

bool Worker::IsAwake() const {
  return GetTickCount64() - lastUse_ < kAsleepAfterMilliseconds;
}

std::shared_ptr<Task> Worker::Do(std::function<void(Engine&)> work) {
  return Queue(std::move(work), false);
}

std::shared_ptr<Task> Worker::DoInstead(std::function<void(Engine&)> work) {
  return Queue(std::move(work), true);
}

std::shared_ptr<Task> Worker::Queue(std::function<void(Engine&)> work, bool instead) {
  auto task = std::make_shared<Task>(std::move(work));
  {
    const std::lock_guard lock(mutex_);
    tasks_.emplace_back(task, instead);
    if (instead) ++newerWishes_;
  }
  SetEvent(wake_);
  return task;
}

bool Worker::GoOn(std::size_t done, std::size_t total) {
  {
    const std::lock_guard lock(mutex_);
    known_.done = done;
    known_.total = total;
  }
  return IsWanted();
}

void Worker::Publish(const Engine& engine) {
  const std::lock_guard lock(mutex_);
  known_.report = engine.State();
  known_.looked = true;
  known_.done = known_.total = 0;
}

void Worker::RunTasks(Engine& engine) {
  while (!stop_) {
    std::shared_ptr<Task> task;
    {
      const std::lock_guard lock(mutex_);
      if (tasks_.empty()) return;
      task = tasks_.front().first;
      if (tasks_.front().second) --newerWishes_;
      tasks_.pop_front();
    }
    Guarded([&] { task->Run(engine); });
    Publish(engine);
    SetEvent(task->DoneEvent());
  }
}

void Worker::LookAfterTheRouter(Engine& engine, const std::vector<SsdpMessage>& announcements,
                                bool checkIsDue) {
  if (!IsAwake()) return;
  Guarded([&] {
    for (const SsdpMessage& message : announcements) engine.Hear(message);
    if (checkIsDue) engine.Check();
  });
}

void Worker::Run() {
  const SocketLibrary library;
  const SteadyClock clock;
  OwnMappings own(store_);
  WindowsNetwork network(stop_);
  Engine engine(network, own, clock, *this, chosenDevice_);
  SsdpListener announcements;
  Guarded([&] { engine.SearchAgain(); });
  Publish(engine);
  Moment nextCheck = clock.Now() + Engine::kCheckInterval;
  while (!stop_) {
    const std::array<HANDLE, 2> events = {wake_, announcements.Event()};
    WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                           WaitUntil(nextCheck, clock.Now()));
    if (stop_) break;
    RunTasks(engine);
    const bool checkIsDue = clock.Now() >= nextCheck;
    LookAfterTheRouter(engine, announcements.Take(), checkIsDue);
    if (checkIsDue) {
      announcements.JoinAdapters();
      nextCheck = clock.Now() + Engine::kCheckInterval;
    }
    if (engine.IsUnfinished()) nextCheck = std::min(nextCheck, clock.Now() + kTakeUpAgain);
    Publish(engine);
  }
}

}  // namespace upnp
