#include "rules/TagReader.h"

#include "rules/Trim.h"

namespace upnp {

/// The position of the text from `from` on; npos when it isn't there. What was searched counts as work.
std::size_t TagReader::Find(std::string_view what, std::size_t from) {
  const std::size_t found = xml_.find(what, from);
  work_ += (found == std::string_view::npos ? xml_.size() : found + what.size()) - from;
  return found;
}

std::optional<Tag> TagReader::Next() {
  const std::size_t textBegin = at_;
  while (true) {
    const std::size_t begin = Find("<", at_);
    if (begin == std::string_view::npos) break;
    const bool comment = xml_.substr(begin).starts_with("<!--");
    const std::string_view mark = comment ? std::string_view("-->") : std::string_view(">");
    const std::size_t end = Find(mark, begin + 1);
    // Without an end here there is none further on either.
    if (end == std::string_view::npos) break;
    at_ = end + mark.size();
    std::string_view name = xml_.substr(begin + 1, end - begin - 1);
    if (name.empty() || name.front() == '!' || name.front() == '?') continue;
    Tag tag;
    tag.text = Trim(xml_.substr(textBegin, begin - textBegin));
    if (name.front() == '/') {
      tag.kind = Tag::Kind::kEnd;
      name.remove_prefix(1);
    } else if (name.back() == '/') {
      tag.kind = Tag::Kind::kWhole;
      name.remove_suffix(1);
    }
    work_ += name.size();
    name = name.substr(0, name.find_first_of(" \t\r\n"));
    if (const std::size_t colon = name.find(':'); colon != std::string_view::npos)
      name.remove_prefix(colon + 1);
    tag.name = name;
    return tag;
  }
  at_ = xml_.size();
  return std::nullopt;
}

}  // namespace upnp
