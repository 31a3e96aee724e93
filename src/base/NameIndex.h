#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace base {

/// Names in the order of their character codes, each with the key of the object that bears it. Equal names
/// stay in the order in which they came. Every operation costs at most the logarithm of the number of names.
class NameIndex {
 public:
  /// `key` is in the index at most once.
  void Add(std::string_view name, std::string_view key);
  /// Does nothing for an unknown key.
  void Remove(std::string_view key);
  void Clear();

  bool Contains(std::string_view name) const { return names_.contains(name); }
  /// Key of the first of the names that are greater than `name`; null when there is none.
  const std::string* KeyAfter(std::string_view name) const;

  using const_iterator = std::multimap<std::string, std::string, std::less<>>::const_iterator;
  /// The names that begin with `prefix` stand together: [first, last).
  struct Range {
    const_iterator first;
    const_iterator last;
  };
  Range WithPrefix(std::string_view prefix) const;

 private:
  std::multimap<std::string, std::string, std::less<>> names_;
  std::unordered_map<std::string, const_iterator> places_;
};

}  // namespace base
