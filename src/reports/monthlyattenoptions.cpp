#include "reports/monthlyattenoptions.h"

const std::vector<StoredOption<MonthlyAttenOptions>> &MonthlyAttenOptions::table()
{
    static const std::vector<StoredOption<MonthlyAttenOptions>> options{
        {"advancedOvertime", &MonthlyAttenOptions::advancedOvertime},
        {"monthAttenUsePamID", &MonthlyAttenOptions::payrollNumber},
        {"monthAttenInterrupts", &MonthlyAttenOptions::extraShortcuts},
    };
    return options;
}
