#include "CtlApp.h"
#include "CtlArguments.h"
#include "CtlCommands.h"
#include "CtlCommon.h"
#include "CtlConnectionCommands.h"
#include "CtlHotkeys.h"
#include "CtlWatch.h"

#include "i18n/Translations.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

/// Runs one command with `Commands` until it finishes; returns the exit status.
template <typename Commands>
int run(QCoreApplication& app, const CtlInvocation& invocation)
{
    Commands commands(invocation);
    QObject::connect(&commands, &Commands::finished, &app, &QCoreApplication::exit);
    // Started from the event loop, so that even an immediate finish reaches a running loop.
    QMetaObject::invokeMethod(&commands, &Commands::start, Qt::QueuedConnection);
    return app.exec();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("glowdeckctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GLOWDECK_VERSION));
    // In the user's language, as the tray application speaks it: LC_ALL, LC_MESSAGES and LANG decide.
    Translations::install(QLocale::system());

    const CtlArguments arguments = CtlArguments::parse(QCoreApplication::arguments());
    switch (arguments.outcome()) {
    case CtlArguments::Outcome::help:
        Ctl::write(stdout, CtlArguments::usage());
        return exitDone;
    case CtlArguments::Outcome::version:
        Ctl::write(stdout, QStringLiteral("glowdeckctl %1\n").arg(QCoreApplication::applicationVersion()));
        return exitDone;
    case CtlArguments::Outcome::invalid:
        Ctl::write(stderr, CtlArguments::refusal(arguments.error()));
        return exitUsage;
    case CtlArguments::Outcome::run:
        break;
    }

    const CtlInvocation& invocation = arguments.invocation();
    if (invocation.command == CtlCommand::hotkeys)
        return CtlHotkeys::run(invocation);
    if (invocation.command == CtlCommand::watch)
        return run<CtlWatch>(app, invocation);
    // While Glowdeck runs, its own queue sends the change and its window shows it; lists come from its state.
    if (CtlApp::serves(invocation))
        return CtlApp::run(invocation);
    if (CtlConnectionCommands::handles(invocation.command))
        return run<CtlConnectionCommands>(app, invocation);
    return run<CtlCommands>(app, invocation);
}
