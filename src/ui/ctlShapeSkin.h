#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/LateBoundObject.h"
#include "ui/Image.h"
#include "ui/Pixels.h"
#include "ui/PropertyBag.h"
#include "ui/UserControl.h"

/// Gives a borderless window the outline of a picture. When the window comes up it takes the picture's size,
/// one pixel of its monitor for each of the picture, and its shape: all pixels but those of the colour that
/// the topmost pixel at the left has. The window can be dragged by the picture. Other controls on the window
/// stay in front of it.
class ctlShapeSkin : public ui::UserControl {
 public:
  ctlShapeSkin(ui::Control* parent, std::string name);

  /// A picture that is set while the window is up changes the picture and not the window's shape.
  const ui::PictureRef& PictureSkin() const { return picSkin.Picture(); }
  void PictureSkin(ui::PictureRef picture);

  /// The picture is stored under "PictureSkin" as the bytes of its file.
  void WriteProperties(ui::PropertyBag& bag) const;
  /// A bag without that property leaves the picture as it is.
  void ReadProperties(const ui::PropertyBag& bag);

  /// What takes the place of showing in a window designer: a window whose property "BoarderStyle" isn't 0
  /// gets a 0 there, and the user a message. A window without that property is left alone.
  static void CheckInDesigner(platform::LateBoundObject& window);

  /// The runs of pixels that aren't of the transparent colour, row by row. None for a picture of one colour.
  static std::vector<ui::PixelRun> BuildRegion(const ui::Pixels& pixels);

 protected:
  void OnShow() override;
  void OnScaleChanged() override;
  void OnResize() override { Fit(); }

 private:
  void TakePicture(ui::PictureRef picture);
  void SizePicture();
  void SizeWindow();
  void Fit();
  void picSkin_MouseDown();

  ui::Image picSkin;
  std::int32_t m_lPixelsWide = 0;
  std::int32_t m_lPixelsHigh = 0;
};
