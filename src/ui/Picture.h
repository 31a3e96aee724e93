#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace ui {

/// A picture that doesn't change: one that the program carries under a name, or one given as the bytes of a
/// bitmap file. The machine's side makes its handles of it, in the sizes that it needs.
struct Picture {
  std::string resource;
  std::vector<std::byte> bitmapFile;
};
using PictureRef = std::shared_ptr<const Picture>;

inline PictureRef ResourcePicture(std::string name) {
  return std::make_shared<const Picture>(Picture{std::move(name), {}});
}

}  // namespace ui
