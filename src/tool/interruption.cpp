#include "tool/interruption.h"

#include <csignal>

namespace
{

constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int shellBase = 128;

// All that a handler may safely write to.
volatile std::sig_atomic_t noted = 0;

extern "C" void note(int number)
{
    noted = number;
    // A second signal kills at once, whatever hangs.
    for (const int one : signals)
        std::signal(one, SIG_DFL);
}

} // namespace

Interruption::Interruption()
{
    noted = 0;
    for (const int number : signals) {
        // nohup, or a shell that put the program into the background.
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
