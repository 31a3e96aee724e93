#include "ui/win32/NativeBitmap.h"

#include <wincodec.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/win32/ComPointer.h"
#include "ui/win32/OwnWindow.h"

namespace ui::win32 {
namespace {

using platform::win32::ComPointer;

/// The bytes of the picture's file, which live as long as the picture and the program.
std::span<const BYTE> FileOf(const Picture& picture) {
  if (!picture.resource.empty()) return ResourceBytes(picture.resource);
  return {reinterpret_cast<const BYTE*>(picture.bitmapFile.data()), picture.bitmapFile.size()};
}

/// The largest size of those proportions that fits into the box.
SIZE Fit(UINT width, UINT height, SIZE box) {
  const LONG byHeight = MulDiv(static_cast<int>(width), box.cy, static_cast<int>(height));
  if (byHeight <= box.cx) return {byHeight, box.cy};
  return {box.cx, MulDiv(static_cast<int>(height), box.cx, static_cast<int>(width))};
}

ComPointer<IWICBitmapSource> Decode(IWICImagingFactory& factory, std::span<const BYTE> file) {
  ComPointer<IWICStream> stream;
  ComPointer<IWICBitmapDecoder> decoder;
  ComPointer<IWICBitmapFrameDecode> frame;
  if (FAILED(factory.CreateStream(stream.Put())) ||
      FAILED(stream->InitializeFromMemory(const_cast<BYTE*>(file.data()), static_cast<DWORD>(file.size()))) ||
      FAILED(factory.CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnDemand,
                                             decoder.Put())) ||
      FAILED(decoder->GetFrame(0, frame.Put()))) {
    return {};
  }
  return ComPointer<IWICBitmapSource>::Query(frame.Get(), IID_IWICBitmapSource);
}

/// The source in the size and as 32 bits a pixel.
ComPointer<IWICBitmapSource> Convert(IWICImagingFactory& factory, IWICBitmapSource& source, SIZE size) {
  ComPointer<IWICFormatConverter> converter;
  ComPointer<IWICBitmapScaler> scaler;
  if (FAILED(factory.CreateFormatConverter(converter.Put())) ||
      FAILED(converter->Initialize(&source, GUID_WICPixelFormat32bppBGR, WICBitmapDitherTypeNone, nullptr, 0,
                                   WICBitmapPaletteTypeCustom)) ||
      FAILED(factory.CreateBitmapScaler(scaler.Put())) ||
      FAILED(scaler->Initialize(converter.Get(), static_cast<UINT>(size.cx), static_cast<UINT>(size.cy),
                                WICBitmapInterpolationModeFant))) {
    return {};
  }
  return ComPointer<IWICBitmapSource>::Query(scaler.Get(), IID_IWICBitmapSource);
}

/// A picture as the machine's codecs read it.
class Source {
 public:
  explicit Source(const Picture& picture) {
    const std::span<const BYTE> file = FileOf(picture);
    if (file.empty() || FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                                IID_IWICImagingFactory, factory_.PutVoid()))) {
      return;
    }
    source_ = Decode(*factory_.Get(), file);
    if (source_ && FAILED(source_->GetSize(&width_, &height_))) width_ = 0;
  }

  /// False when it can't be read.
  explicit operator bool() const { return width_ > 0 && height_ > 0; }
  UINT Width() const { return width_; }
  UINT Height() const { return height_; }
  /// As 32 bits a pixel.
  ComPointer<IWICBitmapSource> InSize(SIZE size) const {
    return Convert(*factory_.Get(), *source_.Get(), size);
  }

 private:
  ComPointer<IWICImagingFactory> factory_;
  ComPointer<IWICBitmapSource> source_;
  UINT width_ = 0;
  UINT height_ = 0;
};

HBITMAP CopyPixels(IWICBitmapSource& source, SIZE size) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = size.cx;
  // The first row is the topmost.
  info.bmiHeader.biHeight = -size.cy;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* pixels = nullptr;
  const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
  const auto row = static_cast<UINT>(size.cx) * 4;
  const UINT all = row * static_cast<UINT>(size.cy);
  if (bitmap && FAILED(source.CopyPixels(nullptr, row, all, static_cast<BYTE*>(pixels)))) {
    DeleteObject(bitmap);
    return nullptr;
  }
  return bitmap;
}

}  // namespace

NativeBitmap::NativeBitmap(const Picture& picture, SIZE box) {
  const Source source(picture);
  if (!source) return;
  size_ = Fit(source.Width(), source.Height(), box);
  if (size_.cx <= 0 || size_.cy <= 0) return;
  const ComPointer<IWICBitmapSource> fitted = source.InSize(size_);
  if (fitted) handle_ = CopyPixels(*fitted.Get(), size_);
}

NativeBitmap::NativeBitmap(NativeBitmap&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)), size_(other.size_) {}

NativeBitmap& NativeBitmap::operator=(NativeBitmap&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(size_, other.size_);
  return *this;
}

NativeBitmap::~NativeBitmap() {
  if (handle_) DeleteObject(handle_);
}

Pixels ReadPixels(const Picture& picture) {
  const Source source(picture);
  if (!source) return {};
  const SIZE size{static_cast<LONG>(source.Width()), static_cast<LONG>(source.Height())};
  const ComPointer<IWICBitmapSource> whole = source.InSize(size);
  Pixels pixels{size.cx, size.cy, std::vector<std::uint32_t>(std::size_t{source.Width()} * source.Height())};
  const UINT row = source.Width() * 4;
  if (!whole || FAILED(whole->CopyPixels(nullptr, row, row * source.Height(),
                                         reinterpret_cast<BYTE*>(pixels.colors.data())))) {
    return {};
  }
  // The fourth byte of each pixel carries nothing.
  for (std::uint32_t& color : pixels.colors) color &= 0xFFFFFF;
  return pixels;
}

std::span<const BYTE> ResourceBytes(const std::string& name) {
  const HRSRC found = FindResourceA(ThisModule(), name.c_str(), reinterpret_cast<LPCSTR>(RT_RCDATA));
  const HGLOBAL loaded = found ? LoadResource(ThisModule(), found) : nullptr;
  if (!loaded) return {};
  return {static_cast<const BYTE*>(LockResource(loaded)), SizeofResource(ThisModule(), found)};
}

bool IsIcon(const Picture& picture) {
  return !picture.resource.empty() && FindResourceA(ThisModule(), picture.resource.c_str(),
                                                    reinterpret_cast<LPCSTR>(RT_GROUP_ICON)) != nullptr;
}

}  // namespace ui::win32
