#pragma once

#include <QString>

#include <functional>

/// Diagnostic lines go to standard output, one per line, flushed so they interleave correctly with a parent
/// process reading them.
void printLine(const QString& line);

/// Where printed lines go besides standard output; tests install one to read them. Returns the previous one.
using LineSink = std::function<void(const QString&)>;
LineSink setLineSink(LineSink sink);
