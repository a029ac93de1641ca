#include "desktop/interrupt.h"

#include <csignal>
#include <initializer_list>

namespace desktop {
namespace {

volatile std::sig_atomic_t interrupted = 0;

/// Installs the handler of a signal. If the parent process made the program ignore the signal, as nohup does, the
/// signal stays ignored.
void note(int number) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) {
        return;
    }
    action = {};
    action.sa_handler = [](int) { interrupted = 1; };
    // Without SA_RESTART, the signal ends a blocking read from a pipe.
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

}  // namespace desktop
