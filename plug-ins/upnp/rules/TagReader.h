#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace upnp {

/// A tag of a description, and the text that came before it.
struct Tag {
  enum class Kind { kBegin, kEnd, kWhole };  ///< <a>, </a> and <a/>
  Kind kind = Kind::kBegin;
  std::string_view name;  ///< without its name space
  std::string_view text;  ///< between the tag before and this one, trimmed
};

/// Reads the tags of a text one after another, whatever the text is. Every character is looked at a bounded
/// number of times, so a text that is made to hold the reader up holds up nobody.
class TagReader {
 public:
  explicit TagReader(std::string_view xml) : xml_(xml) {}

  /// Nothing behind the last tag that has an end. Comments and declarations are left out.
  std::optional<Tag> Next();
  /// How many characters have been looked at so far.
  std::size_t Work() const { return work_; }

 private:
  std::size_t Find(std::string_view what, std::size_t from);

  std::string_view xml_;
  std::size_t at_ = 0;
  std::size_t work_ = 0;
};

}  // namespace upnp
