#include "rules/TraceFile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <system_error>

namespace upnp {

namespace {

/// The universal time, so that the trace says nothing about where it was written.
std::string Now() {
  using std::chrono::system_clock;
  const system_clock::time_point now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  const std::chrono::sys_days day = std::chrono::floor<std::chrono::days>(system_clock::from_time_t(seconds));
  const std::chrono::year_month_day date(day);
  const auto ofDay =
      std::chrono::duration_cast<std::chrono::seconds>(system_clock::from_time_t(seconds) - day).count();
  std::array<char, 40> text{};
  std::snprintf(
      text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d.%03d ", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), static_cast<int>(ofDay / 3600),
      static_cast<int>(ofDay / 60 % 60), static_cast<int>(ofDay % 60), static_cast<int>(milliseconds));
  return text.data();
}

}  // namespace

void TraceFile::SwitchOn(bool on) {
  if (on_.exchange(on) == on) return;
  const std::lock_guard lock(mutex_);
  if (!on) file_.close();
}

void TraceFile::Line(const std::string& text) {
  if (!on_) return;
  constexpr std::size_t kLongest = 1000;
  std::string line = Now() + text.substr(0, kLongest);
  // What a router says of itself may hold anything; a line stays a line.
  std::replace_if(
      line.begin(), line.end(), [](unsigned char sign) { return sign < ' '; }, ' ');
  line += "\r\n";
  const std::lock_guard lock(mutex_);
  if (!file_.is_open()) Open();
  if (size_ + line.size() > kMost) TurnOver();
  file_ << line << std::flush;
  size_ += line.size();
}

void TraceFile::Open() {
  std::error_code failure;
  std::filesystem::create_directories(path_.parent_path(), failure);
  const std::uintmax_t size = std::filesystem::file_size(path_, failure);
  size_ = failure ? 0 : static_cast<std::size_t>(size);
  file_.clear();
  file_.open(path_, std::ios::binary | std::ios::app);
}

void TraceFile::TurnOver() {
  file_.close();
  std::filesystem::path older = path_;
  older.replace_extension(".1" + path_.extension().string());
  std::error_code failure;
  std::filesystem::rename(path_, older, failure);
  // Without the room of the older one the newer one begins anew all the same.
  if (failure) std::filesystem::remove(path_, failure);
  Open();
}

}  // namespace upnp
