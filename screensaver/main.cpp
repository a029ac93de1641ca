#include <cstdio>
#include <exception>

#include "app/text.h"
#include "screensaver/options.h"
#include "screensaver/saver.h"

int main(int argc, char** argv) {
    try {
        if (const auto options = saver::parseOptions(argc, argv)) {
            saver::run(*options);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-screensaver: %s\n", app::oneLine(error.what()).c_str());
        return 2;
    }
}
