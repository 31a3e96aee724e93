#include "log/LogFeed.h"

#include <utility>

namespace upnp::log {

namespace {

constexpr Time kSecond{1000};

Row RowOf(const Packet& packet) {
  Row row;
  row.type = packet.direction == Direction::kIn ? "in" : "out";
  row.source = packet.sourceAddress;
  row.sourcePort = packet.sourcePort;
  row.destination = packet.destinationAddress;
  row.destinationPort = packet.destinationPort;
  return row;
}

Row LeftOutRow(std::size_t count) {
  Row row;
  row.type = "note";
  row.miscellaneous = count == 1 ? "1 more packet came too fast and was left out"
                                 : std::to_string(count) + " more packets came too fast and were left out";
  return row;
}

}  // namespace

void RowLimit::ForgetOld(Time now) {
  while (!rows_.empty() && now - rows_.front() >= kSecond) rows_.pop_front();
}

bool RowLimit::HasRoom(Time now) {
  ForgetOld(now);
  return rows_.size() + 1 < kRowsASecond;
}

void RowLimit::Count(Time now) {
  rows_.push_back(now);
}

void RowLimit::LeaveOut(std::size_t rows, Time now) {
  if (leftOut_ == 0) firstLeftOut_ = now;
  leftOut_ += rows;
}

std::size_t RowLimit::TakeLeftOut(Time now) {
  if (leftOut_ == 0 || now - firstLeftOut_ < kSecond) return 0;
  ForgetOld(now);
  Count(now);
  return std::exchange(leftOut_, 0);
}

LogFeed::LogFeed(NamePort namePort, TakeRow takeRow)
    : namePort_(std::move(namePort)), takeRow_(std::move(takeRow)) {}

void LogFeed::Take(const std::vector<Packet>& packets, std::size_t dropped, Time now) {
  if (dropped > 0) limit_.LeaveOut(dropped, now);
  for (const Packet& packet : packets) TakeOne(packet, now);
  Tell(now);
}

void LogFeed::TakeOne(const Packet& packet, Time now) {
  // Asked first, so that a flood costs no questions.
  if (!limit_.HasRoom(now)) {
    limit_.LeaveOut(1, now);
    return;
  }
  Row row = RowOf(packet);
  try {
    const PortName name = namePort_(row.destinationPort);
    if (name.filterOut) return;
    row.miscellaneous = name.description;
    limit_.Count(now);
    takeRow_(row);
  } catch (...) {
    return;
  }
}

void LogFeed::Tell(Time now) {
  const std::size_t count = limit_.TakeLeftOut(now);
  if (count == 0) return;
  try {
    takeRow_(LeftOutRow(count));
  } catch (...) {
    return;
  }
}

}  // namespace upnp::log
