#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/side_by_side.h"
#include "tests/oracle/plain_kernels.h"

using namespace velmora;

namespace bench {

namespace {

struct GridSize {
    int width;
    int height;
};

std::string nameOf(GridSize size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

std::vector<float> noise(GridSize size, float amplitude) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> values(-amplitude, amplitude);
    std::vector<float> cells(static_cast<std::size_t>(size.width * size.height));
    std::generate(cells.begin(), cells.end(), [&] { return values(random); });
    return cells;
}

struct Water {
    explicit Water(GridSize size)
        : startHeights(noise(size, 20.0f)),
          startVelocities(noise(size, 2.0f)),
          heights(startHeights),
          velocities(startVelocities) {}

    void restore() {
        std::copy(startHeights.begin(), startHeights.end(), heights.begin());
        std::copy(startVelocities.begin(), startVelocities.end(), velocities.begin());
        ripples = 0;
    }

    std::vector<float> startHeights, startVelocities;
    std::vector<float> heights, velocities;
    bool calm = false;
    std::size_t ripples = 0;  // number of ripples since the last restore
};

/// Returns the comparison of the library's `ripple` with its reference implementation. Each call raises a ripple at a
/// different place. At a fixed place, the processor would learn to predict the branches of the reference
/// implementation.
Comparison rippleComparison(GridSize size) {
    const auto water = std::make_shared<Water>(size);
    const auto places = noise({512, 2}, 0.5f);
    const auto next = [water, places, size] {
        const std::size_t at = water->ripples++ % 512 * 2;
        return RippleTouch{
            1080, 1920, size.width, size.height, places[at] * 1080.0f, places[at + 1] * 1920.0f,
            0.5f};
    };
    return {
        .kernel = "ripple",
        .grid = nameOf(size),
        .target = 1.0,
        .restore = [water] { water->restore(); },
        .reference = [=] { reference::addRipple(water->heights.data(), next()); },
        .candidate = [=] { velmora::addRipple(water->heights.data(), next()); },
        .outputs =
            [water] { return std::vector{bytesOf(water->heights.data(), water->heights.size())}; }};
}

struct Mesh {
    explicit Mesh(GridSize size)
        : shape{24, 43, size.width, size.height},
          positions(static_cast<std::size_t>(3 * size.width * size.height)),
          indices(static_cast<std::size_t>(6 * (size.width - 1) * (size.height - 1))) {}

    MeshShape shape;
    std::vector<float> positions;
    std::vector<std::uint16_t> indices;
};

Comparison meshComparison(GridSize size) {
    const auto mesh = std::make_shared<Mesh>(size);
    const int vertices = size.width * size.height;
    return {.kernel = "initWaters",
            .grid = nameOf(size),
            .target = 4.0,
            .restore = [] {},
            .reference =
                [=] {
                    reference::writeMeshPositions(mesh->positions.data(), vertices, mesh->shape);
                    reference::writeMeshIndices(mesh->indices.data(), mesh->shape);
                },
            .candidate =
                [=] {
                    velmora::writeMeshPositions(mesh->positions.data(), vertices, mesh->shape);
                    velmora::writeMeshIndices(mesh->indices.data(), mesh->shape);
                },
            .outputs =
                [mesh] {
                    return std::vector{bytesOf(mesh->positions.data(), mesh->positions.size()),
                                       bytesOf(mesh->indices.data(), mesh->indices.size())};
                }};
}

}  // namespace

Comparison moveComparison(int width, int height) {
    const GridSize size{width, height};
    const auto water = std::make_shared<Water>(size);
    const WaterGrids grids{water->velocities.data(), water->heights.data(), size.width};
    const WaterRectangle inner{1, 1, size.width - 1, size.height - 1};
    const WaveSettings settings{.damping = 0.975f, .waveSpeed = 0.3f, .detectCalm = true};
    return {.kernel = "move",
            .grid = nameOf(size),
            .target = 2.0,
            .restore = [water] { water->restore(); },
            .reference = [=] { water->calm = reference::stepHeightField(grids, inner, settings); },
            .candidate = [=] { water->calm = velmora::stepHeightField(grids, inner, settings); },
            .outputs =
                [water] {
                    return std::vector{bytesOf(water->heights.data(), water->heights.size()),
                                       bytesOf(water->velocities.data(), water->velocities.size()),
                                       bytesOf(&water->calm, 1)};
                }};
}

std::vector<Comparison> waterComparisons() {
    std::vector<Comparison> all;
    for (const GridSize size : {GridSize{60, 107}, GridSize{128, 228}, GridSize{512, 512}}) {
        all.push_back(moveComparison(size.width, size.height));
    }
    all.push_back(rippleComparison({60, 107}));
    for (const GridSize size : {GridSize{60, 107}, GridSize{255, 255}}) {
        all.push_back(meshComparison(size));
    }
    return all;
}

}  // namespace bench
