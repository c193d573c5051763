#pragma once

#include <QString>

/// Returns the token of the schema if the calling thread is a worker's, otherwise an empty text.
/// The plug-in names each worker's thread after its schema.
QString tokenOfThread();
