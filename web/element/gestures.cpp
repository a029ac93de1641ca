#include <emscripten/emscripten.h>

#include <cstddef>
#include <string>
#include <vector>

#include "hostkit/gesture_script.h"
#include "hostkit/host_error.h"
#include "web/element/event_numbers.h"

// Second WebAssembly module of the custom element. It converts gesture scripts between text and numbers (see
// event_numbers.h). The element loads this module when it plays or records a gesture for the first time. Strings are
// UTF-8. A result is valid until the next call.

namespace {

std::string text;
std::vector<double> numbers;

}  // namespace

extern "C" {

/// Parses the text of a gesture script. Returns a message about its first fault, or an empty string. Afterwards,
/// scriptNumbers returns the script as numbers.
EMSCRIPTEN_KEEPALIVE const char* readScript(const char* script) {
    try {
        numbers = web::numbersOf(hostkit::parseGestureScript(script, "gesture"));
        text.clear();
    } catch (const hostkit::HostError& error) {
        text = error.what();
    }
    return text.c_str();
}

EMSCRIPTEN_KEEPALIVE const double* scriptNumbers() {
    return numbers.data();
}

EMSCRIPTEN_KEEPALIVE int scriptLength() {
    return static_cast<int>(numbers.size());
}

/// Returns the text of a gesture script that is given as numbers.
EMSCRIPTEN_KEEPALIVE const char* writeScript(const double* script, std::size_t count) {
    text = hostkit::writeGestureScript(web::scriptOf({script, count}));
    return text.c_str();
}
}
