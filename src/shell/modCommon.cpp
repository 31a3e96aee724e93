#include "shell/modCommon.h"

#include <limits>
#include <utility>

#include "base/Conversions.h"
#include "platform/FilePath.h"
#include "platform/Machine.h"

namespace modCommon {
namespace {

std::string& StoredHelpFile() {
  static std::string file;
  return file;
}

}  // namespace

std::string GetVersionString() {
  return base::ToText(MajorVersion()) + "." + base::ToText(MinorVersion()) + "." +
         base::ToText(std::int32_t{HARBOURLINE_VERSION_REVISION});
}

std::int32_t MajorVersion() {
  return HARBOURLINE_VERSION_MAJOR;
}

std::int32_t MinorVersion() {
  return HARBOURLINE_VERSION_MINOR;
}

std::string MakeFullPath(std::string_view sFolder, std::string_view sFile) {
  return platform::MakeFullPath(sFolder, sFile);
}

const std::string& HelpFile() {
  return StoredHelpFile();
}

void HelpFile(std::string sFullPathName) {
  StoredHelpFile() = std::move(sFullPathName);
}

std::string UniqueKeyCounter::Next(std::string_view sPrefix) {
  if (next_ == std::numeric_limits<std::int32_t>::max()) next_ = 0;
  return std::string(sPrefix) + base::ToText(next_++);
}

std::string GetUniqueKey(std::string_view sPrefix) {
  static UniqueKeyCounter counter;
  return counter.Next(sPrefix);
}

std::int16_t GetLastOctet(std::string_view sIPAddress) {
  for (int points = 0; points < 3; ++points) {
    const std::size_t point = sIPAddress.find('.');
    if (point == sIPAddress.npos) return 0;
    sIPAddress.remove_prefix(point + 1);
  }
  return base::ToInt16(base::LeadingNumber(sIPAddress));
}

bool IsConnectedToInternet(std::int32_t& lFlags) {
  return platform::TheMachine().network->ConnectedState(lFlags);
}

bool IsConnected() {
  std::int32_t lFlags = 0;
  return IsConnectedToInternet(lFlags);
}

ui::Color ColorTitle() {
  return ui::Rgb(51, 153, 102);
}

ui::Color ColorHelpText() {
  return ui::Rgb(0, 128, 128);
}

ui::Color ColorDarkRed() {
  return ui::Rgb(128, 0, 0);
}

ui::Color ColorNavy() {
  return ui::Rgb(0, 0, 128);
}

ui::Color ColorBackground() {
  return ui::Rgb(253, 235, 200);
}

}  // namespace modCommon
