#pragma once

#include <jni.h>

#include <chrono>
#include <cstdint>

#include "hostkit/jni_environment.h"

namespace hostkit {

/// @file
/// The water of a host: its grids, mesh and time steps. The functions use no global state of the library, so any
/// thread can call them. Use each WaterDriver and its JniEnvironment on one thread at a time.

/// Settings of the water. Unless a field names another unit, lengths are in cells and times in simulation steps.
struct WaterSettings {
    /// Number of cells along the shorter side of the screen, clamped to [8, 254]. Cells are square, so this also
    /// determines the number along the longer side.
    int shortSideCells = 90;
    /// Number of cells between neighbouring mesh vertices, at least 1. A larger number draws the same waves with fewer
    /// triangles. The heights of a vertex between cells are interpolated.
    float cellsPerVertex = 1.0f;
    /// Factor by which each step multiplies the wave velocity, below 1.
    float damping = 0.97f;
    /// Strength with which a height difference accelerates the adjacent cells. Waves travel sqrt(waveSpeed) cells per
    /// step. Values above 0.5 are unstable.
    float waveSpeed = 0.3f;
    /// Number of mesh units along the shorter side. Fewer units strengthen the refraction, because the height of waves
    /// in mesh units stays the same.
    int shortSideMeshUnits = 16;
    /// Number of simulation steps per second, at least 60.
    int stepsPerSecond = 60;
    /// Radius of the cone that a touch raises. The native method `ripple` raises only cones of radius 3. A wider cone
    /// is built from several of them. A narrower cone is replaced by a lower cone of radius 3 with the same volume.
    double rippleRadius = 3.0;
};

/// Radius in cells of the cone that the native method `ripple` raises.
constexpr double coneRadius = 3.0;

/// Factor by which the drawn mesh is larger than the screen. With this factor, the edges of the background appear at
/// the edges of the screen: the viewer's eye is 30 mesh units in front of the mesh, and the background is 30.9 units
/// behind the mesh.
constexpr float meshOverhang = 1.015f;

/// The water of one screen: two grids, the mesh and its heights. The arrays belong to a JniEnvironment.
///
/// Cell (x, y) is at (x / columns, y / rows) of the screen, y down. With one cell per vertex, each side has one more
/// vertex than cells: one on each cell, and one on the right or lower edge of the screen. The vertices on these two
/// edges repeat the last cell, which is part of the fixed border. In a coarser mesh, the heights of a vertex between
/// cells are interpolated.
struct WaterDriver {
    /// Settings from which the water was made.
    WaterSettings settings;
    /// Screen width in pixels.
    int screenWidth;
    /// Screen height in pixels.
    int screenHeight;

    /// Number of cells in a row of the grids.
    int columns;
    /// Number of rows of the grids.
    int rows;
    /// Height grid: columns * rows floats, row-major, y down; 0 is the flat surface.
    jfloatArray height;
    /// Velocity grid with the same layout: height change per step.
    jfloatArray velocity;

    /// Mesh width in mesh units.
    int meshSizeWidth;
    /// Mesh height in mesh units.
    int meshSizeHeight;
    /// Vertex columns of the mesh.
    int numDetailsWidth;
    /// Number of vertices in a column of the mesh.
    int numDetailsHeight;
    /// Vertex positions: 3 floats per vertex in mesh units, y up, as filled by initWaters.
    jfloatArray positions;
    /// Triangle list of the mesh, as filled by initWaters.
    jshortArray indices;
    /// Heights for the vertex shader, 3 floats per vertex: the height of the vertex's cell, of the cell to its right
    /// and of the cell above it.
    jfloatArray heights;

    /// True while no wave moves. While it is true, no simulation step runs.
    bool idle = true;
    /// Number of steps run so far.
    std::int64_t steps = 0;
    /// Time that is not simulated yet, in nanoseconds multiplied by `stepsPerSecond`. One step takes 1e9 of these
    /// units.
    std::int64_t pendingTime = 0;
};

/// Chooses the grid and the mesh for a screen, creates the arrays, and fills the mesh. The mesh has at most 65536
/// vertices.
/// @param jni owner of the arrays
/// @param screenWidth screen width in pixels, at least 1
/// @param screenHeight screen height in pixels, at least 1
/// @param settings settings of the water
/// @return idle water
WaterDriver makeWater(JniEnvironment& jni, int screenWidth, int screenHeight,
                      WaterSettings settings = {});

/// Copies the waves of one water to another. The two can differ in screen size, grid, mesh and step rate. Each wave
/// keeps its position as a fraction of the screen's width and height.
/// @param from water to copy from
/// @param to water that receives the heights, velocities and remaining time
void resampleWaves(const WaterDriver& from, WaterDriver& to);

/// Releases the arrays of the water. Do not use the water afterwards.
/// @param water water to release
/// @param jni owner of the arrays
void releaseWater(const WaterDriver& water, JniEnvironment& jni);

/// Raises a cone of radius `settings.rippleRadius` and height 3 * strength in the water. The water is then no longer
/// idle.
/// @param water water to change
/// @param jni owner of the arrays
/// @param x distance from the left edge of the screen in pixels
/// @param y distance from the top edge of the screen in pixels
/// @param strength a third of the cone's height; a negative value makes a hollow
void rippleAt(WaterDriver& water, JniEnvironment& jni, double x, double y, float strength);

/// Runs the simulation steps that are due and updates `heights`. Does nothing while the water is idle. One call
/// simulates at most 4/60 s. After a stall of the host, the water therefore skips the lost time instead of catching up.
/// @param water water to advance
/// @param jni owner of the arrays
/// @param elapsed time since the last call
void advanceWater(WaterDriver& water, JniEnvironment& jni, std::chrono::nanoseconds elapsed);

/// Computes `heights` from the height grid. Call it after the host has changed the grid directly.
/// @param water water whose heights to compute
void buildHeights(WaterDriver& water);

}  // namespace hostkit
