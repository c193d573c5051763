#pragma once

#include <QStringList>

/// The language of the reports' texts; Slovak is the one they are written in.
namespace Language
{

/// "sk" first, then those that there is a translation for.
QStringList known();

/// From now on, for the plug-in's module too. To be called once, on the main thread.
void install(const QString &language);

} // namespace Language
