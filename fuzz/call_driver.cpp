#include "fuzz/call_driver.h"

#include <GLES2/gl2.h>
#include <jni.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <random>
#include <thread>
#include <utility>

#include "fuzz/byte_source.h"
#include "hostkit/gl_context.h"
#include "hostkit/instruments/checked_jni.h"

namespace fuzz {

namespace {

constexpr int surfaceSide = 64;  // pixels; the driver may set another screen size

/// Arrays with the exact lengths that a mesh and a water grid of this size need.
struct Grid {
    int columns, rows;
    jfloatArray positions, heights;  // of the mesh
    jshortArray indices;
    jfloatArray velocity, height;  // of the water
    int vertices() const { return columns * rows; }
    int indexCount() const { return 6 * (columns - 1) * (rows - 1); }
};

/// Makes the calls that are allowed on any thread. Each instance has its own arrays and its own list of violations, so
/// that threads share no data.
class ThreadCalls {
public:
    explicit ThreadCalls(const NativeMethods& library) : native(library) {
        constexpr int sizes[][2] = {{2, 2}, {3, 3}, {5, 4}, {9, 16}, {48, 40}};
        for (const auto& [columns, rows] : sizes) {
            const auto cells = static_cast<std::size_t>(columns * rows);
            const auto quads = static_cast<std::size_t>((columns - 1) * (rows - 1));
            grids.push_back({columns, rows, jni.newFloatArray(cells * 3),
                             jni.newFloatArray(cells * 3), jni.newShortArray(quads * 6),
                             jni.newFloatArray(cells), jni.newFloatArray(cells)});
        }
    }

    /// Makes one random call. A function with several entries in the table is called more often.
    void any() {
        using Calls = ThreadCalls;
        constexpr void (Calls::*calls[8])() = {&Calls::clear, &Calls::ask,        &Calls::ripple,
                                               &Calls::move,  &Calls::initWaters, &Calls::touch,
                                               &Calls::touch, &Calls::touch};
        (this->*calls[in.byte() % 8])();
    }

    NativeMethods native;
    ByteSource in{{}};
    std::vector<std::string> violations;

protected:
    JNIEnv* env() { return jni.env(); }
    const Grid& grid() { return grids[in.byte() % grids.size()]; }

    void touch() {
        const bool onScreen = !in.oneIn(4);
        const int x = onScreen ? in.between(-5, 700) : in.anyInt();
        const int y = onScreen ? in.between(-5, 700) : in.anyInt();
        const int action = in.oneIn(16) ? in.anyInt() : in.byte() % 4;
        native.onTouch(env(), nullptr, x, y, action, in.anyFloat());
    }
    void ask() {
        const jint shown = native.getClearInkValue(env(), nullptr);
        check(shown == 0 || shown == 1, "getClearInkValue returned " + std::to_string(shown));
    }
    void clear() { native.clearInkValue(env(), nullptr); }

    void initWaters() {
        const Grid& mesh = grid();
        const bool whole = in.flag();
        const int vertices = whole ? mesh.vertices() : in.between(-5, mesh.vertices());
        const int columns = whole ? mesh.columns : in.between(-5, mesh.columns);
        const int rows = whole ? mesh.rows : in.between(-5, mesh.rows);
        const int width = in.anyInt(), height = in.anyInt();
        native.initWaters(env(), nullptr, mesh.positions, mesh.indices, vertices, width, height,
                          columns, rows);
        checkArrays("initWaters");
    }
    void ripple() {
        const Grid& water = grid();
        const int columns = in.oneIn(4) ? in.between(-5, water.columns) : water.columns;
        const int rows = in.oneIn(4) ? in.between(-5, water.rows) : water.rows;
        const int areaWidth = in.anyInt(), areaHeight = in.anyInt();
        const float x = in.anyFloat(), y = in.anyFloat(), strength = in.anyFloat();
        native.ripple(env(), nullptr, in.flag() ? water.height : water.velocity, areaWidth,
                      areaHeight, columns, rows, x, y, strength);
        checkArrays("ripple");
    }
    void move() {
        const Grid& water = grid();
        int x0 = in.between(1, water.columns - 1), y0 = in.between(1, water.rows - 1);
        int x1 = in.between(x0, water.columns - 1), y1 = in.between(y0, water.rows - 1);
        if (in.oneIn(8)) {  // an empty rectangle, which may be outside the grid
            x0 = in.anyInt();
            x1 = std::min(x0, in.anyInt());
            y0 = in.anyInt();
            y1 = in.anyInt();
        }
        const bool detectCalm = in.flag(), isEmpty = x1 <= x0 || y1 <= y0;
        const float damping = in.anyFloat(), speed = in.anyFloat();
        const jboolean isIdle =
            native.move(env(), nullptr, water.velocity, water.height, x0, y0, x1, y1, water.columns,
                        in.anyInt(), detectCalm, damping, speed);
        check(isIdle <= 1 && (isIdle == 1 || (detectCalm && !isEmpty)),
              "move must return true if detectCalm is 0 or the rectangle is empty");
        checkArrays("move");
    }

    void check(bool holds, const std::string& violation) {
        if (!holds) {
            violations.push_back(violation);
        }
    }
    void checkArrays(const std::string& call) {
        check(jni.damages().empty(), "the library wrote outside an array in " + call);
        check(jni.pinned() == 0, "an array is still pinned after " + call);
    }

    hostkit::CheckedJni jni{{.guardElements = 64}};

private:
    std::vector<Grid> grids;
};

/// Makes the calls of the render thread, which owns the GL context, and sometimes starts a touch thread.
class Driver : ThreadCalls {
public:
    Driver(DrivenLibrary library, std::span<const std::uint8_t> bytes, DriveReport& counted)
        : ThreadCalls(library.methods),
          reloadLibrary(std::move(library.reload)),
          touches(library.methods),
          report(counted) {
        in = ByteSource(bytes);
        replaceContext();
    }

    void run() {
        for (; !in.isUsedUp(); ++report.calls) {
            step();
        }
        endBurst();
        for (const auto& found : {violations, touches.violations}) {
            report.violations.insert(report.violations.end(), found.begin(), found.end());
        }
    }

private:
    /// Makes one random call. A function with several entries in the table is called more often.
    void step() {
        constexpr void (Driver::*calls[24])() = {
            &Driver::changeSetting, &Driver::changeSetting, &Driver::initBuffers,
            &Driver::initGpu,       &Driver::loadTexture,   &Driver::replaceOrDraw,
            &Driver::loseOrDraw,    &Driver::setUp,         &Driver::setUp,
            &Driver::reloadOrAsk,   &Driver::startBurst,    &Driver::startBurst,
            &Driver::any,           &Driver::any,           &Driver::any,
            &Driver::touch,         &Driver::touch,         &Driver::touch,
            &Driver::draw,          &Driver::draw,          &Driver::draw,
            &Driver::draw,          &Driver::draw,          &Driver::draw};
        (this->*calls[in.byte() % 24])();
    }

    void changeSetting() {
        const int width = in.size(), height = in.size();
        native.onInitSetting(env(), nullptr, width, height, !in.oneIn(4));
    }
    void initBuffers() { native.onInitUVHBuffer(env(), nullptr); }
    void initGpu() { native.onInitGPU(env(), nullptr); }

    /// Makes the set-up calls in the order of a correct host. Each side of the screen has 1 to 700 pixels.
    void setUp() {
        if (!context || in.oneIn(6)) {
            replaceContext();
        }
        const int width = in.between(1, 700), height = in.between(1, 700);
        native.onInitSetting(env(), nullptr, width, height, !in.oneIn(5));
        initBuffers();
        initGpu();
    }

    void replaceContext() {
        context.reset();
        context.emplace(surfaceSide, surfaceSide);
        // Draw only into a corner of each target. A software rasteriser would otherwise spend most of its time on the
        // large ink targets.
        glEnable(GL_SCISSOR_TEST);
        glScissor(0, 0, surfaceSide, surfaceSide);
        ++report.contexts;
    }
    void replaceOrDraw() { in.oneIn(3) ? replaceContext() : draw(); }
    void loseOrDraw() { in.oneIn(4) ? context.reset() : draw(); }

    void reloadOrAsk() {
        if (!in.oneIn(4)) {
            ask();
        } else if (reloadLibrary) {
            endBurst();
            native = touches.native = reloadLibrary();
            ++report.reloads;
        }
    }

    void loadTexture() {
        const int width = in.between(0, 17), height = in.between(0, 9);
        const int stride = std::max(width * 4 + (in.flag() ? 0 : in.between(-9, 30)), 0);
        std::vector<std::uint8_t> pixels(static_cast<std::size_t>(stride * height));
        const int format = in.oneIn(8) ? in.byte() : int{ANDROID_BITMAP_FORMAT_RGBA_8888};
        StandInBitmap bitmap{};
        bitmap.info = {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                       static_cast<std::uint32_t>(stride), format, 0};
        bitmap.pixels = pixels.data();
        bitmap.getInfoResult = in.oneIn(16) ? -1 : 0;
        bitmap.lockResult = in.oneIn(16) ? -2 : 0;
        bitmap.unlockResult = in.oneIn(16) ? -3 : 0;
        const int index = in.oneIn(8) ? in.anyInt() : in.byte() % 3;
        const jint result =
            native.LoadTextures(env(), nullptr, reinterpret_cast<jobject>(&bitmap), index);
        check(result <= 0,
              "LoadTextures must return 0 or a negative code, not " + std::to_string(result));
        check(bitmap.lockCount == 0, "LoadTextures did not unlock the bitmap");
    }

    void draw() {
        const Grid& mesh = grid();
        int positions = mesh.vertices() * 3, heights = positions, indices = mesh.indexCount();
        if (in.oneIn(8)) {  // acts as an incorrect host: GL would read past the vertices
            positions = in.between(-5, positions);
            heights = in.between(-5, heights);
            indices = in.between(-5, 0);
        }
        for (float& value : hostkit::JniEnvironment::elements(matrix)) {
            value = in.anyFloat();
        }
        const int sizes[] = {in.size(), in.size(), in.size(), in.size()};
        std::array<float, 10> numbers{};
        std::ranges::generate(numbers, [this] { return in.anyFloat(); });
        native.onDrawFrame(env(), nullptr, mesh.positions, mesh.heights, mesh.indices, positions,
                           heights, indices, matrix, sizes[0], sizes[1], sizes[2], sizes[3],
                           numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5],
                           numbers[6], numbers[7], numbers[8], numbers[9], in.flag());
        checkArrays("onDrawFrame");
        ++report.frames;
    }

    /// Starts a touch thread, which makes some calls while the render thread continues.
    void startBurst() {
        endBurst();
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(in.between(8, 400)));
        std::ranges::generate(bytes, [this] { return in.byte(); });
        burst = std::thread([this, bytes = std::move(bytes)] {
            touches.in = ByteSource(bytes);
            for (; !touches.in.isUsedUp(); ++report.touchThreadCalls) {
                touches.any();
            }
        });
    }
    void endBurst() {
        if (burst.joinable()) {
            burst.join();
        }
    }

    std::function<NativeMethods()> reloadLibrary;
    ThreadCalls touches;
    DriveReport& report;
    jfloatArray matrix = jni.newFloatArray(16);
    std::optional<hostkit::GlContext> context;
    std::thread burst;
};

}  // namespace

void drive(DrivenLibrary library, std::span<const std::uint8_t> bytes, DriveReport& report) {
    Driver(std::move(library), bytes, report).run();
}

std::vector<std::uint8_t> bytesOfSeed(std::uint32_t seed, std::size_t count) {
    std::mt19937 generator(seed);
    std::vector<std::uint8_t> bytes(count);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(generator() & 0xFF); });
    return bytes;
}

}  // namespace fuzz
