#include "rules/Gateway.h"

namespace upnp {

bool IsMissing(const Answer& answer) {
  return answer.Code() == error::kNoSuchEntry || answer.Code() == error::kEndOfTable;
}

Added Gateway::AddOne(const PortMapping& mapping, bool readBack) {
  Added added;
  added.answer = Add(mapping);
  if (added.answer.IsDone() && readBack) {
    added.readBack.answer = Entry(mapping.Key(), added.readBack.mapping);
  }
  return added;
}

std::vector<Added> Gateway::AddAll(std::span<const PortMapping> mappings, bool readBack) {
  std::vector<Added> additions(mappings.size());
  for (std::size_t i = 0; i < mappings.size(); ++i) {
    additions[i] = AddOne(mappings[i], readBack);
    if (!additions[i].answer.IsDone()) break;
  }
  return additions;
}

std::vector<Lookup> Gateway::Entries(std::span<const PortKey> keys) {
  std::vector<Lookup> lookups(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    lookups[i].answer = Entry(keys[i], lookups[i].mapping);
    if (!lookups[i].answer.IsDone() && !IsMissing(lookups[i].answer)) break;
  }
  return lookups;
}

}  // namespace upnp
