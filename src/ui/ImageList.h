#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Picture.h"

namespace ui {

/// Pictures by position, which counts from 1, or by key. An unknown position or key is a failure, and so is a
/// taken key.
class ImageList {
 public:
  void Add(PictureRef picture, std::string key = {});
  std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
  const PictureRef& Get(std::int32_t position) const;
  const PictureRef& Get(std::string_view key) const;

 private:
  struct Entry {
    PictureRef picture;
    std::string key;
  };
  /// The entry of the key, or the end; an empty key is none.
  std::vector<Entry>::const_iterator Find(std::string_view key) const;

  std::vector<Entry> entries_;
};

}  // namespace ui
