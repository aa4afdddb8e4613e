#include <plotvane/platform/Image.h>

#include <algorithm>
#include <png.h>

namespace plotvane
{

void Image::Reset(int w, int h)
{
    width = std::max(w, 0);
    height = std::max(h, 0);
    rgba.assign(size_t(width) * size_t(height) * 4, 0);
}

COLORREF Image::Pixel(int x, int y) const
{
    if (x < 0 || y < 0 || x >= width || y >= height)
        return 0;
    const std::uint8_t* p = &rgba[(size_t(y) * size_t(width) + size_t(x)) * 4];
    return RGB(p[0], p[1], p[2]);
}

BYTE Image::Alpha(int x, int y) const
{
    if (x < 0 || y < 0 || x >= width || y >= height)
        return 0;
    return rgba[(size_t(y) * size_t(width) + size_t(x)) * 4 + 3];
}

int Image::CountColor(COLORREF color, int left, int top, int right, int bottom) const
{
    left = std::max(left, 0);
    top = std::max(top, 0);
    right = std::min(right, width);
    bottom = std::min(bottom, height);
    int count = 0;
    for (int y = top; y < bottom; ++y)
    {
        const std::uint8_t* p = &rgba[(size_t(y) * size_t(width) + size_t(left)) * 4];
        for (int x = left; x < right; ++x, p += 4)
        {
            if (RGB(p[0], p[1], p[2]) == color)
                ++count;
        }
    }
    return count;
}

// libpng's simplified interface: no setjmp, errors come back as results.
bool WritePng(const CString& path, const Image& image, bool withAlpha)
{
    if (image.IsEmpty())
        return false;
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = png_uint_32(image.width);
    png.height = png_uint_32(image.height);
    png.format = withAlpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    // No row filters and zlib level 3: a chart is mostly flat colour, which
    // deflates well without them, and the default settings cost more than
    // drawing the frame. The pixels are the same; only the file's bytes
    // differ.
    png.flags = PNG_IMAGE_FLAG_FAST;
    std::vector<std::uint8_t> rgb;
    const void* pixels = image.rgba.data();
    if (!withAlpha)
    {
        rgb.resize(size_t(image.width) * size_t(image.height) * 3);
        for (size_t i = 0, n = size_t(image.width) * size_t(image.height); i < n; ++i)
            std::copy_n(&image.rgba[i * 4], 3, &rgb[i * 3]);
        pixels = rgb.data();
    }
    const int ok = png_image_write_to_file(&png, path.GetString(), 0, pixels, 0, nullptr);
    png_image_free(&png);
    return ok != 0;
}

bool ReadPng(const CString& path, Image& image)
{
    image.Reset(0, 0);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.GetString()))
        return false;
    png.format = PNG_FORMAT_RGBA;
    Image result;
    result.Reset(int(png.width), int(png.height));
    if (!png_image_finish_read(&png, nullptr, result.rgba.data(), 0, nullptr))
    {
        png_image_free(&png);
        return false;
    }
    image = std::move(result);
    return true;
}

} // namespace plotvane
