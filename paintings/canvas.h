#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <vector>

#include "hostkit/image.h"
#include "paintings/plate.h"

namespace paintings {

/// A group of rows of a painting that are painted together. A canvas is small enough for the processor's cache.
struct Canvas {
    View view;
    int firstRow = 0;
    int rows = 0;
    /// Colours of the pixels, row by row.
    std::vector<Color> colors;
};

/// Calls `change` with the position and the colour of each pixel in a square around `center`. The square extends by
/// `reach` from its centre to each side.
template <class Change>
void paintAround(Canvas& canvas, Vec2 center, float reach, Change change) {
    const View& view = canvas.view;
    const auto pixelsTo = [&](float position, float half, int low, int high) {
        const float pixels = std::floor((position + half) / view.pixel);
        return std::clamp(static_cast<int>(pixels), low, high);
    };
    const auto column = [&](float x) { return pixelsTo(x, view.halfWidth(), 0, view.width); };
    const auto row = [&](float y) {
        return pixelsTo(y, view.halfHeight(), canvas.firstRow, canvas.firstRow + canvas.rows);
    };
    const int left = column(center.x - reach);
    const int right = column(center.x + reach + view.pixel);
    const int bottom = row(center.y + reach + view.pixel);
    for (int y = row(center.y - reach); y < bottom; ++y) {
        Color* const colors =
            canvas.colors.data() + std::ptrdiff_t{y - canvas.firstRow} * view.width;
        for (int x = left; x < right; ++x) {
            change(view.at(x, y), colors[x]);
        }
    }
}

/// Sets each pixel to the colour that `colorAt` returns for its position.
template <class ColorAt>
void paintAll(Canvas& canvas, ColorAt colorAt) {
    constexpr float plate = 1.0f;
    paintAround(canvas, {}, plate, [&](Vec2 at, Color& color) { color = colorAt(at); });
}

/// Function that paints the rows of a canvas.
using Painter = std::function<void(Canvas&)>;

/// Paints an image of width x height pixels. `makePainter` returns the painter for the part of the painting that the
/// image shows.
hostkit::Image paint(Painter (*makePainter)(const View&), int width, int height);

}  // namespace paintings
