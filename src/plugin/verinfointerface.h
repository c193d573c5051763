#pragma once

#include <QMap>
#include <QString>
#include <QtPlugin>

/// A plug-in's version information, which the host shows: texts by short keys.
class VerInfoInterface
{
public:
    virtual ~VerInfoInterface() = default;
    virtual QMap<QString, QString> getVerInfo() const = 0;
};

Q_DECLARE_INTERFACE(VerInfoInterface, "com.velmora.VerInfoInterface")
