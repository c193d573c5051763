#pragma once

#include "reports/reportgate.h"

#include <deque>

/// All places at the gate of the process. Reports that are due wait until open().
class FullGate
{
public:
    FullGate()
    {
        do {
            int polls = 0;
            places.emplace_back(ReportGate::ofProcess(), [&polls] { return polls++ > 0; });
        } while (places.back().isHeld());
        places.pop_back();
    }
    int size() const { return static_cast<int>(places.size()); }
    void open() { places.clear(); }

private:
    std::deque<ReportGate::Pass> places;
};
