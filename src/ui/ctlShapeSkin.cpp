#include "ui/ctlShapeSkin.h"

#include <cmath>
#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"
#include "base/Variant.h"
#include "ui/Form.h"
#include "ui/MessageBox.h"
#include "ui/Toolkit.h"
#include "ui/modPictureHelper.h"

namespace {

constexpr const char* kPictureSkin = "PictureSkin";
// Misspelled in the windows that have it, too.
constexpr const char* kBoarderStyle = "BoarderStyle";

ui::Twips InTwips(std::int32_t pixels, float twipsPerPixel) {
  return static_cast<ui::Twips>(std::lround(static_cast<float>(pixels) * twipsPerPixel));
}

}  // namespace

ctlShapeSkin::ctlShapeSkin(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 0, 0), picSkin(this, "picSkin") {
  picSkin.MouseDown.Connect<&ctlShapeSkin::picSkin_MouseDown>(this);
}

void ctlShapeSkin::PictureSkin(ui::PictureRef picture) {
  TakePicture(std::move(picture));
  PropertyChanged.Raise(kPictureSkin);
}

void ctlShapeSkin::WriteProperties(ui::PropertyBag& bag) const {
  bag.Write(kPictureSkin, modPictureHelper::PictureToArray(PictureSkin()));
}

void ctlShapeSkin::ReadProperties(const ui::PropertyBag& bag) {
  try {
    const auto bytes = bag.Read(kPictureSkin, std::vector<std::byte>());
    if (bytes.empty()) return;
    TakePicture(modPictureHelper::ArrayToPicture(bytes));
  } catch (const base::Error&) {
    // The picture stays as it is.
  }
}

void ctlShapeSkin::CheckInDesigner(platform::LateBoundObject& window) {
  try {
    if (base::ToInt32(window.Get(kBoarderStyle)) == 0) return;
    window.Put(kBoarderStyle, std::int32_t{0});
    ui::ShowMessage("ctlShapeSkin Requires parent to have BoarderStyle = 0", ui::MessageIcon::kCritical);
  } catch (const base::Error&) {
    // An ordinary window has no such property.
  }
}

void ctlShapeSkin::TakePicture(ui::PictureRef picture) {
  const ui::Pixels pixels = ui::TheInterface().screen->PixelsOf(picture);
  m_lPixelsWide = pixels.width;
  m_lPixelsHigh = pixels.height;
  picSkin.Picture(std::move(picture));
  SizePicture();
}

void ctlShapeSkin::SizePicture() {
  const ui::Form* const form = ParentForm();
  const float twips = form ? form->TwipsPerPixel() : ui::TheInterface().screen->TwipsPerPixelX();
  picSkin.Move(0, 0, InTwips(m_lPixelsWide, twips), InTwips(m_lPixelsHigh, twips));
}

std::vector<ui::PixelRun> ctlShapeSkin::BuildRegion(const ui::Pixels& pixels) {
  std::vector<ui::PixelRun> runs;
  if (pixels.width <= 0 || pixels.height <= 0) return runs;
  const std::uint32_t transparent = pixels.At(0, 0);
  for (std::int32_t row = 0; row < pixels.height; ++row) {
    std::int32_t start = -1;
    for (std::int32_t x = 0; x <= pixels.width; ++x) {
      const bool drawn = x < pixels.width && pixels.At(x, row) != transparent;
      if (drawn && start < 0) start = x;
      if (drawn || start < 0) continue;
      runs.push_back({start, x, row});
      start = -1;
    }
  }
  return runs;
}

void ctlShapeSkin::OnShow() {
  SizePicture();
  const ui::Pixels pixels = ui::TheInterface().screen->PixelsOf(PictureSkin());
  ui::Form* const form = ParentForm();
  // Without a picture the window keeps its size: one of no size could neither be seen nor found.
  if (form && !pixels.colors.empty()) {
    SizeWindow();
    form->Shape(BuildRegion(pixels));
  }
  Fit();
}

void ctlShapeSkin::OnScaleChanged() {
  SizePicture();
  if (m_lPixelsWide > 0) SizeWindow();
  Fit();
}

void ctlShapeSkin::SizeWindow() {
  if (ui::Form* const form = ParentForm()) {
    form->Move(form->Left(), form->Top(), picSkin.Width(), picSkin.Height());
  }
}

void ctlShapeSkin::Fit() {
  Move(Left(), Top(), picSkin.Width(), picSkin.Height());
  if (!Parent()) return;
  for (ui::Control* control : Parent()->Children()) {
    auto* const skin = dynamic_cast<ctlShapeSkin*>(control);
    if (!skin) continue;
    skin->Move(0, 0, skin->Width(), skin->Height());
    skin->SendToBack();
    return;
  }
}

void ctlShapeSkin::picSkin_MouseDown() {
  if (Parent() && Parent()->GetKind() == ui::Kind::kForm) static_cast<ui::Form*>(Parent())->DragByMouse();
}
