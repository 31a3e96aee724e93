#include "rules/HttpAnswer.h"

#include <algorithm>
#include <charconv>

#include "log/Characters.h"
#include "rules/Trim.h"
#include "rules/WebAddress.h"

namespace upnp {

namespace {

std::optional<std::size_t> Number(std::string_view text, int base) {
  std::size_t number = 0;
  const auto [stop, failure] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  // More than fits into a number is too long in any case.
  if (failure == std::errc::result_out_of_range) return static_cast<std::size_t>(-1);
  if (failure != std::errc() || stop == text.data()) return std::nullopt;
  return number;
}

}  // namespace

std::string HttpRequest(std::string_view url) {
  return "GET " + PathOf(url) + " HTTP/1.1\r\nHOST: " + HostOf(url) + ":" + std::to_string(PortOf(url)) +
         "\r\nCONNECTION: close\r\n\r\n";
}

bool HttpAnswer::Take(std::string_view piece) {
  const std::size_t room = 2 * most_ - std::min(2 * most_, text_.size());
  text_.append(piece.substr(0, room));
  if (piece.size() >= room) return false;
  const std::optional<Head> head = ReadHead();
  if (!head) return true;
  if (!head->found) return false;
  const std::string_view body = std::string_view(text_).substr(head->length);
  if (body.size() > most_) return false;
  if (head->chunked) {
    bool whole = false;
    return Chunks(body, whole) && !whole;
  }
  return !head->promised || (*head->promised <= most_ && body.size() < *head->promised);
}

std::optional<std::string> HttpAnswer::Page() const {
  const std::optional<Head> head = ReadHead();
  if (!head || !head->found) return std::nullopt;
  const std::string_view body = std::string_view(text_).substr(head->length);
  bool whole = false;
  std::optional<std::string> page = head->chunked ? Chunks(body, whole) : std::string(body);
  if (!head->chunked && head->promised) {
    whole = body.size() >= *head->promised;
    if (whole) page->resize(*head->promised);
  } else if (!head->chunked) {
    whole = true;
  }
  if (!whole || !page || page->size() > most_) return std::nullopt;
  return page;
}

/// Nothing while the lines before the page aren't there yet.
std::optional<HttpAnswer::Head> HttpAnswer::ReadHead() const {
  constexpr std::string_view kEnd = "\r\n\r\n";
  // A head that is longer than this isn't one.
  constexpr std::size_t kLongestHead = 8 * 1024;
  const std::string_view text = std::string_view(text_).substr(0, kLongestHead);
  const std::size_t end = text.find(kEnd);
  if (end == std::string_view::npos)
    return text_.size() < kLongestHead ? std::nullopt : std::optional<Head>(Head());
  Head head;
  head.length = end + kEnd.size();
  std::string_view rest = text.substr(0, end);
  const auto next = [&rest] {
    const std::size_t stop = rest.find('\n');
    const std::string_view line = Trim(rest.substr(0, stop));
    rest = stop == std::string_view::npos ? std::string_view() : rest.substr(stop + 1);
    return line;
  };
  const std::string_view status = next();
  head.found = status.starts_with("HTTP/1.") && status.substr(0, 13).find(" 200") != std::string_view::npos;
  while (!rest.empty()) {
    const std::string_view line = next();
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    const std::string_view name = Trim(line.substr(0, colon));
    const std::string_view value = Trim(line.substr(colon + 1));
    if (log::EqualsIgnoringCase(name, "Content-Length")) head.promised = Number(value, 10);
    if (log::EqualsIgnoringCase(name, "Transfer-Encoding"))
      head.chunked = log::ContainsIgnoringCase(value, "chunked");
  }
  return head;
}

/// The page out of its chunks; `whole` is set when the last one is there. Nothing when they make no sense.
std::optional<std::string> HttpAnswer::Chunks(std::string_view body, bool& whole) const {
  std::string page;
  while (true) {
    const std::size_t line = body.find("\r\n");
    if (line == std::string_view::npos) return page;
    const std::optional<std::size_t> length = Number(body.substr(0, line), 16);
    if (!length || *length > most_) return std::nullopt;
    if (*length == 0) {
      whole = true;
      return page;
    }
    body.remove_prefix(line + 2);
    page.append(body.substr(0, *length));
    if (body.size() < *length + 2) return page;
    body.remove_prefix(*length + 2);
  }
}

}  // namespace upnp
