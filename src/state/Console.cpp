#include "state/Console.h"

#include <cstdio>

namespace {

LineSink& lineSink()
{
    static LineSink sink;
    return sink;
}

} // namespace

void printLine(const QString& line)
{
    const QByteArray text = line.toUtf8();
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
    if (lineSink())
        lineSink()(line);
}

LineSink setLineSink(LineSink sink)
{
    return std::exchange(lineSink(), std::move(sink));
}
