#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace upnp {

/// The request for a page of a router.
std::string HttpRequest(std::string_view url);

/// An answer to such a request, taken in piece by piece. It keeps no more than a bound, whatever the router
/// promises or sends.
class HttpAnswer {
 public:
  /// A page may be as long as `most`; with the lines before it the answer may be twice that.
  explicit HttpAnswer(std::size_t most) : most_(most) {}

  /// Takes what has come. False when the answer is whole, or more of it would be too much.
  bool Take(std::string_view piece);
  /// The page, when the router gave one and it isn't too long. Where the router tells no length, its end is
  /// the end of the connection, and this is called after that.
  std::optional<std::string> Page() const;

 private:
  struct Head {
    std::size_t length = 0;  ///< with the empty line behind it
    bool found = false;      ///< the router has the page
    bool chunked = false;
    std::optional<std::size_t> promised;
  };

  std::optional<Head> ReadHead() const;
  std::optional<std::string> Chunks(std::string_view body, bool& whole) const;

  std::size_t most_;
  std::string text_;
};

}  // namespace upnp
