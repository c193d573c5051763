#include "reports/reportmail.h"

#include "db/zasdbsettings.h"
#include "reports/bookformat.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeDatabase>

#include <limits>

#include <fcntl.h>
#include <unistd.h>

namespace
{

// A multiple of 3 bytes, so that Base64 pads only the last chunk.
constexpr qint64 chunkBytes = 3 * qint64(0x8000);

QString mimeTypeName(const QString &path)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    if (type.isValid() && !type.isDefault())
        return type.name();
    return bookFormatOf(path).mimeType; // a system without a MIME database
}

/// The descriptor of a file open for reading. The destructor closes it, because the sanitizers do
/// not notice when Qt closes a descriptor, and would mistake the next file with the same number for
/// this one.
struct Descriptor {
    // Encodes the path as UTF-8 in every locale, as the workbook engine does.
    explicit Descriptor(const QString &path)
        : number(::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC))
    {
    }
    ~Descriptor()
    {
        if (number != -1)
            ::close(number);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    const int number; ///< -1 if the file cannot be opened
};

} // namespace

QString reportSender(const ZasDbSettings &settings)
{
    return settings
        .variableGet(QStringLiteral("globalEmail"), QStringLiteral(AUTOREPORT_DEFAULT_SENDER))
        .toString();
}

QByteArray attachmentDocument(const QString &path)
{
    const Descriptor descriptor(path);
    QFile file;
    if (descriptor.number == -1 ||
        !file.open(descriptor.number, QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        return QByteArray();
    const QJsonObject attachment{{QStringLiteral("type"), mimeTypeName(path)},
                                 {QStringLiteral("name"), QFileInfo(path).fileName()},
                                 {QStringLiteral("content"), QString()}};
    const QJsonObject root{{QStringLiteral("attachments"), QJsonArray{attachment}}};
    const QByteArray frame = QJsonDocument(root).toJson(QJsonDocument::Indented);

    // The file is inserted into the finished JSON text. As a QJsonValue, it would be in memory
    // several times, partly as UTF-16. Qt sorts the keys of an object, so "content" is the first
    // key of the attachment.
    const QByteArray opening = QByteArrayLiteral("\"content\": \"");
    const int place = frame.indexOf(opening) + opening.size();
    const qint64 bytes = frame.size() + (file.size() / 3 + 1) * 4;
    if (bytes > std::numeric_limits<int>::max())
        return QByteArray();
    QByteArray document;
    document.reserve(static_cast<int>(bytes));
    document += frame.left(place);
    while (!file.atEnd()) {
        const QByteArray chunk = file.read(chunkBytes);
        if (chunk.isEmpty())
            return QByteArray();
        document += chunk.toBase64();
    }
    return document += frame.mid(place);
}
