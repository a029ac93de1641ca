#include "fuzz/call_driver.h"

#include <GLES2/gl2.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <thread>

#include "fuzz/byte_source.h"
#include "hostkit/gl_context.h"
#include "hostkit/jni_environment.h"

namespace fuzz {

namespace {

constexpr int surfaceSide = 64;  // pixels; the settings may claim any other screen

/// Arrays of one size, of exactly the length that the size asks for.
struct Mesh {
    int columns, rows;
    jfloatArray positions, heights;
    jshortArray indices;
    int vertices() const { return columns * rows; }
    int indexCount() const { return 6 * (columns - 1) * (rows - 1); }
};
struct Water {
    int columns, rows;
    jfloatArray velocity, height;
};

/// A thread's own environment and arrays.
class Arrays {
public:
    Arrays() : jni({.guardElements = 64}) {
        constexpr int meshSizes[][2] = {{2, 2}, {3, 3}, {5, 4}, {9, 16}, {33, 33}};
        for (const auto& [columns, rows] : meshSizes) {
            const auto vertices = static_cast<std::size_t>(columns * rows);
            const auto quads = static_cast<std::size_t>((columns - 1) * (rows - 1));
            meshes.push_back({columns, rows, jni.newFloatArray(vertices * 3),
                              jni.newFloatArray(vertices * 3), jni.newShortArray(quads * 6)});
        }
        constexpr int waterSizes[][2] = {{3, 3}, {5, 4}, {9, 7}, {18, 33}, {48, 40}};
        for (const auto& [columns, rows] : waterSizes) {
            const auto cells = static_cast<std::size_t>(columns * rows);
            waters.push_back({columns, rows, jni.newFloatArray(cells), jni.newFloatArray(cells)});
        }
    }
    Mesh& mesh(ByteSource& in) { return meshes[in.byte() % meshes.size()]; }
    Water& water(ByteSource& in) { return waters[in.byte() % waters.size()]; }

    hostkit::JniEnvironment jni;
    jfloatArray matrix = jni.newFloatArray(16);

private:
    std::vector<Mesh> meshes;
    std::vector<Water> waters;
};

/// The calls that any thread may make, and the faults they show. Each thread has one of its own.
class AnyThreadCalls {
public:
    explicit AnyThreadCalls(const NativeMethods& library) : native(&library) {}

    void use(const NativeMethods& library) { native = &library; }
    JNIEnv* env() { return arrays.jni.env(); }

    void touch(ByteSource& in) {
        const bool onScreen = !in.oneIn(4);
        const int x = onScreen ? in.between(-5, 700) : in.anyInt();
        const int y = onScreen ? in.between(-5, 700) : in.anyInt();
        const int action = in.oneIn(16) ? in.anyInt() : in.byte() % 4;
        native->onTouch(env(), nullptr, x, y, action, in.anyFloat());
    }
    void ask() {
        const jint shown = native->getClearInkValue(env(), nullptr);
        check(shown == 0 || shown == 1, "getClearInkValue returned " + std::to_string(shown));
    }
    void clear() { native->clearInkValue(env(), nullptr); }

    void initWaters(ByteSource& in) {
        const Mesh& mesh = arrays.mesh(in);
        const bool whole = in.flag();
        const int vertices = whole ? mesh.vertices() : in.between(-5, mesh.vertices());
        const int columns = whole ? mesh.columns : in.between(-5, mesh.columns);
        const int rows = whole ? mesh.rows : in.between(-5, mesh.rows);
        const int width = in.anyInt(), height = in.anyInt();
        native->initWaters(env(), nullptr, mesh.positions, mesh.indices, vertices, width, height,
                           columns, rows);
        checkArrays("initWaters");
    }
    void ripple(ByteSource& in) {
        const Water& water = arrays.water(in);
        const int columns = in.oneIn(4) ? in.between(-5, water.columns) : water.columns;
        const int rows = in.oneIn(4) ? in.between(-5, water.rows) : water.rows;
        const int areaWidth = in.anyInt(), areaHeight = in.anyInt();
        const float x = in.anyFloat(), y = in.anyFloat(), strength = in.anyFloat();
        native->ripple(env(), nullptr, in.flag() ? water.height : water.velocity, areaWidth,
                       areaHeight, columns, rows, x, y, strength);
        checkArrays("ripple");
    }
    void move(ByteSource& in) {
        const Water& water = arrays.water(in);
        int x0 = in.between(1, water.columns - 1), y0 = in.between(1, water.rows - 1);
        int x1 = in.between(x0, water.columns - 1), y1 = in.between(y0, water.rows - 1);
        if (in.oneIn(8)) {  // empty, wherever it lies
            x0 = in.anyInt();
            x1 = std::min(x0, in.anyInt());
            y0 = in.anyInt();
            y1 = in.anyInt();
        }
        const bool detectCalm = in.flag(), isEmpty = x1 <= x0 || y1 <= y0;
        const float damping = in.anyFloat(), speed = in.anyFloat();
        const jboolean calm =
            native->move(env(), nullptr, water.velocity, water.height, x0, y0, x1, y1,
                         water.columns, in.anyInt(), detectCalm, damping, speed);
        check(calm <= 1 && (calm == 1 || (detectCalm && !isEmpty)), "move answers moving water");
        checkArrays("move");
    }
    /// One of the above.
    void any(ByteSource& in) {
        switch (in.byte() % 8) {
            case 0:
                return clear();
            case 1:
                return ask();
            case 2:
                return ripple(in);
            case 3:
                return move(in);
            case 4:
                return initWaters(in);
            default:
                return touch(in);
        }
    }

    void check(bool holds, const std::string& fault) {
        if (!holds) {
            faults.push_back(fault);
        }
    }
    void checkArrays(const std::string& call) {
        check(arrays.jni.damages().empty(), "a guard zone is damaged after " + call);
        check(arrays.jni.pinned() == 0, "an array is still pinned after " + call);
    }

    Arrays arrays;
    std::vector<std::string> faults;

private:
    const NativeMethods* native;
};

class Driver {
public:
    Driver(DrivenLibrary driven, std::span<const std::uint8_t> bytes)
        : library(std::move(driven)), in(bytes), render(library.methods), touches(library.methods) {
        replaceContext();
    }

    DriveReport run() {
        while (!in.isUsedUp()) {
            step();
            ++report.calls;
        }
        endBurst();
        report.faults = render.faults;
        report.faults.insert(report.faults.end(), touches.faults.begin(), touches.faults.end());
        return report;
    }

private:
    void step() {
        const NativeMethods& native = library.methods;
        switch (in.byte() % 24) {
            case 0:
            case 1:
                return changeSetting();
            case 2:
                return native.onInitUVHBuffer(env(), nullptr);
            case 3:
                return native.onInitGPU(env(), nullptr);
            case 4:
                return loadTexture();
            case 5:
                return in.oneIn(3) ? replaceContext() : drawFrame();
            case 6:
                return in.oneIn(4) ? context.reset() : drawFrame();
            case 7:
            case 8:
                return setUp();
            case 9:
                return in.oneIn(4) ? reload() : render.ask();
            case 10:
            case 11:
                return startBurst();
            case 12:
            case 13:
            case 14:
                return render.any(in);
            case 15:
            case 16:
            case 17:
                return render.touch(in);
            default:
                return drawFrame();
        }
    }

    JNIEnv* env() { return render.env(); }

    void changeSetting() {
        const int width = in.size(), height = in.size();
        library.methods.onInitSetting(env(), nullptr, width, height, !in.oneIn(4));
    }

    /// What a good host does, with a screen about the size of the surface.
    void setUp() {
        const NativeMethods& native = library.methods;
        if (!context || in.oneIn(6)) {
            replaceContext();
        }
        const int width = in.between(1, 700), height = in.between(1, 700);
        native.onInitSetting(env(), nullptr, width, height, !in.oneIn(5));
        native.onInitUVHBuffer(env(), nullptr);
        native.onInitGPU(env(), nullptr);
    }

    void replaceContext() {
        context.reset();
        context.emplace(surfaceSide, surfaceSide);
        // A software rasteriser spends most of a frame in the ink targets: their corner will do.
        glEnable(GL_SCISSOR_TEST);
        glScissor(0, 0, surfaceSide, surfaceSide);
        ++report.contexts;
    }

    void reload() {
        if (library.reload) {
            endBurst();
            library.methods = library.reload();
            ++report.reloads;
        }
    }

    void loadTexture() {
        const int width = in.between(0, 17), height = in.between(0, 9);
        const int stride = width * 4 + (in.flag() ? 0 : in.between(-9, 30));
        std::vector<std::uint8_t> pixels(static_cast<std::size_t>(std::max(stride, 0) * height));
        const int format = in.oneIn(8) ? in.byte() : int{ANDROID_BITMAP_FORMAT_RGBA_8888};
        StandInBitmap bitmap{};
        bitmap.info = {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                       static_cast<std::uint32_t>(std::max(stride, 0)), format, 0};
        bitmap.pixels = pixels.data();
        bitmap.getInfoResult = in.oneIn(16) ? -1 : 0;
        bitmap.lockResult = in.oneIn(16) ? -2 : 0;
        bitmap.unlockResult = in.oneIn(16) ? -3 : 0;
        const int index = in.oneIn(8) ? in.anyInt() : in.byte() % 3;
        const jint result =
            library.methods.LoadTextures(env(), nullptr, reinterpret_cast<jobject>(&bitmap), index);
        render.check(result <= 0, "LoadTextures returned " + std::to_string(result));
        render.check(bitmap.lockCount == 0, "LoadTextures left a bitmap locked");
    }

    void drawFrame() {
        const Mesh& mesh = render.arrays.mesh(in);
        int positions = mesh.vertices() * 3, heights = positions, indices = mesh.indexCount();
        if (in.oneIn(8)) {  // what GL would read past the vertices is no affair of the library
            positions = in.between(-5, positions);
            heights = in.between(-5, heights);
            indices = in.between(-5, 0);
        }
        for (float& value : hostkit::JniEnvironment::elements(render.arrays.matrix)) {
            value = in.anyFloat();
        }
        std::array<int, 4> sizes{};
        std::array<float, 10> numbers{};
        for (int& size : sizes) {
            size = in.size();
        }
        for (float& number : numbers) {
            number = in.anyFloat();
        }
        library.methods.onDrawFrame(env(), nullptr, mesh.positions, mesh.heights, mesh.indices,
                                    positions, heights, indices, render.arrays.matrix, sizes[0],
                                    sizes[1], sizes[2], sizes[3], numbers[0], numbers[1],
                                    numbers[2], numbers[3], numbers[4], numbers[5], numbers[6],
                                    numbers[7], numbers[8], numbers[9], in.flag());
        render.checkArrays("onDrawFrame");
        ++report.frames;
    }

    /// A touch thread makes some calls while the render thread goes on with its own.
    void startBurst() {
        endBurst();
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(in.between(8, 400)));
        for (std::uint8_t& byte : bytes) {
            byte = in.byte();
        }
        touches.use(library.methods);
        burst = std::thread([this, bytes = std::move(bytes)] {
            ByteSource own(bytes);
            while (!own.isUsedUp()) {
                touches.any(own);
                ++report.touchThreadCalls;
            }
        });
    }
    void endBurst() {
        if (burst.joinable()) {
            burst.join();
        }
    }

    DrivenLibrary library;
    ByteSource in;
    AnyThreadCalls render, touches;
    std::optional<hostkit::GlContext> context;
    DriveReport report;
    std::thread burst;
};

}  // namespace

DriveReport drive(DrivenLibrary library, std::span<const std::uint8_t> bytes) {
    return Driver(std::move(library), bytes).run();
}

std::vector<std::uint8_t> bytesOfSeed(std::uint32_t seed, std::size_t count) {
    std::mt19937 generator(seed);
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(generator() & 0xFF);
    }
    return bytes;
}

}  // namespace fuzz
