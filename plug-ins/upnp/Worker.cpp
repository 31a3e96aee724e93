#include "Worker.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <optional>
#include <utility>

#include "NetworkChanges.h"
#include "Socket.h"
#include "SsdpListener.h"
#include "WindowsNetwork.h"

namespace upnp {

namespace {

/// A program that uses the plug-in asks for warnings three times a second.
constexpr ULONGLONG kAsleepAfterMilliseconds = 5 * 60 * 1000;
/// A change of the network comes in several pieces: the address, then the route.
constexpr Moment kSettle = std::chrono::milliseconds(1500);
/// A check that failed without moving its own time must not run again and again.
constexpr Moment kShortestPause = std::chrono::milliseconds(500);

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

Worker::Worker(MappingStore& store, RouterStore& routers, Trace& trace, std::string chosenDevice)
    : store_(store),
      routers_(routers),
      trace_(trace),
      chosenDevice_(std::move(chosenDevice)),
      wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      lastUse_(GetTickCount64()),
      thread_([this] { Run(); }) {}

Worker::~Worker() {
  stop_ = hurry_ = true;
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
    if (instead) hurry_ = ++newerWishes_ > 0;
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
      if (tasks_.front().second) hurry_ = --newerWishes_ > 0 || stop_;
      tasks_.pop_front();
    }
    Guarded([&] { task->Run(engine); });
    Publish(engine);
    SetEvent(task->DoneEvent());
  }
}

/// The port is held while it is of use, and where: on the adapter of the router in use, or on all of them
/// while a router is looked for.
std::vector<std::string> Worker::AdaptersToHear(const Engine& engine) const {
  if (!IsAwake()) return {};
  const Report& report = engine.State();
  if (report.functional && !report.current.localAddress.empty()) return {report.current.localAddress};
  return AdapterAddresses();
}

void Worker::Run() {
  const SocketLibrary library;
  const SteadyClock clock;
  OwnMappings own(store_);
  KnownRouters known(routers_);
  WindowsNetwork network(stop_, hurry_);
  Engine engine(network, own, known, clock, *this, trace_, chosenDevice_);
  SsdpListener announcements;
  NetworkChanges changes;
  std::optional<Moment> lookAround;
  Guarded([&] { engine.Check(); });
  Publish(engine);
  while (!stop_) {
    announcements.Listen(AdaptersToHear(engine));
    const Moment earliest = clock.Now() + kShortestPause;
    const Moment due =
        IsAwake() ? std::max(engine.NextCheck(), earliest) : clock.Now() + Engine::kCheckInterval;
    const std::array<HANDLE, 3> events = {wake_, announcements.Event(), changes.Event()};
    WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                           WaitUntil(std::min(due, lookAround.value_or(due)), clock.Now()));
    if (stop_) break;
    RunTasks(engine);
    if (changes.Take() && !lookAround) lookAround = clock.Now() + kSettle;
    const std::vector<SsdpMessage> heard = announcements.Take();
    if (!IsAwake()) continue;
    Guarded([&] {
      for (const SsdpMessage& message : heard) engine.Hear(message);
      if (lookAround && clock.Now() >= *lookAround) {
        lookAround.reset();
        engine.LookAround();
      } else if (clock.Now() >= engine.NextCheck()) {
        engine.Check();
      }
    });
    Publish(engine);
  }
}

}  // namespace upnp
