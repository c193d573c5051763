#include "reports/dailyattenoptions.h"

#include "reports/storedoption.h"

DailyAttenOptions DailyAttenOptions::read(const ZasDbSettings &settings)
{
    static const std::vector<StoredOption<DailyAttenOptions>> table{
        {"dattenIsTimeDec", &DailyAttenOptions::decimalTime},
        {"dattenIsMinusSign", &DailyAttenOptions::minusSign},
        {"dattenInters", &DailyAttenOptions::interruptions},
        {"advancedOvertime", &DailyAttenOptions::advancedOvertime},
        {"exportUseXLSX", &DailyAttenOptions::format},
        {"dattenHomeBranch", &DailyAttenOptions::homeBranch},
    };
    return readOptions(table, settings);
}
