#pragma once

#include <vector>

#include "paintings/plate.h"

namespace paintings {

/// Samples of a smooth function on a grid of the plate. To interpolate is faster than to compute the function.
class Field {
public:
    /// Creates a field of zeros.
    /// @param view part of the plate to cover
    /// @param sampleDistance distance of the samples in units of the plate
    /// @param margin width of the border around the view that the field also covers, in units of the plate
    Field(const View& view, float sampleDistance, float margin);

    /// Creates a field with the values that `valueAt` returns for positions.
    template <class ValueAt>
    Field(const View& view, float sampleDistance, float margin, ValueAt valueAt)
        : Field(view, sampleDistance, margin) {
        auto value = values.begin();
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                *value++ = valueAt(Vec2{start.x + static_cast<float>(column) * distance,
                                        start.y + static_cast<float>(row) * distance});
            }
        }
    }

    /// Returns the interpolated value at a position.
    float at(Vec2 position) const;
    /// Returns a row of samples at a height, interpolated between the two nearest rows.
    std::vector<float> rowAt(float y) const;
    /// Returns the distance of x from the first column, in samples.
    float samplesTo(float x) const { return (x - start.x) / distance; }

    /// Distance of the samples in units of the plate.
    float distance;
    /// Number of columns and rows to the left of and above the centre of the plate. The samples of two views with the
    /// same distance have the same positions, so a change of the screen's shape does not change the painting.
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
