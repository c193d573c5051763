#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

/**
 * A row of a schema's table `emails`. Times are Unix seconds.
 */
struct MailRecord {
    uint mid = 0;                  ///< 0: not stored or not found
    QChar type = QLatin1Char('E'); ///< the null character is SQL NULL
    QString status;                ///< "Q": waiting for the product's sender
    QString from;
    QString to;
    QString subject;
    QString body;
    uint created = 0; ///< set by the server when the mail is queued
    uint sent = 0;    ///< written by the sender, like `done`
    uint done = 0;
    uint aid = 0;    ///< administrator, 0 for none
    uint uid = 0;    ///< person, 0 for none
    QByteArray data; ///< JSON document with the attachments
};

Q_DECLARE_METATYPE(MailRecord)
