#pragma once

#include <jni.h>

#include <chrono>
#include <cstdint>

#include "hostkit/jni_environment.h"

namespace hostkit {

/// How the water behaves; lengths in cells, times in steps.
struct WaterSettings {
    /// Cells along the shorter side of the screen; the longer side gets as many as make them square.
    int shortSideCells = 90;
    /// Along a side, between neighbours of the mesh: more of them draw the same waves in fewer triangles.
    int cellsPerVertex = 1;
    /// Factor of the velocity per step, below 1.
    float damping = 0.97f;
    /// Weight of the neighbours' pull; waves run sqrt(waveSpeed) cells a step and are stable up to 0.5.
    float waveSpeed = 0.3f;
    /// Mesh units along the shorter side. Refraction grows as this shrinks against the heights.
    int shortSideMeshUnits = 16;
    int stepsPerSecond = 60;
    /// Of the cone that a touch raises. The library's cone has 3: a wider one is built of several,
    /// and in place of a narrower one a flatter one of the same volume rises.
    double rippleRadius = 3.0;
};

/// Radius in cells of the cone that `ripple` raises.
constexpr double coneRadius = 3.0;

/// The mesh is drawn this much larger than the screen. A ray from the effect's eye, 30 before the
/// mesh, meets the picture 30.9 behind it: the picture's edge then lies at the screen's.
constexpr float meshOverhang = 1.015f;

/// The water of one screen: two grids, the mesh arrays and the heights attribute, all held in
/// arrays of `jni` and worked on through the library's native methods.
///
/// The cell in column x, row y of the grid lies at (x / columns, y / rows) of the screen, rows
/// downwards. A mesh of one cell per vertex has one vertex more than cells along each side, so that
/// a vertex lies on each cell and the last ones on the screen's right and lower edges; those repeat
/// the last cell, which is part of the fixed frame. Vertices of a coarser mesh lie on cells as well,
/// the nearest to where they are, and are as high as the cells around them on average.
struct WaterDriver {
    WaterSettings settings;
    int screenWidth;
    int screenHeight;

    int columns;
    int rows;
    jfloatArray height;
    jfloatArray velocity;

    int meshSizeWidth;
    int meshSizeHeight;
    int numDetailsWidth;
    int numDetailsHeight;
    jfloatArray positions;
    jshortArray indices;
    /// 3 floats per vertex: its height, that of one cell to the right, that of one cell above.
    jfloatArray heights;

    /// True while the water is calm: no step runs until the next ripple.
    bool resting = true;
    /// Steps run so far.
    std::int64_t steps = 0;
    /// Time not yet stepped, in nanoseconds times the steps of a second.
    std::int64_t pendingTime = 0;
};

/// Chooses grid and mesh for a screen of at least 1 x 1 pixels (at most 65536 vertices), makes the
/// arrays and fills the mesh with `initWaters`.
WaterDriver makeWater(JniEnvironment& jni, int screenWidth, int screenHeight,
                      WaterSettings settings = {});

/// Gives `to`, a water of the same screen on another grid or mesh or at another rate of steps, the
/// waves of `from` as they stand and run.
void carryWaves(const WaterDriver& from, WaterDriver& to);

/// Gives the arrays of a water back.
void releaseWater(const WaterDriver& water, JniEnvironment& jni);

/// Raises a cone of the settings' radius and peak 3 * strength at a touch, screen pixels, y down;
/// wakes the water.
void rippleAt(WaterDriver& water, JniEnvironment& jni, double x, double y, float strength);

/// Runs the steps due after `elapsed`, at most those of 4/60 s (a host that stalled does not catch
/// up), and rebuilds the heights attribute when the water moved.
void advanceWater(WaterDriver& water, JniEnvironment& jni, std::chrono::nanoseconds elapsed);

/// Writes the heights attribute from the height grid.
void buildHeights(WaterDriver& water);

}  // namespace hostkit
