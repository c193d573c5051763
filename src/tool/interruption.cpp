#include "tool/interruption.h"

#include <csignal>

namespace
{

constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int shellBase = 128;

// Has the type to which a signal handler may write.
volatile std::sig_atomic_t noted = 0;

void resetUnlessIgnored(int number)
{
    if (std::signal(number, SIG_DFL) == SIG_IGN)
        std::signal(number, SIG_IGN);
}

extern "C" void note(int number)
{
    noted = number;
    // The next signal kills the program, even if it hangs.
    for (const int one : signals)
        resetUnlessIgnored(one);
}

} // namespace

Interruption::Interruption()
{
    noted = 0;
    for (const int number : signals) {
        // A signal that was ignored, as under nohup or in a background job, stays ignored.
        if (std::signal(number, note) == SIG_IGN)
            std::signal(number, SIG_IGN);
    }
}

Interruption::~Interruption()
{
    for (const int number : signals)
        resetUnlessIgnored(number);
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
