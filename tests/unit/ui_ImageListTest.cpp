#include "ui/ImageList.h"

#include <gtest/gtest.h>

#include "support/RecordingToolkit.h"

namespace {

TEST(UiImageList, FindsPicturesByPositionFromOneAndByKey) {
  ui::ImageList images;
  const ui::PictureRef first = ui::ResourcePicture("first");
  const ui::PictureRef second = ui::ResourcePicture("second");
  images.Add(first);
  images.Add(second, "NotConnected");
  images.Add(nullptr, "Empty");
  EXPECT_EQ(images.Count(), 3);
  EXPECT_EQ(images.Get(1), first);
  EXPECT_EQ(images.Get(2), second);
  EXPECT_EQ(images.Get("NotConnected"), second);
  EXPECT_EQ(images.Get("Empty"), nullptr);
}

TEST(UiImageList, AnUnknownPositionOrKeyIsAFailureThatNamesIt) {
  ui::ImageList images;
  images.Add(ui::ResourcePicture("first"));
  EXPECT_EQ(support::ErrorTextOf([&] { images.Get(0); }), "There is no picture 0");
  EXPECT_EQ(support::ErrorTextOf([&] { images.Get(2); }), "There is no picture 2");
  EXPECT_EQ(support::ErrorOf([&] { images.Get(-1); }), base::ErrorNumber::kSubscript);
  EXPECT_EQ(support::ErrorTextOf([&] { images.Get("Edit"); }), "There is no picture \"Edit\"");
  EXPECT_EQ(support::ErrorOf([&] { images.Get(""); }), base::ErrorNumber::kKeyUnknown) << "no key is no key";
}

TEST(UiImageList, RefusesATakenKey) {
  ui::ImageList images;
  images.Add(nullptr, "Edit");
  EXPECT_EQ(support::ErrorOf([&] { images.Add(nullptr, "Edit"); }), base::ErrorNumber::kKeyTaken);
  images.Add(nullptr);
  images.Add(nullptr);
  EXPECT_EQ(images.Count(), 3);
}

}  // namespace
