#include "player/interrupt.h"

#include <csignal>
#include <initializer_list>

namespace player {
namespace {

volatile std::sig_atomic_t interrupted = 0;

/// A signal that whoever started the program had ignored, as nohup does, stays so.
void note(int number) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) {
        return;
    }
    action = {};
    action.sa_handler = [](int) { interrupted = 1; };
    // Without SA_RESTART: the wait for a pipe ends.
    sigaction(number, &action, nullptr);
}

}  // namespace

void handleSignals() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        note(number);
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool isInterrupted() {
    return interrupted != 0;
}

}  // namespace player
