#include "player/interrupt.h"

#include <csignal>

namespace player {
namespace {

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

void takeSignals() {
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    std::signal(SIGPIPE, SIG_IGN);
}

bool isInterrupted() {
    return interrupted != 0;
}

}  // namespace player
