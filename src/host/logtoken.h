#pragma once

#include <QString>

/// Returns the token of the schema if the calling thread is a worker's, otherwise an empty text.
/// The plug-in names each worker's thread after the schema's token.
QString tokenOfThread();
