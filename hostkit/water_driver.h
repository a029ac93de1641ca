#pragma once

#include <jni.h>

#include <chrono>
#include <cstdint>

#include "hostkit/jni_environment.h"

namespace hostkit {

/// @file
/// The water of a host: grids, mesh and time steps. Each function calls native methods that use only their arguments.
/// The functions may be called on any thread, but a WaterDriver and its JniEnvironment on only one thread at a time.

/// Settings of the water. Lengths are in cells and times in steps, unless a field names another unit.
struct WaterSettings {
    /// Cells along the shorter side of the screen, clamped to [8, 254]. Cells are square, so the longer side follows
    /// from this.
    int shortSideCells = 90;
    /// Cells between neighbouring mesh vertices, at least 1. A larger number draws the same waves with fewer triangles.
    /// A vertex between cells gets interpolated heights.
    float cellsPerVertex = 1.0f;
    /// Factor of the wave velocity per step, below 1.
    float damping = 0.97f;
    /// Weight of the height difference to the adjacent cells. Waves travel sqrt(waveSpeed) cells per step. Stable up to
    /// 0.5.
    float waveSpeed = 0.3f;
    /// Mesh units along the shorter side. Fewer units strengthen the refraction, because wave heights do not scale with
    /// them.
    int shortSideMeshUnits = 16;
    /// Steps per second, at least 60.
    int stepsPerSecond = 60;
    /// Radius of the cone that a touch raises. The native `ripple` raises only cones of radius 3. A larger radius is
    /// built of several such cones. For a smaller radius, a cone of radius 3 is made flatter, so that it has the same
    /// volume.
    double rippleRadius = 3.0;
};

/// Radius in cells of the cone that the native `ripple` raises.
constexpr double coneRadius = 3.0;

/// Factor by which the drawn mesh is larger than the screen. The eye is 30 units in front of the mesh and the
/// background 30.9 units behind it. With this factor, the background's edges appear at the screen's edges.
constexpr float meshOverhang = 1.015f;

/// The water of one screen: two grids, the mesh and its heights. The arrays belong to a JniEnvironment.
///
/// Cell (x, y) is at (x / columns, y / rows) of the screen, y down. With one cell per vertex, each side has one more
/// vertex than cells: one on each cell, and one on the right or lower edge of the screen. The vertices on these two
/// edges repeat the last cell, which is part of the fixed border. In a coarser mesh, a vertex has the height of the
/// nearest cell.
struct WaterDriver {
    /// Settings used to make the water.
    WaterSettings settings;
    /// Screen width in pixels.
    int screenWidth;
    /// Screen height in pixels.
    int screenHeight;

    /// Cells per row of the grids.
    int columns;
    /// Rows of the grids.
    int rows;
    /// Height grid: columns * rows floats, row-major, y down; 0 is the flat surface.
    jfloatArray height;
    /// Velocity grid of the same shape: height change per step.
    jfloatArray velocity;

    /// Mesh width in mesh units.
    int meshSizeWidth;
    /// Mesh height in mesh units.
    int meshSizeHeight;
    /// Vertex columns of the mesh.
    int numDetailsWidth;
    /// Vertices per column of the mesh.
    int numDetailsHeight;
    /// Vertex positions: 3 floats per vertex in mesh units, y up, as filled by initWaters.
    jfloatArray positions;
    /// Triangle list of the mesh, as filled by initWaters.
    jshortArray indices;
    /// Heights attribute: 3 floats per vertex. They are the heights of the vertex's cell, of the cell to its right and
    /// of the cell above it.
    jfloatArray heights;

    /// True while no wave moves. No step runs until the next ripple.
    bool idle = true;
    /// Number of steps run so far.
    std::int64_t steps = 0;
    /// Time not yet simulated, in nanoseconds times `stepsPerSecond`. One step is 1e9.
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

/// Copies the waves of one water to another water. Screen, grid, mesh and step rate may differ. Waves keep their
/// position relative to the sides of the screen.
/// @param from water to copy from
/// @param to water that receives the heights, velocities and remaining time
void resampleWaves(const WaterDriver& from, WaterDriver& to);

/// Releases the arrays of a water. The water must not be used afterwards.
/// @param water water to release
/// @param jni owner of the arrays
void releaseWater(const WaterDriver& water, JniEnvironment& jni);

/// Raises a cone with radius `settings.rippleRadius` and height 3 * strength. The water is then no longer idle.
/// @param water water to change
/// @param jni owner of the arrays
/// @param x position in pixels from the left edge of the screen
/// @param y position in pixels from the top edge of the screen, y down
/// @param strength a third of the cone's height; a negative value makes a hollow
void rippleAt(WaterDriver& water, JniEnvironment& jni, double x, double y, float strength);

/// Runs the steps that are due and rebuilds the heights attribute. Does nothing while the water is idle. One call runs
/// at most 4/60 s of steps, so a host that stalled skips time instead of catching up.
/// @param water water to advance
/// @param jni owner of the arrays
/// @param elapsed time since the last call
void advanceWater(WaterDriver& water, JniEnvironment& jni, std::chrono::nanoseconds elapsed);

/// Writes the heights attribute from the height grid. Call this function after you change the grid directly.
/// @param water water whose heights to write
void buildHeights(WaterDriver& water);

}  // namespace hostkit
