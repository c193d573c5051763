#pragma once

#include "db/zasdbsettings.h"
#include "reports/bookformat.h"

#include <QMap>
#include <QStringList>
#include <QTime>
#include <QVariant>

#include <functional>
#include <vector>

// Convert a stored value to the type of the member that receives it.

inline void readStored(const QVariant &stored, bool &value)
{
    value = stored.toBool();
}
inline void readStored(const QVariant &stored, int &value)
{
    value = stored.toInt();
}
inline void readStored(const QVariant &stored, qint64 &value)
{
    value = stored.toLongLong();
}
inline void readStored(const QVariant &stored, QString &value)
{
    value = stored.toString();
}
/// Splits the text at its commas. Drops empty parts; trims nothing.
inline void readStored(const QVariant &stored, QStringList &value)
{
    value = stored.toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
}
inline void readStored(const QVariant &stored, QTime &value)
{
    value = QTime::fromString(stored.toString());
}
inline void readStored(const QVariant &stored, const BookFormat *&value)
{
    value = stored.toBool() ? &xlsxFormat : &xlsFormat;
}

/// Returns the text that readStored() converts to `format`.
inline QString storedText(const BookFormat &format)
{
    return &format == &xlsxFormat ? QStringLiteral("1") : QStringLiteral("0");
}

/**
 * One key of the table `vars` and the member of `Options` that receives its value. If the key is
 * not stored, the member keeps its initial value.
 */
template <typename Options>
struct StoredOption {
    template <typename Value>
    StoredOption(const char *keyName, Value Options::*member)
        : key(QLatin1String(keyName))
        , read([member](const QVariant &stored, Options &options) {
            readStored(stored, options.*member);
        })
    {
    }

    QString key;
    std::function<void(const QVariant &, Options &)> read;
};

/// Returns the options of `table` that are stored in `values`, where `prefix` precedes every key.
/// All other options keep their initial values.
template <typename Options>
Options optionsFromValues(const std::vector<StoredOption<Options>> &table,
                          const QMap<QString, QVariant> &values, const QString &prefix = QString())
{
    Options options;
    for (const StoredOption<Options> &option : table) {
        const auto stored = values.constFind(prefix + option.key);
        if (stored != values.constEnd())
            option.read(*stored, options);
    }
    return options;
}

/// The base class of a report's options. `Options` is the derived class; its table() lists the
/// keys.
template <typename Options>
struct StoredOptions {
    /// Returns the keys under which the table `vars` holds the options.
    static QStringList keys()
    {
        QStringList keys;
        for (const StoredOption<Options> &option : Options::table())
            keys.append(option.key);
        return keys;
    }

    /// Returns the options stored in `values`. Options without a value keep their defaults.
    static Options of(const QMap<QString, QVariant> &values)
    {
        return optionsFromValues(Options::table(), values);
    }

    /// Reads the options with one statement.
    static Options read(const ZasDbSettings &settings)
    {
        return of(settings.variableGetMultiple(keys()));
    }
};
