#include "tool/storedsettings.h"

#include "common/zas.h"
#include "db/varstable.h"

namespace
{

constexpr const char *senderKey = "globalEmail";

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

/// Ignores the key's case, as the server does when it compares keys for the reports.
QVariant senderIn(const VarsTable::Values &values)
{
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        if (entry.key().compare(QLatin1String(senderKey), Qt::CaseInsensitive) == 0)
            return entry.value();
    }
    return {};
}

} // namespace

Result<StoredSettings> StoredSettings::read(const QSqlDatabase &database, const ReportKind &kind)
{
    const auto found = VarsTable(database).valuesWithPrefix(QLatin1String(kind.prefix));
    if (!found.isOk())
        return Error{found.error().simplified(), found.errorCode()};
    return settingsIn(found.value(), kind);
}

QString SchemaSettings::statement()
{
    QStringList others{QLatin1String(senderKey)};
    for (const ReportKind *kind : reportKinds())
        others += kind->optionKeys();
    // The prefixes of all reports begin with this text.
    return VarsTable::prefixStatement(QStringLiteral("autoReport."), others);
}

SchemaSettings SchemaSettings::of(const QVector<QVector<QVariant>> &rows)
{
    SchemaSettings all;
    for (const QVector<QVariant> &row : rows)
        all.options.insert(row.at(0).toString(), row.at(1));
    all.sender = senderIn(all.options);
    for (const ReportKind *kind : reportKinds())
        all.reports.append(settingsIn(all.options, *kind));
    return all;
}

Recipients::Recipients(const QStringList &written)
{
    for (const QString &address : recipientsToMail(written))
        (ZAS::validEmail(address) ? wellFormed : malformed).append(address);
}
