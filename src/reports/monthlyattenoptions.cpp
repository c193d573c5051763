#include "reports/monthlyattenoptions.h"

#include "db/zasdbsettings.h"
#include "reports/storedoption.h"

namespace
{

const std::vector<StoredOption<MonthlyAttenOptions>> &table()
{
    static const std::vector<StoredOption<MonthlyAttenOptions>> options{
        {"advancedOvertime", &MonthlyAttenOptions::advancedOvertime},
        {"monthAttenUsePamID", &MonthlyAttenOptions::payrollNumber},
        {"monthAttenInterrupts", &MonthlyAttenOptions::extraShortcuts},
    };
    return options;
}

} // namespace

QStringList MonthlyAttenOptions::keys()
{
    return keysOf(table());
}

MonthlyAttenOptions MonthlyAttenOptions::of(const QMap<QString, QVariant> &values)
{
    return optionsFromValues(table(), values);
}

MonthlyAttenOptions MonthlyAttenOptions::read(const ZasDbSettings &settings)
{
    return of(settings.variableGetMultiple(keys()));
}
