#include <GLES2/gl2.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/host_error.h"

// Fuzzes gesture scripts. If the parser accepts a script, the fuzzer writes the script, parses it again and plays it.

namespace {

constexpr int side = 96, mostFrames = 60;

void play(const hostkit::GestureScript& script) {
    static hostkit::EffectHost host(
        {.width = side, .height = side, .water = {.shortSideCells = 8}});
    for (int frame = 0; frame < std::min(script.frames, mostFrames); ++frame) {
        glEnable(GL_SCISSOR_TEST);  // set in each frame, because a new context loses this state
        glScissor(0, 0, side, side);
        host.frame(eventsOfFrame(script, frame));
    }
    host.clearInk();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const hostkit::GestureScript script = hostkit::parseGestureScript(text, "input");
        if (hostkit::parseGestureScript(hostkit::writeGestureScript(script), "copy") != script) {
            std::fputs("a script must not change when it is written and parsed again\n", stderr);
            std::abort();
        }
        play(hostkit::scaledToScreen(script, side, side));
    } catch (const hostkit::HostError&) {  // the input is not a valid script
        return -1;
    }
    return 0;
}
