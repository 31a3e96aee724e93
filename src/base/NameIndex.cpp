#include "base/NameIndex.h"

namespace base {

void NameIndex::Add(std::string_view name, std::string_view key) {
  places_.insert_or_assign(std::string(key), names_.emplace(name, key));
}

void NameIndex::Remove(std::string_view key) {
  const auto place = places_.find(std::string(key));
  if (place == places_.end()) return;
  names_.erase(place->second);
  places_.erase(place);
}

void NameIndex::Clear() {
  places_.clear();
  names_.clear();
}

const std::string* NameIndex::KeyAfter(std::string_view name) const {
  const auto after = names_.upper_bound(name);
  return after == names_.end() ? nullptr : &after->second;
}

NameIndex::Range NameIndex::WithPrefix(std::string_view prefix) const {
  std::string beyond(prefix);
  while (!beyond.empty() && static_cast<unsigned char>(beyond.back()) == 0xFF) beyond.pop_back();
  if (beyond.empty()) return {names_.lower_bound(prefix), names_.end()};
  beyond.back() = static_cast<char>(static_cast<unsigned char>(beyond.back()) + 1);
  return {names_.lower_bound(prefix), names_.lower_bound(beyond)};
}

}  // namespace base
