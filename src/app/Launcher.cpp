#include "app/Launcher.h"

#include "bridge/BridgeNetwork.h"

#include "app/AppDelegate.h"
#include "app/DemoMode.h"
#include "app/SingleInstance.h"
#include "app/SleepWatcher.h"
#include "i18n/Translations.h"
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

/// Prints a line in the terminal's encoding.
void say(std::FILE* stream, const QString& line)
{
    std::fputs(qPrintable(line + u'\n'), stream);
}

} // namespace

int runGlowdeck(int argc, char** argv, const QElapsedTimer& startupClock)
{
    QCoreApplication::setApplicationName(QStringLiteral("Glowdeck"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GLOWDECK_VERSION));

    // Parsed before the graphical application object exists: without a display, creating it would abort. A
    // core one stands in meanwhile, for the help in the user's language.
    std::optional<QCoreApplication> parsing(std::in_place, argc, argv);
    Translations::install(QLocale::system());
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("Launcher", "Glowdeck %1: Philips Hue lights from the system tray.")
            .arg(QStringLiteral(GLOWDECK_VERSION)));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption settingsOption(
        QStringLiteral("settings"),
        QCoreApplication::translate("Launcher", "Read and write the settings in <file>."),
        QCoreApplication::translate("Launcher", "file"));
    const QCommandLineOption demoOption(
        QStringLiteral("demo"),
        QCoreApplication::translate("Launcher", "Run against a simulated bridge, with settings of its own."));
    const QCommandLineOption trustRootOption(
        QStringLiteral("trust-root"),
        QCoreApplication::translate("Launcher",
                                    "Also trust the authority in <file> (PEM) for the bridge's certificate, "
                                    "beside the bridge maker's own (for a test bridge)."),
        QCoreApplication::translate("Launcher", "file"));
    const QCommandLineOption windowOption(
        QStringLiteral("window"),
        QCoreApplication::translate("Launcher",
                                    "Show Glowdeck in a window of its own rather than behind a tray "
                                    "icon (as on a desktop without a system tray)."));
    parser.addOption(settingsOption);
    parser.addOption(demoOption);
    parser.addOption(windowOption);
    parser.addOption(trustRootOption);
    if (!parser.parse(argumentList(argc, argv))) {
        say(stderr,
            parser.errorText() + u'\n' + QCoreApplication::translate("Launcher", "Try glowdeck --help."));
        return 2;
    }
    if (parser.isSet(helpOption)) {
        // The usage line names the program as its manual page does, not by the path it was started from.
        QString help = parser.helpText();
        help.replace(QCoreApplication::arguments().constFirst() + u' ', QStringLiteral("glowdeck "));
        std::fputs(qPrintable(help), stdout);
        return 0;
    }
    if (parser.isSet(versionOption))
        parser.showVersion();
    if (parser.isSet(QStringLiteral("help-all"))) {
        // Qt names its own options only to an application object; one on the offscreen platform needs no
        // display. process() prints the help with them and exits.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        parsing.reset();
        QApplication app(argc, argv);
        Translations::install(QLocale::system());
        parser.process(app);
    }

    if (!hasDisplay()) {
        say(stderr,
            QCoreApplication::translate("Launcher", "Glowdeck needs a graphical desktop session. Without "
                                                    "one, use glowdeckctl (see README.md)."));
        return 1;
    }

    if (parser.isSet(demoOption))
        DemoMode::switchOffOutsideAddresses();

    parsing.reset();
    QApplication app(argc, argv);
    Translations::install(QLocale::system());
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
            say(stderr, QStringLiteral("glowdeck: --trust-root: ") + problem);
            return 2;
        }
        // Said every time: an extra authority can vouch for any bridge, so it must never be there unnoticed.
        for (const QSslCertificate& root : roots)
            say(stdout, QCoreApplication::translate(
                            "Launcher", "glowdeck: also trusting %1 (%2) for the bridge's certificate")
                            .arg(root.subjectInfo(QSslCertificate::CommonName).value(0), file));
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
        say(stdout, QCoreApplication::translate("Launcher",
                                                "glowdeck: already running with %1; its window was opened.")
                        .arg(QDir::toNativeSeparators(options.settingsFile)));
        return 0;
    case SingleInstance::Claim::unanswered:
        say(stderr,
            QCoreApplication::translate("Launcher", "glowdeck: another Glowdeck holds %1 but does not "
                                                    "answer; end it first (or use --settings FILE).")
                .arg(QDir::toNativeSeparators(options.settingsFile)));
        return 1;
    }

    AppDelegate delegate(std::move(options), createSleepWatcher());
    QObject::connect(&instance, &SingleInstance::openRequested, &delegate,
                     &AppDelegate::revealDropDownWindow);
    delegate.start();
    return QApplication::exec();
}
