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

// Whole groups of Base64, so that only the last chunk is padded.
constexpr qint64 chunkBytes = 3 * qint64(0x8000);

QString mimeTypeName(const QString &path)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    if (type.isValid() && !type.isDefault())
        return type.name();
    return bookFormatOf(path).mimeType; // a system without a MIME database
}

/// A file open for reading. Closed here and not by Qt, where the sanitizers would not see it and
/// take the next file of that number for the same.
struct Descriptor {
    // Opened as the engine names it: in UTF-8, whatever the process's locale.
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

    const int number; ///< -1 if it cannot be opened
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

    // The file goes straight into its place: as a value of the document it would be in memory
    // several times over, half of them in wide characters. Keys are sorted, so it comes first.
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
