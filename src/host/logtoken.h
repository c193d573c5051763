#pragma once

#include <QString>

/// Returns the token of the schema whose worker the calling thread belongs to; empty for any other
/// thread. The plug-in names each worker's thread after its schema.
QString tokenOfThread();
