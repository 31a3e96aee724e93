#pragma once

#include <windows.h>

#include <span>
#include <string>

#include "ui/Picture.h"
#include "ui/Pixels.h"

namespace ui::win32 {

/// The pixels of a picture that isn't an icon, in one size. Bitmap and JPEG files are read, and whatever else
/// the machine's own codecs know.
class NativeBitmap {
 public:
  NativeBitmap() = default;
  /// The picture as large as `box` allows, with its proportions kept. Empty when it can't be read.
  NativeBitmap(const Picture& picture, SIZE box);
  NativeBitmap(NativeBitmap&& other) noexcept;
  NativeBitmap& operator=(NativeBitmap&& other) noexcept;
  ~NativeBitmap();

  /// Null for an empty one.
  HBITMAP Handle() const { return handle_; }
  SIZE Size() const { return size_; }

 private:
  HBITMAP handle_ = nullptr;
  SIZE size_{};
};

/// The pixels of a picture that isn't an icon, in its own size; none when it can't be read.
Pixels ReadPixels(const Picture& picture);

/// What the program carries under that name besides its icons; it lives as long as the program.
std::span<const BYTE> ResourceBytes(const std::string& name);

/// True for a picture that the program carries as an icon.
bool IsIcon(const Picture& picture);

}  // namespace ui::win32
