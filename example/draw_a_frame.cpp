// Draws a finger press on the water, off-screen. Prints the library's version and the number of changed pixels. Usage:
// draw-a-frame [FILE.ppm]

#include <hostkit/effect_host.h>
#include <hostkit/host_error.h>
#include <hostkit/native.h>
#include <velmora/version.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <vector>

namespace {

constexpr int width = 540;
constexpr int height = 960;

/// Returns the number of pixels that differ between two frames of the same size.
std::size_t countChanges(const std::vector<std::uint8_t>& frame,
                         const std::vector<std::uint8_t>& other) {
    std::size_t changed = 0;
    for (std::size_t i = 0; i < frame.size(); i += 4) {
        changed += !std::equal(&frame[i], &frame[i] + 3, &other[i]);
    }
    return changed;
}

void writePpm(const char* file, const std::vector<std::uint8_t>& rgba) {
    std::ofstream out(file, std::ios::binary);
    out << "P6 " << width << ' ' << height << " 255\n";
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        out.write(reinterpret_cast<const char*>(&rgba[i]), 3);
    }
}

}  // namespace

int main(int argc, char** argv) try {
    hostkit::EffectHost host({.width = width, .height = height});
    host.frame();
    const std::vector<std::uint8_t> idle = host.pixels();
    host.touch({hostkit::TouchAction::down, width / 2.0, height / 2.0, 1.0f});
    for (int frame = 0; frame < 12; ++frame) {
        host.frame();
    }
    const std::vector<std::uint8_t> stirred = host.pixels();
    if (argc > 1) {
        writePpm(argv[1], stirred);
    }
    const std::size_t changed = countChanges(stirred, idle);
    const bool inkShown = hostkit::native::getClearInkValue(host.jni().env(), nullptr) != 0;
    std::cout << "Velmora " VELMORA_VERSION ": " << changed << " of " << width * height
              << " pixels changed, ink " << (inkShown ? "shown" : "hidden") << '\n';
    // The ink must darken the centre of the image and leave the corner unchanged.
    const std::size_t centre = std::size_t{4} * (height / 2 * width + width / 2);
    const bool drawn = stirred[centre] < idle[centre] && stirred[0] == idle[0];
    return inkShown && drawn ? 0 : 1;
} catch (const hostkit::HostError& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
