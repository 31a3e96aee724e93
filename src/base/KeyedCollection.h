#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"

namespace base {

enum class KeyCase { kExact, kIgnored };

/// Items in the order of their insertion, each found by its key in constant time.
/// Iteration gives the items; it stays valid while other items are added or removed.
template <typename Item>
class KeyedCollection {
 public:
  explicit KeyedCollection(KeyCase keyCase = KeyCase::kIgnored) : index_(0, Hash{keyCase}, Equal{keyCase}) {}
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
  bool Contains(std::string_view key) const { return index_.contains(key); }
  const Item* TryGet(std::string_view key) const {
    const auto found = index_.find(key);
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
    KeyCase keyCase;
    std::size_t operator()(std::string_view key) const {
      if (keyCase == KeyCase::kExact) return std::hash<std::string_view>()(key);
      // FNV-1a over the folded characters.
      std::uint64_t hash = 14695981039346656037u;
      for (const char c : key) hash = (hash ^ static_cast<unsigned char>(FoldCase(c))) * 1099511628211u;
      return static_cast<std::size_t>(hash);
    }
  };
  struct Equal {
    using is_transparent = void;
    KeyCase keyCase;
    bool operator()(std::string_view a, std::string_view b) const {
      return keyCase == KeyCase::kExact ? a == b : EqualsIgnoringCase(a, b);
    }
  };
  using Index = std::unordered_map<std::string, typename Items::iterator, Hash, Equal>;

  void Insert(typename Items::iterator place, Item item, std::string_view key) {
    if (index_.contains(key)) {
      throw Error(ErrorNumber::kKeyTaken,
                  "This key is already associated with an element: \"" + std::string(key) + "\"");
    }
    Items added;
    added.push_back(std::move(item));
    index_.emplace(key, added.begin());
    items_.splice(place, added);
  }

  typename Index::iterator Find(std::string_view key) { return Known(index_.find(key), key); }
  typename Index::const_iterator Find(std::string_view key) const { return Known(index_.find(key), key); }

  template <typename Iterator>
  Iterator Known(Iterator found, std::string_view key) const {
    if (found == index_.end()) {
      throw Error(ErrorNumber::kKeyUnknown, "There is no element with the key \"" + std::string(key) + "\"");
    }
    return found;
  }

  Items items_;
  Index index_;
};

}  // namespace base
