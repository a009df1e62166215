#include "app/Launcher.h"

#include "bridge/BridgeNetwork.h"

#include "app/AppDelegate.h"
#include "app/DemoMode.h"
#include "app/SingleInstance.h"
#include "app/SleepWatcher.h"
#include "state/JsonSettingsStore.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>

#include <cstdio>
#include <optional>

namespace {

QStringList argumentList(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

bool hasDisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    // Platforms that draw nowhere (offscreen, minimal, vnc...) need no session; only xcb and wayland do.
    if (!platform.isEmpty() && !platform.startsWith("xcb") && !platform.startsWith("wayland"))
        return true;
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

/// The application icon from the icon theme; for a program installed where the desktop does not look for
/// icons (a private prefix, an unpacked package), the one installed beside it. None in the build tree.
QIcon applicationIcon()
{
    const QString besideProgram =
        QCoreApplication::applicationDirPath() +
        QStringLiteral("/../share/icons/hicolor/scalable/apps/%1.svg").arg(AppDelegate::applicationId);
    return QIcon::fromTheme(AppDelegate::applicationId,
                            QFileInfo::exists(besideProgram) ? QIcon(besideProgram) : QIcon());
}

} // namespace

int runGlowdeck(int argc, char** argv, const QElapsedTimer& startupClock)
{
    QCoreApplication::setApplicationName(QStringLiteral("Glowdeck"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GLOWDECK_VERSION));

    // Parsed before the application object exists: without a display, creating it would abort.
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Glowdeck %1: Philips Hue lights from the system tray.").arg(GLOWDECK_VERSION));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption settingsOption(QStringLiteral("settings"),
                                            QStringLiteral("Read and write the settings in <file>."),
                                            QStringLiteral("file"));
    const QCommandLineOption demoOption(
        QStringLiteral("demo"), QStringLiteral("Run against a simulated bridge, with settings of its own."));
    const QCommandLineOption trustRootOption(
        QStringLiteral("trust-root"),
        QStringLiteral(
            "Also trust the authority in <file> (PEM) for the bridge's certificate, beside the bridge "
            "maker's own (for a test bridge)."),
        QStringLiteral("file"));
    const QCommandLineOption windowOption(
        QStringLiteral("window"),
        QStringLiteral("Show Glowdeck in a window of its own rather than behind a tray icon (as on a desktop "
                       "without a system tray)."));
    parser.addOption(settingsOption);
    parser.addOption(demoOption);
    parser.addOption(windowOption);
    parser.addOption(trustRootOption);
    if (!parser.parse(argumentList(argc, argv))) {
        std::fprintf(stderr, "%s\nTry glowdeck --help.\n", qPrintable(parser.errorText()));
        return 2;
    }
    if (parser.isSet(helpOption)) {
        // Without an application object Qt cannot tell the program's name.
        QString help = parser.helpText();
        help.replace(QStringLiteral("<executable_name>"), QStringLiteral("glowdeck"));
        std::fputs(qPrintable(help), stdout);
        return 0;
    }
    if (parser.isSet(versionOption))
        parser.showVersion();
    if (parser.isSet(QStringLiteral("help-all"))) {
        // Qt names its own options only to an application object; one on the offscreen platform needs no
        // display. process() prints the help with them and exits.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QApplication app(argc, argv);
        parser.process(app);
    }

    if (!hasDisplay()) {
        std::fprintf(stderr, "Glowdeck needs a graphical desktop session. Without one, use glowdeckctl (see "
                             "README.md).\n");
        return 1;
    }

    if (parser.isSet(demoOption))
        DemoMode::switchOffOutsideAddresses();

    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // The desktop matches the program's windows to its desktop entry by this name (the Wayland app id).
    QGuiApplication::setDesktopFileName(AppDelegate::applicationId);
    QApplication::setWindowIcon(applicationIcon());

    // Declared after the application object, so the simulated bridge goes before it.
    std::optional<DemoMode> demo;
    if (parser.isSet(demoOption))
        demo.emplace();

    AppDelegateOptions options;
    if (demo) {
        if (!demo->start())
            return 1;
        options.settingsFile = demo->settingsFile();
        options.crashFolder = demo->crashFolder();
        options.loginItemFolder = demo->loginItemFolder();
    } else {
        options.settingsFile = parser.isSet(settingsOption) ? parser.value(settingsOption)
                               : qEnvironmentVariableIsEmpty("GLOWDECK_SETTINGS")
                                   ? JsonSettingsStore::defaultFileName()
                                   : qEnvironmentVariable("GLOWDECK_SETTINGS");
        options.crashFolder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
                              QStringLiteral("/crashes");
    }
    QStringList trustFiles = parser.values(trustRootOption);
    if (qEnvironmentVariableIsSet("GLOWDECK_BRIDGE_TRUST_ROOTS"))
        trustFiles.prepend(qEnvironmentVariable("GLOWDECK_BRIDGE_TRUST_ROOTS"));
    for (const QString& file : trustFiles) {
        QString problem;
        const QList<QSslCertificate> roots = BridgeNetwork::readRoots(file, &problem);
        if (!problem.isEmpty()) {
            std::fprintf(stderr, "glowdeck: --trust-root: %s\n", qPrintable(problem));
            return 2;
        }
        // Said every time: an extra authority can vouch for any bridge, so it must never be there unnoticed.
        for (const QSslCertificate& root : roots)
            std::fprintf(stdout, "glowdeck: also trusting %s (%s) for the bridge's certificate\n",
                         qPrintable(root.subjectInfo(QSslCertificate::CommonName).value(0)),
                         qPrintable(file));
        options.bridgeTrustRoots += roots;
    }
    if (demo)
        options.bridgeTrustRoots += demo->trustRoots();
    options.links = ProductLinks::fromEnvironment();
    options.windowMode = parser.isSet(windowOption);
    options.publishOnSessionBus = true;
    if (qEnvironmentVariableIsSet("GLOWDECK_TRACE_STARTUP"))
        options.startupClock = &startupClock;

    // One instance per settings file: a second start hands over to the first (the demo's file is its own).
    SingleInstance instance(options.settingsFile);
    switch (instance.claim()) {
    case SingleInstance::Claim::first:
        break;
    case SingleInstance::Claim::handedOver:
        std::fprintf(stdout, "glowdeck: already running with %s; its window was opened.\n",
                     qPrintable(QDir::toNativeSeparators(options.settingsFile)));
        return 0;
    case SingleInstance::Claim::unanswered:
        std::fprintf(stderr,
                     "glowdeck: another Glowdeck holds %s but does not answer; end it first (or use "
                     "--settings FILE).\n",
                     qPrintable(QDir::toNativeSeparators(options.settingsFile)));
        return 1;
    }

    AppDelegate delegate(std::move(options), createSleepWatcher());
    QObject::connect(&instance, &SingleInstance::openRequested, &delegate,
                     &AppDelegate::revealDropDownWindow);
    delegate.start();
    return QApplication::exec();
}
