#include "hostkit/effect_host.h"

#include <jni.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <variant>

#include "hostkit/host_error.h"
#include "hostkit/native.h"

namespace hostkit {

namespace {

constexpr int reflectionSlot = 0;
constexpr int backgroundSlot = 1;
constexpr int secondBackgroundSlot = 2;
/// Names of the three texture slots, for error messages.
constexpr const char* textureNames[] = {"reflection map", "background", "second background"};
/// Maximum distance in cells between the ripples of one finger movement. A longer movement raises several ripples, so
/// that a fast finger leaves a furrow instead of separate rings. Each ripple has the radius `coneRadius`.
constexpr double rippleSpacing = 2.0;
/// Maximum number of ripples of one finger movement. Without this limit, a position far outside the screen would cost
/// too much time.
constexpr double maxRipplesPerMove = 64.0;

jint toPixel(double position) {
    return static_cast<jint>(std::lround(std::clamp(position, -1e9, 1e9)));
}

/// Fills the model-view-projection matrix, column-major. It maps mesh coordinates to clip space and enlarges the mesh
/// by `meshOverhang`. In both spaces, the origin is the centre and y points up.
void fillMvp(std::span<float> matrix, const WaterDriver& water) {
    std::fill(matrix.begin(), matrix.end(), 0.0f);
    matrix[0] = 2.0f * meshOverhang / static_cast<float>(water.meshSizeWidth);
    matrix[5] = 2.0f * meshOverhang / static_cast<float>(water.meshSizeHeight);
    matrix[10] = 1.0f;
    matrix[15] = 1.0f;
}

/// Combines several lambdas into one visitor for std::visit.
template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

}  // namespace

EffectHost::EffectHost(EffectHostOptions hostOptions)
    : options(std::move(hostOptions)),
      environment(options.jni ? *options.jni : ownEnvironment),
      mvpMatrix(environment.newFloatArray(16)) {
    if (options.reflectionMap.empty()) {
        options.reflectionMap = makeReflectionMap();
    }
    setBackgrounds(std::move(options.background), std::move(options.secondBackground));
    native::onInitSetting(environment.env(), nullptr, options.width, options.height,
                          options.inkEnabled);
    if (!options.renewContext) {
        context.emplace(options.width, options.height);
    }
    setUpContext();
    replaceWater(options.water);
}

void EffectHost::replaceWater(WaterSettings settings) {
    WaterDriver water = makeWater(environment, options.width, options.height, settings);
    if (waterDriver) {
        resampleWaves(*waterDriver, water);
        releaseWater(*waterDriver, environment);
    }
    waterDriver = water;
    fillMvp(JniEnvironment::elements(mvpMatrix), *waterDriver);
}

void EffectHost::setBackgrounds(Image background, Image secondBackground) {
    options.background = std::move(background);
    options.secondBackground = std::move(secondBackground);
    if (options.background.empty()) {
        options.background = makeTestImage(options.width, options.height);
    }
    if (options.secondBackground.empty()) {
        options.secondBackground = makeTestImage(options.height, options.width);
    }
    if (contextReady) {
        loadTexture(options.background, backgroundSlot);
        loadTexture(options.secondBackground, secondBackgroundSlot);
    }
}

void EffectHost::setBackground(Image background) {
    options.background = std::move(background);
    loadTexture(options.background, backgroundSlot);
}

void EffectHost::setUpContext() {
    native::onInitUVHBuffer(environment.env(), nullptr);
    native::onInitGPU(environment.env(), nullptr);
    loadTexture(options.reflectionMap, reflectionSlot);
    loadTexture(options.background, backgroundSlot);
    loadTexture(options.secondBackground, secondBackgroundSlot);
    contextReady = true;
}

void EffectHost::loadTexture(Image& image, int index) {
    const auto width = static_cast<std::uint32_t>(image.width);
    StandInBitmap bitmap{};
    bitmap.info = {width, static_cast<std::uint32_t>(image.height), width * 4,
                   ANDROID_BITMAP_FORMAT_RGBA_8888, 0};
    bitmap.pixels = image.rgba.data();
    const jint result =
        native::LoadTextures(environment.env(), nullptr, reinterpret_cast<jobject>(&bitmap), index);
    if (result < 0) {
        throw HostError(std::string(textureNames[static_cast<std::size_t>(index)]) +
                        ": the library cannot load this image of " + std::to_string(image.width) +
                        " x " + std::to_string(image.height) + " pixels (code " +
                        std::to_string(result) + "); expected 32-bit RGBA pixels");
    }
}

void EffectHost::frame(std::span<const ScriptEvent> events, std::chrono::nanoseconds elapsed) {
    step(events, elapsed);
    draw();
}

void EffectHost::step(std::span<const ScriptEvent> events, std::chrono::nanoseconds elapsed) {
    for (const ScriptEvent& event : events) {
        apply(event.action);
    }
    advanceWater(*waterDriver, environment, elapsed);
}

void EffectHost::apply(const ScriptAction& action) {
    std::visit(Overloaded{[this](const Touch& event) { touch(event); },
                          [this](const InkColor& ink) { options.effect.ink = ink; },
                          [this](const SecondBackground& second) {
                              options.effect.useSecondBackground = second.on;
                          },
                          [this](const ClearInk&) { clearInk(); },
                          [this](const LoseContext&) { loseContext(); }},
               action);
}

void EffectHost::touch(const Touch& event) {
    native::onTouch(environment.env(), nullptr, toPixel(event.x), toPixel(event.y),
                    static_cast<jint>(event.action), event.pressure);
    addRipples(event);
    const bool ends = event.action == TouchAction::up || event.action == TouchAction::cancel;
    lastTouch = ends ? std::nullopt : std::optional(event);
}

void EffectHost::addRipples(const Touch& event) {
    if (event.action == TouchAction::down) {
        rippleAt(*waterDriver, environment, event.x, event.y, options.effect.downRipple);
    }
    if (event.action != TouchAction::move || !lastTouch) {
        return;
    }
    const double distanceX = event.x - lastTouch->x;
    const double distanceY = event.y - lastTouch->y;
    const double cellSize = static_cast<double>(options.width) / waterDriver->columns;
    const double cells = std::hypot(distanceX, distanceY) / cellSize;
    const double spacing = rippleSpacing * waterDriver->settings.rippleRadius / coneRadius;
    const int ripples =
        static_cast<int>(std::clamp(std::ceil(cells / spacing), 0.0, maxRipplesPerMove));
    for (int ripple = 1; ripple <= ripples; ++ripple) {
        const double fraction = static_cast<double>(ripple) / ripples;
        rippleAt(*waterDriver, environment, lastTouch->x + distanceX * fraction,
                 lastTouch->y + distanceY * fraction, options.effect.moveRipple);
    }
}

void EffectHost::clearInk() {
    native::clearInkValue(environment.env(), nullptr);
}

bool EffectHost::inkShown() {
    return native::getClearInkValue(environment.env(), nullptr) != 0;
}

void EffectHost::loseContext() {
    if (options.renewContext) {
        options.renewContext();
    } else {
        context.reset();
        context.emplace(options.width, options.height);
    }
    setUpContext();
}

void EffectHost::draw() {
    const WaterDriver& water = *waterDriver;
    const EffectSettings& effect = options.effect;
    const auto count = [](auto array) {
        return static_cast<jint>(JniEnvironment::elements(array).size());
    };
    native::onDrawFrame(environment.env(), nullptr, water.positions, water.heights, water.indices,
                        count(water.positions), count(water.heights), count(water.indices),
                        mvpMatrix, water.meshSizeWidth, water.meshSizeHeight, water.numDetailsWidth,
                        water.numDetailsHeight, effect.refractiveIndex, effect.alpha,
                        effect.alphaRatio1Scale, effect.alphaRatio2Scale, effect.ink.red,
                        effect.ink.green, effect.ink.blue, effect.fresnelRatio,
                        effect.specularRatio, effect.exponent, effect.useSecondBackground);
}

}  // namespace hostkit
