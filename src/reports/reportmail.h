#pragma once

#include <QByteArray>
#include <QString>

class ZasDbSettings;

/// Returns the sender of the schema's mails: the setting "globalEmail" or, if that is missing, the
/// default chosen at build time.
QString reportSender(const ZasDbSettings &settings);

/**
 * Returns a JSON document with the file at `path` as its only attachment. The document is empty if
 * the file cannot be read, or if it would be too large for a byte array.
 */
QByteArray attachmentDocument(const QString &path);
