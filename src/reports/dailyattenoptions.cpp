#include "reports/dailyattenoptions.h"

const std::vector<StoredOption<DailyAttenOptions>> &DailyAttenOptions::table()
{
    static const std::vector<StoredOption<DailyAttenOptions>> options{
        {"dattenIsTimeDec", &DailyAttenOptions::decimalTime},
        {"dattenIsMinusSign", &DailyAttenOptions::minusSign},
        {"dattenInters", &DailyAttenOptions::interruptions},
        {"advancedOvertime", &DailyAttenOptions::advancedOvertime},
        {"exportUseXLSX", &DailyAttenOptions::format},
        {"dattenHomeBranch", &DailyAttenOptions::homeBranch},
    };
    return options;
}
