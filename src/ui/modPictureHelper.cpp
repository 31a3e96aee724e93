#include "ui/modPictureHelper.h"

#include <cstdint>
#include <limits>
#include <utility>

#include "ui/Toolkit.h"

namespace modPictureHelper {
namespace {

constexpr std::uint32_t kMark = 0x746C;
constexpr std::ptrdiff_t kHeader = 8;

void Append(std::vector<std::byte>& stream, std::uint32_t number) {
  for (unsigned shift = 0; shift < 32; shift += 8) stream.push_back(static_cast<std::byte>(number >> shift));
}

std::uint32_t NumberAt(const std::vector<std::byte>& stream, std::size_t place) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i > 0; --i) {
    number = number << 8 | std::to_integer<std::uint32_t>(stream[place + i - 1]);
  }
  return number;
}

std::vector<std::byte> StreamOf(const std::vector<std::byte>& file) {
  if (file.size() > std::numeric_limits<std::uint32_t>::max()) return {};
  std::vector<std::byte> stream;
  stream.reserve(file.size() + kHeader);
  Append(stream, kMark);
  Append(stream, static_cast<std::uint32_t>(file.size()));
  stream.insert(stream.end(), file.begin(), file.end());
  return stream;
}

}  // namespace

std::vector<std::byte> PictureToArray(const ui::PictureRef& picture) {
  std::vector<std::byte> stream = SavePicture(picture);
  if (!stream.empty()) stream.erase(stream.begin(), stream.begin() + kHeader);
  return stream;
}

ui::PictureRef ArrayToPicture(const std::vector<std::byte>& array) {
  return LoadPicture(StreamOf(array));
}

std::vector<std::byte> SavePicture(const ui::PictureRef& picture) {
  if (!picture) return {};
  const std::vector<std::byte> file = picture->resource.empty()
                                          ? picture->bitmapFile
                                          : ui::TheInterface().screen->Resource(picture->resource);
  if (file.empty()) return {};
  return StreamOf(file);
}

ui::PictureRef LoadPicture(const std::vector<std::byte>& stream) {
  ui::Picture picture;
  const bool whole = stream.size() >= kHeader && NumberAt(stream, 0) == kMark &&
                     NumberAt(stream, 4) == stream.size() - kHeader;
  if (whole) picture.bitmapFile.assign(stream.begin() + kHeader, stream.end());
  return std::make_shared<const ui::Picture>(std::move(picture));
}

}  // namespace modPictureHelper
