#pragma once

#include "tool/finding.h"
#include "tool/schemas.h"

struct SchemaCheck {
    QVector<Finding> findings;
    bool isEnabled = false; ///< it has a report that is switched on
};

/// What one schema must have for the reports that are switched on in it. Nothing is written.
SchemaCheck checkSchema(Schemas &schemas, const QString &token);
