#pragma once

#include <QtTest>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true; ///< slow, and keeps memory back
#else
constexpr bool sanitized = false;
#endif

/// Time limit for what comes soon, even on a loaded machine.
constexpr int patienceMs = 60000;

/// Returns the content of a file that must exist.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("test bench: cannot read %s", qUtf8Printable(path));
    return file.readAll();
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("test bench: cannot write %s", qUtf8Printable(path));
}

/// Returns whether the running test function's data begins; true once.
inline bool beginsData()
{
    static QByteArray function;
    return std::exchange(function, QTest::currentTestFunction()) != QTest::currentTestFunction();
}

/// Adds named columns of a test's data, for QFETCH: the types are in the order of the names.
template <typename... Types, typename... Names>
void addColumns(Names... names)
{
    beginsData();
    (QTest::addColumn<Types>(names), ...);
}

/// The names of columns that have no other.
constexpr const char *columnNames[] = {"first", "second", "third", "fourth", "fifth", "sixth"};

/// The type of a column with such a value; literals are texts.
template <typename Value>
using ColumnType =
    std::conditional_t<std::is_same_v<std::decay_t<const Value>, const char *>, QString, Value>;

/// Adds a row of a test's data; the first one makes the columns, unless addColumns() did. A call,
/// because clang-format puts literals joined by << on separate lines.
template <typename... Values>
void addRow(const char *name, const Values &...values)
{
    const char *const *column = columnNames;
    if (beginsData())
        (QTest::addColumn<ColumnType<Values>>(*column++), ...);
    (QTest::newRow(name) << ... << values);
}

/// Returns the values of the current row, whose columns have no names.
template <typename... Types>
std::tuple<Types...> fetch()
{
    const char *const *column = columnNames;
    const auto next = [&column](int type) {
        return QTest::qData(*column++, type);
    };
    return {*static_cast<Types *>(next(qMetaTypeId<Types>()))...};
}
