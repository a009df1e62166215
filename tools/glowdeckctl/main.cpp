#include "CtlArguments.h"
#include "CtlCommands.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

void write(std::FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("glowdeckctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GLOWDECK_VERSION));

    const CtlArguments arguments = CtlArguments::parse(QCoreApplication::arguments());
    switch (arguments.outcome()) {
    case CtlArguments::Outcome::help:
        write(stdout, CtlArguments::usage());
        return exitDone;
    case CtlArguments::Outcome::version:
        write(stdout, QStringLiteral("glowdeckctl %1\n").arg(QCoreApplication::applicationVersion()));
        return exitDone;
    case CtlArguments::Outcome::invalid:
        write(stderr, QStringLiteral("glowdeckctl: %1\n\n%2").arg(arguments.error(), CtlArguments::usage()));
        return exitUsage;
    case CtlArguments::Outcome::run:
        break;
    }

    CtlCommands commands(arguments.invocation());
    QObject::connect(&commands, &CtlCommands::finished, &app, &QCoreApplication::exit);
    // Started from the event loop, so that even an immediate finish reaches a running loop.
    QMetaObject::invokeMethod(&commands, &CtlCommands::start, Qt::QueuedConnection);
    return app.exec();
}
