#include "ui/ImageList.h"

#include <algorithm>

#include "base/Conversions.h"
#include "base/Error.h"

namespace ui {

void ImageList::Add(PictureRef picture, std::string key) {
  if (Find(key) != entries_.end()) {
    throw base::Error(base::ErrorNumber::kKeyTaken,
                      "This key is already associated with a picture: \"" + key + "\"");
  }
  entries_.push_back({std::move(picture), std::move(key)});
}

const PictureRef& ImageList::Get(std::int32_t position) const {
  if (position < 1 || position > Count()) {
    throw base::Error(base::ErrorNumber::kSubscript, "There is no picture " + base::ToText(position));
  }
  return entries_[static_cast<std::size_t>(position - 1)].picture;
}

const PictureRef& ImageList::Get(std::string_view key) const {
  const auto found = Find(key);
  if (found == entries_.end()) {
    throw base::Error(base::ErrorNumber::kKeyUnknown, "There is no picture \"" + std::string(key) + "\"");
  }
  return found->picture;
}

std::vector<ImageList::Entry>::const_iterator ImageList::Find(std::string_view key) const {
  return std::find_if(entries_.begin(), entries_.end(),
                      [key](const Entry& entry) { return !key.empty() && entry.key == key; });
}

}  // namespace ui
