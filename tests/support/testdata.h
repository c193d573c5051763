#pragma once

#include <QFile>
#include <QTest>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true; ///< slow, and keeps memory back
#else
constexpr bool sanitized = false;
#endif

/// For what comes as soon as a loaded machine gets to it.
constexpr int patienceMs = 60000;

/// The content of a file that must be there.
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

/// The columns of a test's data: their types in the order of their names.
template <typename... Types, typename... Names>
void addColumns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

/// One row of a test's data; as a call, since literals joined by << stand one to a line.
template <typename... Values>
void addRow(const char *name, const Values &...values)
{
    (QTest::newRow(name) << ... << values);
}
