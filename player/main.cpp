#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>

#include "app/text.h"
#include "desktop/failure.h"
#include "player/options.h"
#include "player/run.h"
#include "player/window/window_player.h"

int main(int argc, char** argv) {
    try {
        if (const auto options = player::parseOptions(argc, argv)) {
            player::wantsWindow(*options) ? player::runWindow(*options) : player::run(*options);
        }
        if (std::fflush(stdout) != 0 && errno != EPIPE) {
            throw desktop::Failure("cannot write to standard output",
                                   std::generic_category().message(errno));
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-player: %s\n", app::oneLine(error.what()).c_str());
        return 2;
    }
}
