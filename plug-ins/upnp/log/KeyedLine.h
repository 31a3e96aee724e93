#pragma once

#include <string_view>

#include "log/LineFields.h"

namespace upnp::log {

/// Reads a line that names its values, "SRC=203.0.113.9 DST=192.168.1.2 PROTO=TCP SPT=38788 DPT=8080", as the
/// packet filter of Linux writes it and many routers with it. What stands before, between and behind is
/// passed over, and so is the packet inside an ICMP message, which comes second. Takes time in proportion to
/// the line.
LineFields ReadKeyedLine(std::string_view line);

}  // namespace upnp::log
