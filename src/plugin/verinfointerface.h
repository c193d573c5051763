#pragma once

#include <QMap>
#include <QString>
#include <QtPlugin>

/// What the host shows of a plug-in's version: a map of short keys to texts.
class VerInfoInterface
{
public:
    virtual ~VerInfoInterface() = default;
    virtual QMap<QString, QString> getVerInfo() const = 0;
};

Q_DECLARE_INTERFACE(VerInfoInterface, "com.velmora.VerInfoInterface")
