#pragma once

namespace velmora {

/// Two row-major grids with 1 float per cell and `rowLength` cells per row. Heights are in [-100, 100]; vertical
/// velocities are in height units per step.
struct WaterGrids {
    float* velocity;
    float* height;
    int rowLength;
};

/// The cells to update: x0 <= x < x1 and y0 <= y < y1. The grid must have at least one more cell on each side. Those
/// cells are read and never written.
struct WaterRectangle {
    int x0;
    int y0;
    int x1;
    int y1;
};

struct WaveSettings {
    float damping;    // factor of the velocity per step
    float waveSpeed;  // weight of the height Laplacian in the velocity
    bool detectCalm;
};

/// Runs one explicit time step of the damped wave equation and smooths the heights. Returns true if all new velocities
/// are within +-0.009 (calm), or if `detectCalm` is false. Allocates no memory. May be called on any thread.
bool stepHeightField(const WaterGrids& grids, const WaterRectangle& rectangle,
                     const WaveSettings& settings);

}  // namespace velmora
