#pragma once

#include "tool/finding.h"
#include "tool/schemas.h"

struct SchemaCheck {
    QVector<Finding> findings;
    bool isEnabled = false;  ///< it has a report that is switched on
    bool isComplete = false; ///< else it could not be asked to the end, which is a finding too
};

/**
 * What one schema must have for the reports that are switched on in it. Nothing is written, and of
 * the data only the settings and the queue's sizes are read.
 *
 * A schema that cannot be reached is a finding like any other. The connection is closed at the end;
 * `schemas` must be open.
 */
SchemaCheck checkSchema(const Schemas &schemas, const QString &token);
