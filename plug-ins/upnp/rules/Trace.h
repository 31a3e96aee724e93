#pragma once

#include <string>

namespace upnp {

/// Takes what the plug-in does and what comes of it, a line each, for support.
class Trace {
 public:
  virtual ~Trace() = default;
  virtual void Line(const std::string& text) = 0;
};

/// For those whom nobody reads.
class NoTrace final : public Trace {
 public:
  void Line(const std::string&) override {}
};

}  // namespace upnp
