#include "rules/RestartWatch.h"

namespace upnp {

namespace {

template <class Value>
bool Learn(std::optional<Value>& last, const std::optional<Value>& now,
           bool (*isBreak)(const Value&, const Value&)) {
  if (!now) return false;
  const bool breaks = last && isBreak(*last, *now);
  last = now;
  return breaks;
}

}  // namespace

bool RestartWatch::Notice(const Signs& signs) {
  using Number = std::uint32_t;
  const bool boot =
      Learn<Number>(last_.bootId, signs.bootId, [](const Number& a, const Number& b) { return a != b; });
  const bool time =
      Learn<Number>(last_.upTime, signs.upTime, [](const Number& a, const Number& b) { return b < a; });
  const bool address = Learn<std::string>(last_.wanAddress, signs.wanAddress,
                                          [](const std::string& a, const std::string& b) { return a != b; });
  return boot || time || address;
}

}  // namespace upnp
