#pragma once

#include <QJsonObject>
#include <QString>

/**
 * The workbook file as readers see it that are not ours (tests/support/read-workbook says how the
 * object looks). When they cannot read the file or complain about it, the complaint is logged as
 * critical and the object is empty.
 */
QJsonObject readWorkbook(const QString &path);

/** The same for one sheet alone; `index` counts from 0. */
QJsonObject readSheet(const QString &path, int index = 0);
