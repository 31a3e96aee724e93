#include "ui/modPictureHelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/HeadlessToolkit.h"

namespace {

using testing::IsEmpty;

std::vector<std::byte> Bytes(std::initializer_list<int> values) {
  std::vector<std::byte> bytes;
  for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
  return bytes;
}

class modPictureHelperTest : public testing::Test {
 protected:
  ui::HeadlessToolkit toolkit;
};

TEST_F(modPictureHelperTest, TheStreamHasAHeaderOfEightBytesWithTheMarkAndTheLength) {
  const ui::PictureRef picture = modPictureHelper::ArrayToPicture(Bytes({'B', 'M', 3}));
  EXPECT_EQ(modPictureHelper::SavePicture(picture), Bytes({'l', 't', 0, 0, 3, 0, 0, 0, 'B', 'M', 3}));
}

TEST_F(modPictureHelperTest, AnArrayOfNBytesGivesAStreamOfEightMoreAndComesBackWithNBytes) {
  const std::vector<std::byte> array(70'000, std::byte{9});
  const ui::PictureRef picture = modPictureHelper::ArrayToPicture(array);
  EXPECT_EQ(modPictureHelper::SavePicture(picture).size(), array.size() + 8);
  EXPECT_EQ(modPictureHelper::PictureToArray(picture), array);
}

TEST_F(modPictureHelperTest, TheLengthOfTheHeaderHasTheLowByteFirst) {
  const std::vector<std::byte> array(0x1234, std::byte{9});
  const auto stream = modPictureHelper::SavePicture(modPictureHelper::ArrayToPicture(array));
  EXPECT_EQ(std::vector(stream.begin() + 4, stream.begin() + 8), Bytes({0x34, 0x12, 0, 0}));
}

TEST_F(modPictureHelperTest, APictureThatTheProgramCarriesGivesItsWholeFile) {
  toolkit.resources["TITLE"] = Bytes({'B', 'M', 1, 2});
  EXPECT_EQ(modPictureHelper::PictureToArray(ui::ResourcePicture("TITLE")), Bytes({'B', 'M', 1, 2}));
}

TEST_F(modPictureHelperTest, NoPictureAndOneThatCanNotBeHadGiveAnEmptyArray) {
  EXPECT_THAT(modPictureHelper::PictureToArray(nullptr), IsEmpty());
  EXPECT_THAT(modPictureHelper::PictureToArray(ui::ResourcePicture("NOSUCH")), IsEmpty());
}

TEST_F(modPictureHelperTest, AnEmptyArrayGivesAnEmptyPicture) {
  const ui::PictureRef picture = modPictureHelper::ArrayToPicture({});
  ASSERT_TRUE(picture);
  EXPECT_THAT(picture->bitmapFile, IsEmpty());
  EXPECT_THAT(modPictureHelper::PictureToArray(picture), IsEmpty());
}

TEST_F(modPictureHelperTest, AStreamWithAnotherMarkOrLengthGivesAnEmptyPicture) {
  for (const auto& stream :
       {Bytes({'l', 'x', 0, 0, 1, 0, 0, 0, 5}), Bytes({'l', 't', 0, 0, 2, 0, 0, 0, 5}), Bytes({'l', 't'})}) {
    EXPECT_THAT(modPictureHelper::LoadPicture(stream)->bitmapFile, IsEmpty());
  }
}

}  // namespace
