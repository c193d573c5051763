#pragma once

#include "tool/finding.h"
#include "tool/schemas.h"

/// The result of checkSchema().
struct SchemaCheck {
    QVector<Finding> findings;
    bool isEnabled = false;  ///< whether the schema has an enabled report
    bool isComplete = false; ///< otherwise the connection was lost, which is a finding too
};

/**
 * Checks whether a schema has what its enabled reports need. Writes nothing, and of the data reads
 * only the settings and the sizes of queued mails.
 *
 * A schema that cannot be reached is a finding like any other. The connection is closed at the end;
 * `schemas` must be open.
 */
SchemaCheck checkSchema(const Schemas &schemas, const QString &token);
