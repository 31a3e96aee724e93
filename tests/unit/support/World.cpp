#include "support/World.h"

#include <cstdio>

namespace support {

std::string ManualClock::TimeText(const platform::DateTime& moment) {
  char text[16] = "";
  std::snprintf(text, sizeof text, "%02d.%02d.%02d", moment.hour % 100, moment.minute % 100,
                moment.second % 100);
  return text;
}

std::string FakeCodePage::FoldCase(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) {
    const auto code = static_cast<unsigned char>(c);
    const bool accented = code >= 0xC0 && code <= 0xDE && code != 0xD7;
    if ((c >= 'A' && c <= 'Z') || accented) c = static_cast<char>(code + 0x20);
  }
  return folded;
}

std::string FakeCodePage::FromUtf16(std::u16string_view text) {
  std::string narrow;
  for (const char16_t unit : text) {
    if (unit == u'\u2026') {
      narrow += ellipsis;
    } else {
      narrow += unit < 0x80 ? static_cast<char>(unit) : '?';
    }
  }
  return narrow;
}

World::World() : before_(platform::TheMachine()) {
  platform::TheMachine() = {
      &settings, &registry, &objects, &systemHelper, &process, &network, &notificationArea,
      &windows,  &shell,    &clock,   &codePage,     &debug,   &files};
}

World::~World() {
  platform::TheMachine() = before_;
}

}  // namespace support
