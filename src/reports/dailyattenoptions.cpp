#include "reports/dailyattenoptions.h"

#include "db/zasdbsettings.h"
#include "reports/storedoption.h"

namespace
{

const std::vector<StoredOption<DailyAttenOptions>> &table()
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

} // namespace

QStringList DailyAttenOptions::keys()
{
    return keysOf(table());
}

DailyAttenOptions DailyAttenOptions::of(const QMap<QString, QVariant> &values)
{
    return optionsFromValues(table(), values);
}

DailyAttenOptions DailyAttenOptions::read(const ZasDbSettings &settings)
{
    return of(settings.variableGetMultiple(keys()));
}
