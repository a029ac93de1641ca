#pragma once

#include <vector>

#include "paintings/plate.h"

namespace paintings {

/// Samples of a smooth function on a regular grid over a painting. Interpolation between samples is faster than a call
/// of the function.
class Field {
public:
    /// Creates a field of zeros.
    /// @param view part of the painting to cover
    /// @param sampleDistance distance of the samples as a fraction of the painting's side
    /// @param margin width of the border around the view that the field also covers, as a fraction of the painting's
    /// side
    Field(const View& view, float sampleDistance, float margin);

    /// Creates a field whose samples are the results of `valueAt` at the positions of the samples.
    template <class ValueAt>
    Field(const View& view, float sampleDistance, float margin, ValueAt valueAt)
        : Field(view, sampleDistance, margin) {
        auto value = values.begin();
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                const Vec2 position{start.x + static_cast<float>(column) * distance,
                                    start.y + static_cast<float>(row) * distance};
                *value++ = valueAt(position);
            }
        }
    }

    /// Returns the interpolated value at a position.
    float at(Vec2 position) const;
    /// Returns the values of a row at the height y, interpolated between the two nearest rows of samples.
    std::vector<float> rowAt(float y) const;
    /// Returns the distance from the first column to x, in samples.
    float samplesTo(float x) const { return (x - start.x) / distance; }

    /// Distance between neighbouring samples as a fraction of the painting's side.
    float distance;
    /// Number of columns to the left of the centre of the painting, and number of rows above the centre. The samples
    /// are counted from this centre, so a view of another shape has samples at the same positions. A change of the
    /// screen's shape therefore does not change the painting.
    int columnsLeft;
    int rowsAbove;
    int columns;
    int rows;
    /// Position of the first sample.
    Vec2 start;
    /// Samples, row by row.
    std::vector<float> values;
};

}  // namespace paintings
