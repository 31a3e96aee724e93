#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "rules/Engine.h"

namespace upnp {

/// What the worker knows at a moment.
struct Known {
  Report report;
  bool looked = false;    ///< the first search is over
  std::size_t done = 0;   ///< ports of the work under way
  std::size_t total = 0;  ///< 0 while nothing is under way
};

/// Something that the worker was asked to do.
class Task {
 public:
  explicit Task(std::function<void(Engine&)> work);
  ~Task();
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;

  void Run(Engine& engine);
  /// Set when it has run.
  HANDLE DoneEvent() const { return done_; }
  bool IsDone() const { return WaitForSingleObject(done_, 0) == WAIT_OBJECT_0; }

 private:
  std::function<void(Engine&)> work_;
  HANDLE done_;
};

/// The thread that owns the network. What it knows is there at once; what takes time is asked of it as a
/// task.
class Worker final : private Progress {
 public:
  /// `chosenDevice` is the user's choice of a router, or empty. The stores and the trace must outlive the
  /// worker.
  Worker(MappingStore& store, RouterStore& routers, Trace& trace, std::string chosenDevice);
  /// Calls off what is under way.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  Known Look() const;
  /// Somebody uses the plug-in. Without it the worker stops looking after the router, and leases end.
  void KeepAwake();
  std::shared_ptr<Task> Do(std::function<void(Engine&)> work);
  /// A task that makes what is under way end soon, since it tells a newer wish.
  std::shared_ptr<Task> DoInstead(std::function<void(Engine&)> work);

 private:
  bool GoOn(std::size_t done, std::size_t total) override;
  bool IsWanted() const override { return !stop_ && newerWishes_ == 0; }
  void Run();
  void RunTasks(Engine& engine);
  std::vector<std::string> AdaptersToHear(const Engine& engine) const;
  void Publish(const Engine& engine);
  bool IsAwake() const;
  std::shared_ptr<Task> Queue(std::function<void(Engine&)> work, bool instead);

  MappingStore& store_;
  RouterStore& routers_;
  Trace& trace_;
  const std::string chosenDevice_;
  HANDLE wake_;
  std::atomic<bool> stop_{false};
  std::atomic<bool> hurry_{false};  ///< a newer wish waits, or the end: no search is worth waiting for
  std::atomic<int> newerWishes_{0};
  std::atomic<ULONGLONG> lastUse_;
  mutable std::mutex mutex_;
  std::deque<std::pair<std::shared_ptr<Task>, bool>> tasks_;  ///< true: counts among the newer wishes
  Known known_;
  std::thread thread_;
};

}  // namespace upnp
