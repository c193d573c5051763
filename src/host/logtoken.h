#pragma once

#include <QString>

/// If the calling thread is a worker's, returns the token of the worker's schema, otherwise an
/// empty text. The plug-in names each worker's thread after this token.
QString tokenOfThread();
