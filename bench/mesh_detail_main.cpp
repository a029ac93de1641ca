#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>
#include <vector>

#include "app/settings.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/host_error.h"
#include "hostkit/instruments/frame_similarity.h"
#include "paintings/paintings.h"

// Compares frames of coarser meshes with frames of the finest mesh, in which each cell has a vertex. Plays all gestures
// in water-only mode on the default background of the web page. The constants of the mesh in app/quality.cpp are based
// on these results.
// Usage: velmora-bench-mesh [WIDTH HEIGHT]

namespace {

namespace fs = std::filesystem;

/// Number of cells between neighbouring vertices of each coarser mesh.
constexpr std::array<float, 3> meshes = {1.75f, 2.0f, 3.0f};

std::vector<hostkit::GreyImage> framesOf(const hostkit::GestureScript& script, int width,
                                         int height, float cellsPerVertex) {
    app::Settings settings;
    settings.waterOnly = true;
    hostkit::EffectHostOptions options = app::hostOptions(settings, width, height);
    options.water.cellsPerVertex = cellsPerVertex;
    options.background = paintings::paintSand(width, height);
    return playedFrames(std::move(options), script);
}

/// Prints one line for each coarser mesh: the lowest similarity between a frame of this mesh and the same frame of the
/// finest mesh, over all gestures.
void compareAt(int width, int height) {
    std::array<double, meshes.size()> lowest{};
    lowest.fill(1.0);
    for (const fs::directory_entry& file : fs::directory_iterator(VELMORA_GESTURES)) {
        const hostkit::GestureScript script =
            scaledToScreen(hostkit::loadGestureScript(file.path()), width, height);
        const std::vector<hostkit::GreyImage> finest = framesOf(script, width, height, 1.0f);
        for (std::size_t mesh = 0; mesh < meshes.size(); ++mesh) {
            const double found =
                lowestSimilarity(finest, framesOf(script, width, height, meshes[mesh]));
            lowest[mesh] = std::min(lowest[mesh], found);
        }
    }
    std::printf("%4d x %4d", width, height);
    for (std::size_t mesh = 0; mesh < meshes.size(); ++mesh) {
        std::printf("  %.2f cells per vertex: lowest similarity %.4f",
                    static_cast<double>(meshes[mesh]), lowest[mesh]);
    }
    std::printf("\n");
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 3) {
            compareAt(std::atoi(argv[1]), std::atoi(argv[2]));
        } else {
            for (const auto& [width, height] :
                 {std::pair{270, 480}, {390, 844}, {540, 960}, {1080, 1920}, {1600, 900}}) {
                compareAt(width, height);
            }
        }
    } catch (const hostkit::HostError& error) {
        std::fprintf(stderr, "velmora-bench-mesh: %s\n", error.what());
        return 2;
    }
    return 0;
}
