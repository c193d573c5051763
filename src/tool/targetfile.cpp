#include "tool/targetfile.h"

#include "tool/output.h"

#include <QFileInfo>

bool isUsableTarget(const QString &path)
{
    const QFileInfo target(path); // follows links
    if (!target.exists() || target.isFile())
        return true;
    Output::error(QStringLiteral("cannot write '%1': it is not a regular file").arg(path));
    return false;
}
