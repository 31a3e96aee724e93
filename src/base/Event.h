#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace base {

/// An event of a class: handlers connect to it, the owner raises it. Handlers run in the order of connecting.
/// Raising allocates nothing. Handlers may connect, disconnect and raise again while they run; one that is
/// connected meanwhile runs from the next raise on, one that is disconnected doesn't run any more. The last
/// handler to run may end the event itself, if it was the only one. A failure in a handler ends the raise and
/// goes to who raised.
template <typename... Arguments>
class Event {
 public:
  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  /// `object` must outlive the event or be disconnected first.
  template <auto Handler, typename Object>
  void Connect(Object* object) {
    const Target target{[](void* receiver, Arguments... arguments) {
                          (static_cast<Object*>(receiver)->*Handler)(static_cast<Arguments&&>(arguments)...);
                        },
                        object};
    if (!first_.invoke && !more_) {
      first_ = target;
    } else {
      Add({target, nullptr});
    }
  }

  void Connect(std::function<void(Arguments...)> handler) {
    auto owned = std::make_shared<std::function<void(Arguments...)>>(std::move(handler));
    void* receiver = owned.get();
    Add({{[](void* function, Arguments... arguments) {
            (*static_cast<std::function<void(Arguments...)>*>(function))(
                static_cast<Arguments&&>(arguments)...);
          },
          receiver},
         std::move(owned)});
  }

  /// Ends every connection to `object`.
  void Disconnect(const void* object) {
    if (first_.receiver == object) first_ = {};
    if (!more_) return;
    for (Slot& slot : more_->slots) {
      if (slot.target.receiver == object) slot = {};
    }
    DropEmptySlots();
  }

  void Raise(Arguments... arguments) const {
    More* const more = more_ && !more_->slots.empty() ? more_.get() : nullptr;
    const std::size_t count = more ? more->slots.size() : 0;
    const Raising raising(more);
    if (first_.invoke) first_.invoke(first_.receiver, arguments...);
    for (std::size_t i = 0; i < count; ++i) {
      // A copy, since a handler may connect another one and so move the slots.
      if (const Slot slot = more->slots[i]; slot.target.invoke) {
        slot.target.invoke(slot.target.receiver, arguments...);
      }
    }
  }

  bool HasHandlers() const {
    if (first_.invoke) return true;
    if (!more_) return false;
    for (const Slot& slot : more_->slots) {
      if (slot.target.invoke) return true;
    }
    return false;
  }

 private:
  struct Target {
    void (*invoke)(void*, Arguments...) = nullptr;
    void* receiver = nullptr;
  };
  struct Slot {
    Target target;
    std::shared_ptr<void> owned;
  };
  struct More {
    std::vector<Slot> slots;
    int raises = 0;
  };

  /// While a raise walks the slots, they keep their places.
  class Raising {
   public:
    explicit Raising(More* more) : more_(more) {
      if (more_) ++more_->raises;
    }
    ~Raising() {
      if (more_) --more_->raises;
    }
    Raising(const Raising&) = delete;
    Raising& operator=(const Raising&) = delete;

   private:
    More* more_;
  };

  void Add(Slot slot) {
    if (!more_) more_ = std::make_unique<More>();
    DropEmptySlots();
    more_->slots.push_back(std::move(slot));
  }

  void DropEmptySlots() {
    if (more_->raises == 0) std::erase_if(more_->slots, [](const Slot& slot) { return !slot.target.invoke; });
  }

  // Nearly every event has one handler, and there are several events in each of a million mappings.
  Target first_;
  std::unique_ptr<More> more_;
};

}  // namespace base
