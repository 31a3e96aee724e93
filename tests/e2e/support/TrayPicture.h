#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

/// The icon in the notification area as it stands on the screen, 16 by 16 pixels.
class TrayPicture {
 public:
  static constexpr int kSize = 16;

  /// What the screen shows now; nothing without an icon.
  static std::optional<TrayPicture> Read();
  /// An icon resource of a program as it would look on the ground of the notification area.
  static TrayPicture FromResource(const std::string& executable, const std::string& resource);
  /// The ground of the notification area alone.
  static TrayPicture Blank();

  bool operator==(const TrayPicture&) const = default;

  /// The position of the network picture, by the pixels that art/README.md tells of; 0 when it is none of
  /// them.
  int Position() const;

 private:
  COLORREF At(int x, int y) const;

  std::array<COLORREF, std::size_t{kSize} * kSize> pixels_{};
};

/// Looks at the icon for so many milliseconds; the positions that it showed, one after the other, each change
/// once.
std::vector<int> WatchPositions(ULONGLONG milliseconds);
