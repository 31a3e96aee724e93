#pragma once

#include <cstddef>
#include <vector>

#include "ui/Picture.h"

/// Pictures as bytes. The stream of a picture is its file behind a header of 8 bytes: the 32-bit mark 0x746C
/// and the file's length in 32 bits, both with the low byte first. Stored pictures lack the header.
namespace modPictureHelper {

/// The picture's stream without its header, for a bitmap a whole bitmap file. Empty when there is no picture
/// or its file can't be had.
std::vector<std::byte> PictureToArray(const ui::PictureRef& picture);

/// The picture whose file these bytes are; a picture without a file for no bytes.
ui::PictureRef ArrayToPicture(const std::vector<std::byte>& array);

/// The stream; empty when there is no picture or its file can't be had.
std::vector<std::byte> SavePicture(const ui::PictureRef& picture);

/// The picture of that stream. A stream whose mark or length is wrong gives a picture without a file.
ui::PictureRef LoadPicture(const std::vector<std::byte>& stream);

}  // namespace modPictureHelper
