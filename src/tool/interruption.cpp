#include "tool/interruption.h"

#include <csignal>

namespace
{

constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int shellBase = 128;

// The only type that a signal handler may write to.
volatile std::sig_atomic_t noted = 0;

extern "C" void note(int number)
{
    noted = number;
    // The next signal kills the program, even if it hangs.
    for (const int one : signals)
        std::signal(one, SIG_DFL);
}

} // namespace

Interruption::Interruption()
{
    noted = 0;
    for (const int number : signals) {
        // The program was started by nohup, or in the background by a shell: keep ignoring the
        // signal.
        if (std::signal(number, note) == SIG_IGN)
            std::signal(number, SIG_IGN);
    }
}

Interruption::~Interruption()
{
    for (const int number : signals) {
        if (std::signal(number, SIG_DFL) == SIG_IGN)
            std::signal(number, SIG_IGN);
    }
    noted = 0;
}

bool Interruption::isRequested()
{
    return noted != 0;
}

int Interruption::status()
{
    return shellBase + noted;
}
