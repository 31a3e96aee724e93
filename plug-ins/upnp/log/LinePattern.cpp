#include "log/LinePattern.h"

#include <algorithm>
#include <stdexcept>

#include "log/Characters.h"

namespace upnp::log {

namespace {

/// How often a pattern's beginning is tried in a line: a line of nothing else must not take long.
constexpr int kMostTries = 4;
constexpr std::size_t kLongestWord = 32;

/// Goes behind `text` at `position`; a blank of it stands for one or more.
bool PassText(std::string_view small, std::size_t& position, std::string_view text) {
  std::size_t at = position;
  for (const char c : text) {
    if (at >= small.size()) return false;
    if (c == ' ') {
      if (!IsBlank(small[at])) return false;
      while (at < small.size() && IsBlank(small[at])) ++at;
    } else if (small[at++] != c) {
      return false;
    }
  }
  position = at;
  return true;
}

/// A text is searched by its first word; the rest, with its blanks, is compared.
std::size_t FindText(std::string_view small, std::size_t position, std::string_view text) {
  const std::string_view word = text.substr(0, text.find(' ', 1));
  for (int tries = 0; tries < kMostTries; ++tries) {
    position = small.find(word, position);
    if (position == std::string_view::npos) break;
    std::size_t end = position;
    if (PassText(small, end, text)) return position;
    ++position;
  }
  return std::string_view::npos;
}

template <class Kind>
std::string_view TakeWord(std::string_view line, std::size_t& position, Kind isOfKind) {
  const std::string_view rest = line.substr(position, kLongestWord + 1);
  const auto end = std::find_if_not(rest.begin(), rest.end(), isOfKind);
  const auto size = static_cast<std::size_t>(end - rest.begin());
  if (size > kLongestWord) return {};
  position += size;
  return rest.substr(0, size);
}

bool IsWordCharacter(char c) {
  return IsLetter(c) || IsDigit(c);
}

/// "(none)" and "(unknown 0)" stand for the router itself.
std::string_view TakeInterface(std::string_view line, std::size_t& position) {
  const std::size_t start = position;
  if (line.substr(start, 1) == "(") {
    const std::size_t close = line.substr(start, kLongestWord).find(')');
    if (close != std::string_view::npos) position = start + close + 1;
    return {};
  }
  const std::string_view name = TakeWord(line, position, [](char c) {
    return static_cast<unsigned char>(c) > ' ' &&
           std::string_view(",;()[]{}<>").find(c) == std::string_view::npos;
  });
  // "LAN->WAN": the arrow isn't part of the name.
  const bool beforeArrow = name.size() > 1 && name.ends_with('-') && line.substr(position, 1) == ">";
  if (beforeArrow) position = start + name.size() - 1;
  return line.substr(start, position - start);
}

}  // namespace

LinePattern::LinePattern(std::string_view pattern) {
  while (!pattern.empty()) {
    if (pattern.front() == '{') {
      const std::size_t close = pattern.find('}');
      if (close == std::string_view::npos) throw std::invalid_argument("A name isn't closed.");
      steps_.push_back({KindOf(pattern.substr(1, close - 1)), {}});
      pattern.remove_prefix(close + 1);
    } else {
      const std::string_view text = pattern.substr(0, pattern.find('{'));
      std::string small(text);
      std::transform(small.begin(), small.end(), small.begin(), ToLower);
      steps_.push_back({Kind::kText, small});
      pattern.remove_prefix(text.size());
    }
  }
  CheckOrder();
}

void LinePattern::CheckOrder() const {
  if (steps_.empty() || steps_.front().kind != Kind::kText) {
    throw std::invalid_argument("A pattern begins with text.");
  }
  for (std::size_t i = 1; i < steps_.size(); ++i) {
    if (steps_[i - 1].kind == Kind::kSkip && steps_[i].kind != Kind::kText) {
      throw std::invalid_argument("Text must follow what is skipped.");
    }
  }
  if (steps_.back().kind == Kind::kSkip) throw std::invalid_argument("The end needs no skip.");
}

LinePattern::Kind LinePattern::KindOf(std::string_view name) {
  struct Named {
    std::string_view name;
    Kind kind;
  };
  static constexpr Named kNames[] = {{"source", Kind::kSource},
                                     {"sourcePort", Kind::kSourcePort},
                                     {"destination", Kind::kDestination},
                                     {"destinationPort", Kind::kDestinationPort},
                                     {"protocol", Kind::kProtocol},
                                     {"in", Kind::kIn},
                                     {"out", Kind::kOut},
                                     {"direction", Kind::kDirection},
                                     {"skip", Kind::kSkip}};
  for (const Named& named : kNames) {
    if (named.name == name) return named.kind;
  }
  throw std::invalid_argument("There is no such name: " + std::string(name));
}

std::optional<LineFields> LinePattern::Match(std::string_view line, std::string_view small) const {
  std::size_t start = 0;
  for (int tries = 0; tries < kMostTries; ++tries) {
    start = FindText(small, start, steps_.front().text);
    if (start == std::string_view::npos) return std::nullopt;
    LineFields fields;
    if (MatchAt(line, small, start, fields)) return fields;
    ++start;
  }
  return std::nullopt;
}

bool LinePattern::MatchAt(std::string_view line, std::string_view small, std::size_t position,
                          LineFields& fields) const {
  bool skipping = false;
  for (const Step& step : steps_) {
    if (step.kind == Kind::kSkip) {
      skipping = true;
    } else if (step.kind == Kind::kText) {
      if (skipping) position = FindText(small, position, step.text);
      skipping = false;
      if (position == std::string_view::npos || !PassText(small, position, step.text)) return false;
    } else if (!TakeStep(step.kind, line, position, fields)) {
      return false;
    }
  }
  return true;
}

bool LinePattern::TakeStep(Kind kind, std::string_view line, std::size_t& position, LineFields& fields) {
  switch (kind) {
    case Kind::kSource:
      return TakeAddress(line, position, fields.source);
    case Kind::kDestination:
      return TakeAddress(line, position, fields.destination);
    case Kind::kSourcePort:
      return TakePort(line, position, fields.source);
    case Kind::kDestinationPort:
      return TakePort(line, position, fields.destination);
    case Kind::kProtocol:
      fields.protocol = TakeWord(line, position, IsWordCharacter);
      return !fields.protocol.empty();
    case Kind::kIn:
      fields.inInterface = TakeInterface(line, position);
      return true;
    case Kind::kOut:
      fields.outInterface = TakeInterface(line, position);
      return true;
    case Kind::kDirection:
      fields.direction = TakeWord(line, position, IsLetter);
      return !fields.direction.empty();
    case Kind::kText:
    case Kind::kSkip:
      break;
  }
  return false;
}

}  // namespace upnp::log
