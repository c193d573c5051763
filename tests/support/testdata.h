#pragma once

#include <QFile>
#include <QTest>

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

/// Adds the columns of a test's data: the types are in the order of the names.
template <typename... Types, typename... Names>
void addColumns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

/// Adds a row of a test's data. A call, because clang-format puts literals joined by << on separate
/// lines.
template <typename... Values>
void addRow(const char *name, const Values &...values)
{
    (QTest::newRow(name) << ... << values);
}
