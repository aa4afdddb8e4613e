// An 8-bit RGBA image with the top row first: what a window shows, as a
// backend gives it back (the headless backend keeps one per window), and
// its PNG form.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>

#include <cstdint>
#include <vector>

namespace plotvane
{

struct Image
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba; // width * height * 4 bytes, top row first

    // Resizes to w x h, every pixel transparent black.
    void Reset(int w, int h);
    bool IsEmpty() const { return width <= 0 || height <= 0; }
    // The colour at (x, y), y counted from the top, as RGB(r, g, b); 0 outside.
    COLORREF Pixel(int x, int y) const;
    BYTE Alpha(int x, int y) const;
    // How many pixels have exactly this RGB colour, within the rectangle
    // [left, right) x [top, bottom) clipped to the image.
    int CountColor(COLORREF color, int left, int top, int right, int bottom) const;
    int CountColor(COLORREF color) const { return CountColor(color, 0, 0, width, height); }
};

// Writes 8-bit RGB, or RGBA when withAlpha is set. False on any failure.
bool WritePng(const CString& path, const Image& image, bool withAlpha = false);
// Reads any PNG into 8-bit RGBA. False on any failure, leaving image empty.
bool ReadPng(const CString& path, Image& image);

} // namespace plotvane
