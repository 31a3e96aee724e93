#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/Error.h"

namespace base {

/// Items in the order of their insertion, each found by its key in constant time.
/// Iteration gives the items; it stays valid while other items are added or removed.
template <typename Item>
class KeyedCollection {
 public:
  /// Keys that a fold turns into the same text are one key.
  using Fold = std::string (*)(std::string_view);

  /// Without a fold, keys are compared exactly.
  explicit KeyedCollection(Fold fold = nullptr) : fold_(fold) {}
  KeyedCollection(const KeyedCollection&) = delete;
  KeyedCollection& operator=(const KeyedCollection&) = delete;

  using Items = std::list<Item>;
  using const_iterator = typename Items::const_iterator;

  /// Adds at the end. A key that is taken is a failure and changes nothing.
  void Add(Item item, std::string_view key) { Insert(items_.end(), std::move(item), key); }

  /// Adds in front of the item of the key `before`; an unknown `before` or a taken `key` is a failure.
  void AddBefore(Item item, std::string_view key, std::string_view before) {
    Insert(Find(before)->second, std::move(item), key);
  }

  void Remove(std::string_view key) {
    const auto found = Find(key);
    // The item goes last: what it releases may look into this collection.
    Items removed;
    removed.splice(removed.end(), items_, found->second);
    index_.erase(found);
  }

  const Item& Get(std::string_view key) const { return *Find(key)->second; }
  /// Where the item stands in the order; fails as Get does.
  const_iterator PlaceOf(std::string_view key) const { return Find(key)->second; }
  bool Contains(std::string_view key) const { return Lookup(index_, key) != index_.end(); }
  const Item* TryGet(std::string_view key) const {
    const auto found = Lookup(index_, key);
    return found == index_.end() ? nullptr : &*found->second;
  }

  std::size_t Count() const { return items_.size(); }
  bool IsEmpty() const { return items_.empty(); }
  void Clear() {
    index_.clear();
    Items removed;
    removed.swap(items_);
  }

  const_iterator begin() const { return items_.begin(); }
  const_iterator end() const { return items_.end(); }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const { return std::hash<std::string_view>()(key); }
  };
  using Index = std::unordered_map<std::string, typename Items::iterator, Hash, std::equal_to<>>;

  void Insert(typename Items::iterator place, Item item, std::string_view key) {
    if (Contains(key)) {
      throw Error(ErrorNumber::kKeyTaken,
                  "This key is already associated with an element: \"" + std::string(key) + "\"");
    }
    Items added;
    added.push_back(std::move(item));
    index_.emplace(fold_ ? fold_(key) : std::string(key), added.begin());
    items_.splice(place, added);
  }

  typename Index::iterator Find(std::string_view key) { return Known(Lookup(index_, key), key); }
  typename Index::const_iterator Find(std::string_view key) const { return Known(Lookup(index_, key), key); }

  template <typename AnyIndex>
  auto Lookup(AnyIndex& index, std::string_view key) const {
    return fold_ ? index.find(fold_(key)) : index.find(key);
  }

  template <typename Iterator>
  Iterator Known(Iterator found, std::string_view key) const {
    if (found == index_.end()) {
      throw Error(ErrorNumber::kKeyUnknown, "There is no element with the key \"" + std::string(key) + "\"");
    }
    return found;
  }

  Fold fold_;
  Items items_;
  Index index_;
};

}  // namespace base
