#include "ui/ImageList.h"

#include "base/Conversions.h"
#include "base/Error.h"

namespace ui {

void ImageList::Add(PictureRef picture, std::string key) {
  entries_.push_back({std::move(picture), std::move(key)});
}

const PictureRef& ImageList::Get(std::int32_t position) const {
  if (position < 1 || position > Count()) {
    throw base::Error(base::ErrorNumber::kSubscript, "There is no picture " + base::ToText(position));
  }
  return entries_[static_cast<std::size_t>(position - 1)].picture;
}

const PictureRef& ImageList::Get(std::string_view key) const {
  for (const Entry& entry : entries_) {
    if (!key.empty() && entry.key == key) return entry.picture;
  }
  throw base::Error(base::ErrorNumber::kKeyUnknown, "There is no picture \"" + std::string(key) + "\"");
}

}  // namespace ui
