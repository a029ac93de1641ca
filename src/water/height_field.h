#pragma once

namespace velmora {

/// Two grids of one float a cell, row-major with `rowLength` cells a row: heights in [-100, 100]
/// and vertical velocities (height a step).
struct WaterGrids {
    float* velocity;
    float* height;
    int rowLength;
};

/// Cells x0 <= x < x1, y0 <= y < y1. A frame of at least one cell lies around it in the grid: read,
/// never written.
struct WaterRectangle {
    int x0;
    int y0;
    int x1;
    int y1;
};

struct WaveSettings {
    float damping;    // factor of the velocity, each step
    float waveSpeed;  // weight of the height Laplacian in the velocity
    bool detectCalm;
};

/// One time step of the damped wave equation by an explicit scheme, and a little smoothing. Returns
/// whether no new velocity left the calm band; always true without `detectCalm`. Allocates nothing.
/// Any thread.
bool stepHeightField(const WaterGrids& grids, const WaterRectangle& rectangle,
                     const WaveSettings& settings);

}  // namespace velmora
