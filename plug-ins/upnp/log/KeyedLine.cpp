#include "log/KeyedLine.h"

#include <algorithm>

#include "log/Characters.h"

namespace upnp::log {

namespace {

enum class Key { kNone, kSource, kSourcePort, kDestination, kDestinationPort, kProtocol, kIn, kOut };

struct NamedKey {
  std::string_view name;
  Key key;
};

// The names that routers give to the values, in small letters.
constexpr NamedKey kKeys[] = {
    {"src", Key::kSource},
    {"srcip", Key::kSource},
    {"src_ip", Key::kSource},
    {"source", Key::kSource},
    {"dst", Key::kDestination},
    {"dstip", Key::kDestination},
    {"dst_ip", Key::kDestination},
    {"destination", Key::kDestination},
    {"spt", Key::kSourcePort},
    {"sport", Key::kSourcePort},
    {"srcport", Key::kSourcePort},
    {"src_port", Key::kSourcePort},
    {"dpt", Key::kDestinationPort},
    {"dport", Key::kDestinationPort},
    {"dstport", Key::kDestinationPort},
    {"dst_port", Key::kDestinationPort},
    {"proto", Key::kProtocol},
    {"protocol", Key::kProtocol},
    {"in", Key::kIn},
    {"out", Key::kOut},
};
constexpr std::size_t kLongestKey = 11;
constexpr std::size_t kLongestValue = 64;

bool IsKeyCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '_';
}

/// The word that ends before the "=" at `equals`.
std::string_view KeyBefore(std::string_view line, std::size_t equals) {
  std::size_t start = equals;
  while (start > 0 && IsKeyCharacter(line[start - 1])) --start;
  return line.substr(start, equals - start);
}

Key Find(std::string_view name) {
  if (name.size() < 2 || name.size() > kLongestKey) return Key::kNone;
  for (const NamedKey& named : kKeys) {
    if (EqualsIgnoringCase(name, named.name)) return named.key;
  }
  return Key::kNone;
}

/// The value behind a "=", up to a blank, a comma or the like, or between quotes. Some routers end a line
/// with a zero byte.
std::string_view ValueAt(std::string_view line, std::size_t start) {
  const bool quoted = start < line.size() && line[start] == '"';
  if (quoted) ++start;
  const std::string_view rest = line.substr(start, kLongestValue);
  constexpr std::string_view kEnds(" \t,;}|\"\r\n\0", 10);
  return rest.substr(0, quoted ? rest.find('"') : rest.find_first_of(kEnds));
}

/// An address, and perhaps a port behind it. What follows a second colon names an interface.
void TakeEnd(std::string_view value, LineFields::End& end) {
  std::size_t position = 0;
  if (!TakeAddress(value, position, end)) return;
  if (position < value.size() && value[position] == ':') TakePort(value, ++position, end);
}

/// The letters and digits at the left, as "tcp" in "tcp/https".
std::string_view ProtocolWord(std::string_view value) {
  constexpr std::size_t kLongest = 12;
  const auto end = std::find_if(value.begin(), value.end(), [](char c) { return !IsKeyCharacter(c); });
  const auto size = static_cast<std::size_t>(end - value.begin());
  return size <= kLongest ? value.substr(0, size) : std::string_view();
}

/// A port that isn't one makes the line none of a packet, so the address goes too.
void TakePortValue(std::string_view value, LineFields::End& end) {
  std::size_t position = 0;
  if (TakePort(value, position, end) && position == value.size()) return;
  end.address.reset();
}

class Reader {
 public:
  /// False when the line's packet is over.
  bool Take(Key key, std::string_view value) {
    switch (key) {
      case Key::kSource:
        if (sawSource_) return false;
        sawSource_ = true;
        TakeEnd(value, fields.source);
        break;
      case Key::kDestination:
        TakeEnd(value, fields.destination);
        break;
      case Key::kSourcePort:
        TakePortValue(value, fields.source);
        break;
      case Key::kDestinationPort:
        TakePortValue(value, fields.destination);
        break;
      case Key::kProtocol:
        fields.protocol = ProtocolWord(value);
        break;
      case Key::kIn:
        fields.inInterface = value;
        break;
      case Key::kOut:
        if (!fields.inInterface) fields.inInterface = gluedIn_;
        fields.outInterface = value;
        break;
      case Key::kNone:
        break;
    }
    return true;
  }

  /// A filter's own words may stand before "IN=" without a blank between them.
  void TakeUnknown(std::string_view name, std::string_view line, std::size_t valueStart) {
    if (!sawSource_ && name.ends_with("IN")) gluedIn_ = ValueAt(line, valueStart);
  }

  LineFields fields;

 private:
  bool sawSource_ = false;
  std::optional<std::string_view> gluedIn_;
};

}  // namespace

LineFields ReadKeyedLine(std::string_view line) {
  Reader reader;
  for (std::size_t equals = line.find('='); equals != std::string_view::npos;
       equals = line.find('=', equals)) {
    const std::string_view name = KeyBefore(line, equals);
    const Key key = Find(name);
    ++equals;
    if (key == Key::kNone) {
      reader.TakeUnknown(name, line, equals);
      continue;
    }
    const std::string_view value = ValueAt(line, equals);
    if (!reader.Take(key, value)) break;
    equals += value.size();
  }
  return reader.fields;
}

}  // namespace upnp::log
