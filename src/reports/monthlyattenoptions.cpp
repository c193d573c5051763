#include "reports/monthlyattenoptions.h"

#include "reports/storedoption.h"

MonthlyAttenOptions MonthlyAttenOptions::read(const ZasDbSettings &settings)
{
    static const std::vector<StoredOption<MonthlyAttenOptions>> table{
        {"advancedOvertime", &MonthlyAttenOptions::advancedOvertime},
        {"monthAttenUsePamID", &MonthlyAttenOptions::payrollNumber},
        {"monthAttenInterrupts", &MonthlyAttenOptions::extraShortcuts},
    };
    return readOptions(table, settings);
}
