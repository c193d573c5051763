#include "tool/storedsettings.h"

#include "common/zas.h"
#include "db/varstable.h"

namespace
{

StoredSettings settingsIn(const VarsTable::Values &values, const ReportKind &kind)
{
    const QString prefix = QLatin1String(kind.prefix);
    StoredSettings stored;
    stored.settings = kind.settingsOf(values);
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        if (entry.key().startsWith(prefix))
            stored.values.insert(entry.key().mid(prefix.size()), entry.value());
    }
    return stored;
}

} // namespace

Result<StoredSettings> StoredSettings::read(const QSqlDatabase &database, const ReportKind &kind)
{
    const auto found = VarsTable(database).valuesWithPrefix(QLatin1String(kind.prefix));
    if (!found.isOk())
        return Error{found.error().simplified(), found.errorCode()};
    return settingsIn(found.value(), kind);
}

Result<QVector<StoredSettings>> StoredSettings::readAll(const QSqlDatabase &database)
{
    // What the prefixes of all reports begin with.
    const auto found = VarsTable(database).valuesWithPrefix(QStringLiteral("autoReport."));
    if (!found.isOk())
        return Error{found.error().simplified(), found.errorCode()};
    QVector<StoredSettings> all;
    for (const ReportKind *kind : reportKinds())
        all.append(settingsIn(found.value(), *kind));
    return all;
}

Recipients::Recipients(const QStringList &written)
{
    for (const QString &address : recipientsToMail(written))
        (ZAS::validEmail(address) ? wellFormed : malformed).append(address);
}
