#pragma once

#include "workbook/book.h"
#include "workbook/enums.h"
#include "workbook/font.h"
#include "workbook/format.h"
#include "workbook/sheet.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

/** Text of UTF-8 source code. */
inline QString operator""_q(const char *text, std::size_t bytes)
{
    return QString::fromUtf8(text, static_cast<int>(bytes));
}

using Sheet = libxl::ISheetT<wchar_t>;
using Format = libxl::IFormatT<wchar_t>;

/** A book of the kind that `extension` names ("xlsx"), in a folder of its own. */
class TestBook
{
public:
    explicit TestBook(const QString & /*extension*/)
        : book(xlCreateXMLBookW())
    {
    }
    ~TestBook() { book->release(); }
    TestBook(const TestBook &) = delete;
    TestBook &operator=(const TestBook &) = delete;

    libxl::IBookT<wchar_t> *operator->() const { return book; }

    [[nodiscard]] bool save(const QString &path) const
    {
        return book->save(path.toStdWString().c_str());
    }

private:
    libxl::IBookT<wchar_t> *book;
};

/** The complaints of a program about `arguments`; empty when it ended well and in silence. */
inline QByteArray complaints(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(120000))
        return "cannot run " + program.toUtf8();
    QByteArray said = process.readAll();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        said += " exit code " + QByteArray::number(process.exitCode());
    return said;
}

/** What our own check says about the file: orders, indexes and counts that readers let pass. */
inline QByteArray faultsOf(const QString &path)
{
    return complaints(QStringLiteral(AUTOREPORT_CHECK_WORKBOOK), {path});
}

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
