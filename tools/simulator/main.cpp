#include "BridgeSimulator.h"
#include "SignalWatcher.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHostAddress>
#include <QMap>
#include <QRegularExpression>

#include <cstdio>

namespace {

// Exit codes: 0 done, 1 could not listen or write, 2 bad command line or home file.
constexpr int ExitFailure = 1;
constexpr int ExitBadInput = 2;

int fail(int code, const QString& message)
{
    std::fprintf(stderr, "glowdeck-simulator: %s\n", qPrintable(message));
    return code;
}

bool readNumber(const QString& text, int minimum, int maximum, int* value)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < minimum || number > maximum)
        return false;
    *value = number;
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("glowdeck-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GLOWDECK_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Simulates a Philips Hue bridge (version-1 REST interface, and its event stream over "
                       "HTTPS) on a local port."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption portOption(QStringLiteral("port"),
                                        QStringLiteral("Port to listen on (default 0: any free port)."),
                                        QStringLiteral("N"), QStringLiteral("0"));
    const QCommandLineOption bindOption(QStringLiteral("bind"),
                                        QStringLiteral("Address to listen on (default 127.0.0.1)."),
                                        QStringLiteral("ADDRESS"), QStringLiteral("127.0.0.1"));
    const QCommandLineOption homeOption(QStringLiteral("home"), QStringLiteral("Load the home from FILE."),
                                        QStringLiteral("FILE"));
    const QCommandLineOption saveOption(
        QStringLiteral("save-home"),
        QStringLiteral("Write the home (the default one, or the --home one) to FILE "
                       "and exit."),
        QStringLiteral("FILE"));
    const QCommandLineOption userOption(QStringLiteral("user"),
                                        QStringLiteral("Register the user NAME (may be repeated)."),
                                        QStringLiteral("NAME"));
    const QCommandLineOption linkOption(
        QStringLiteral("press-link-button"),
        QStringLiteral("Press the link button at start (pairing works for 30 s). Press it later with "
                       "SIGUSR1 or a POST to /__control/linkbutton from loopback."));
    const QCommandLineOption acceptOption(
        QStringLiteral("accept-pairing"),
        QStringLiteral("Accept every pairing request without the link button."));
    const QCommandLineOption latencyOption(QStringLiteral("latency"),
                                           QStringLiteral("Delay every answer by MS milliseconds."),
                                           QStringLiteral("MS"), QStringLiteral("0"));
    const QCommandLineOption verboseOption(QStringLiteral("verbose"),
                                           QStringLiteral("Print every request received."));
    const QCommandLineOption tlsPortOption(
        QStringLiteral("tls-port"), QStringLiteral("Serve HTTPS on port N as well (0: any free port)."),
        QStringLiteral("N"));
    const QCommandLineOption certificateOption(
        QStringLiteral("certificate"),
        QStringLiteral("The certificate HTTPS clients see: signed (default), self-signed, other-bridge, "
                       "expired or unknown-authority."),
        QStringLiteral("KIND"), QStringLiteral("signed"));
    const QCommandLineOption bridgeIdOption(QStringLiteral("bridge-id"),
                                            QStringLiteral("The bridge id (16 hexadecimal digits)."),
                                            QStringLiteral("ID"));
    const QCommandLineOption authorityOption(
        QStringLiteral("write-authority"),
        QStringLiteral("Write the authority that signs the certificate to FILE (PEM), for a client to "
                       "trust."),
        QStringLiteral("FILE"));
    const QCommandLineOption redirectOption(
        QStringLiteral("redirect-http"),
        QStringLiteral("Answer plain HTTP with 301 to HTTPS, as the newest bridge does."));
    const QCommandLineOption noHttpOption(QStringLiteral("no-http"),
                                          QStringLiteral("Serve HTTPS only (with --tls-port)."));
    const QCommandLineOption eventStreamOption(
        QStringLiteral("event-stream"),
        QStringLiteral("The event stream of HTTPS (GET /eventstream/clip/v2): normal (default: every change, "
                       "also those sent with POST /__control/external/<v1 path> from loopback), silent "
                       "(keep-alives only), off (404, as old firmware) or malformed (broken events)."),
        QStringLiteral("MODE"), QStringLiteral("normal"));
    const QCommandLineOption eventLifetimeOption(
        QStringLiteral("event-stream-lifetime"),
        QStringLiteral("End every event stream after N seconds, as busy bridges do (default 0: never)."),
        QStringLiteral("N"), QStringLiteral("0"));
    parser.addOptions({portOption, bindOption, homeOption, saveOption, userOption, linkOption, acceptOption,
                       latencyOption, verboseOption, tlsPortOption, certificateOption, bridgeIdOption,
                       authorityOption, redirectOption, noHttpOption, eventStreamOption,
                       eventLifetimeOption});
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(ExitBadInput, parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (parser.isSet(QStringLiteral("help-all")))
        parser.process(app); // prints the help with Qt's options and exits
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        return fail(ExitBadInput,
                    QStringLiteral("unexpected argument %1").arg(parser.positionalArguments().first()));

    int port = 0;
    if (!readNumber(parser.value(portOption), 0, 65535, &port))
        return fail(ExitBadInput, QStringLiteral("--port needs a number from 0 to 65535, not \"%1\"")
                                      .arg(parser.value(portOption)));
    int latency = 0;
    if (!readNumber(parser.value(latencyOption), 0, 600'000, &latency))
        return fail(ExitBadInput, QStringLiteral("--latency needs milliseconds from 0 to 600000, not \"%1\"")
                                      .arg(parser.value(latencyOption)));
    const QHostAddress address(parser.value(bindOption));
    if (address.isNull())
        return fail(ExitBadInput,
                    QStringLiteral("--bind needs an IP address, not \"%1\"").arg(parser.value(bindOption)));

    int tlsPort = -1;
    if (parser.isSet(tlsPortOption) && !readNumber(parser.value(tlsPortOption), 0, 65535, &tlsPort))
        return fail(ExitBadInput, QStringLiteral("--tls-port needs a number from 0 to 65535, not \"%1\"")
                                      .arg(parser.value(tlsPortOption)));
    if ((parser.isSet(noHttpOption) || parser.isSet(redirectOption) || parser.isSet(authorityOption) ||
         parser.isSet(eventStreamOption) || parser.isSet(eventLifetimeOption)) &&
        tlsPort < 0)
        return fail(ExitBadInput,
                    QStringLiteral("--no-http, --redirect-http, --write-authority, --event-stream "
                                   "and --event-stream-lifetime go with --tls-port"));
    const QMap<QString, BridgeSimulator::EventStreamMode> eventModes{
        {QStringLiteral("normal"), BridgeSimulator::EventStreamMode::Normal},
        {QStringLiteral("silent"), BridgeSimulator::EventStreamMode::Silent},
        {QStringLiteral("off"), BridgeSimulator::EventStreamMode::Off},
        {QStringLiteral("malformed"), BridgeSimulator::EventStreamMode::Malformed}};
    if (!eventModes.contains(parser.value(eventStreamOption)))
        return fail(ExitBadInput,
                    QStringLiteral("--event-stream is one of %1, not \"%2\"")
                        .arg(eventModes.keys().join(QStringLiteral(", ")), parser.value(eventStreamOption)));
    int eventLifetime = 0;
    if (!readNumber(parser.value(eventLifetimeOption), 0, 86'400, &eventLifetime))
        return fail(ExitBadInput,
                    QStringLiteral("--event-stream-lifetime needs seconds from 0 to 86400, not \"%1\"")
                        .arg(parser.value(eventLifetimeOption)));
    const QMap<QString, BridgeSimulator::CertificateKind> kinds{
        {QStringLiteral("signed"), BridgeSimulator::CertificateKind::Signed},
        {QStringLiteral("self-signed"), BridgeSimulator::CertificateKind::SelfSigned},
        {QStringLiteral("other-bridge"), BridgeSimulator::CertificateKind::OtherBridge},
        {QStringLiteral("expired"), BridgeSimulator::CertificateKind::Expired},
        {QStringLiteral("unknown-authority"), BridgeSimulator::CertificateKind::UnknownAuthority}};
    if (!kinds.contains(parser.value(certificateOption)))
        return fail(ExitBadInput,
                    QStringLiteral("--certificate is one of %1, not \"%2\"")
                        .arg(kinds.keys().join(QStringLiteral(", ")), parser.value(certificateOption)));
    static const QRegularExpression bridgeId(QStringLiteral("^[0-9A-Fa-f]{16}$"));
    if (parser.isSet(bridgeIdOption) && !bridgeId.match(parser.value(bridgeIdOption)).hasMatch())
        return fail(ExitBadInput, QStringLiteral("--bridge-id needs 16 hexadecimal digits, not \"%1\"")
                                      .arg(parser.value(bridgeIdOption)));

    BridgeSimulator simulator;
    QString error;
    if (parser.isSet(homeOption) && !simulator.loadHome(parser.value(homeOption), &error))
        return fail(ExitBadInput, error);
    // After the home file: the command line names the bridge even when the file does too.
    if (parser.isSet(bridgeIdOption))
        simulator.setBridgeId(parser.value(bridgeIdOption));
    for (const QString& user : parser.values(userOption)) {
        if (!simulator.registerUser(user, QStringLiteral("glowdeck#simulator")))
            return fail(ExitBadInput, QStringLiteral("--user \"%1\" is not a usable user name").arg(user));
    }
    if (parser.isSet(saveOption)) {
        if (!simulator.saveHome(parser.value(saveOption), &error))
            return fail(ExitFailure, error);
        return 0;
    }
    if (parser.isSet(linkOption))
        simulator.pressLinkButton();
    simulator.setAcceptPairingAtOnce(parser.isSet(acceptOption));
    simulator.setLatency(latency);
    // Nobody reads the recorded requests of the program, and a demo may run for hours.
    simulator.setRecording(false);
    if (parser.isSet(verboseOption)) {
        QObject::connect(&simulator, &BridgeSimulator::requestReceived, [](const SimulatedRequest& request) {
            std::printf("%s %s %s\n", request.method.constData(), qPrintable(request.path),
                        request.rawBody.left(200).constData());
            std::fflush(stdout);
        });
    }

    SignalWatcher signalWatcher(true);
    QObject::connect(&signalWatcher, &SignalWatcher::terminationRequested, &app, &QCoreApplication::quit);
    // The link button can be pressed while the simulator runs, as a real bridge's can.
    const auto sayPressed = [](const char* how) {
        std::printf("Link button pressed (%s): pairing works for the next 30 s\n", how);
        std::fflush(stdout);
    };
    QObject::connect(&signalWatcher, &SignalWatcher::user1Received, &simulator, [&] {
        simulator.pressLinkButton();
        sayPressed("SIGUSR1");
    });
    QObject::connect(&simulator, &BridgeSimulator::linkButtonPressedByRequest,
                     [&] { sayPressed("POST /__control/linkbutton"); });
    if (!parser.isSet(noHttpOption)) {
        if (!simulator.listen(address, quint16(port)))
            return fail(ExitFailure, simulator.errorString());
        std::printf("Hue bridge simulator listening on %s\n", qPrintable(simulator.hostAndPort()));
    }
    if (tlsPort >= 0) {
        if (!simulator.listenTls(address, quint16(tlsPort)))
            return fail(ExitFailure, simulator.errorString());
        simulator.setCertificate(kinds.value(parser.value(certificateOption)));
        simulator.setRedirectHttpToHttps(parser.isSet(redirectOption));
        simulator.setEventStreamMode(eventModes.value(parser.value(eventStreamOption)));
        simulator.setEventStreamLifetime(eventLifetime);
        if (parser.isSet(authorityOption) && !simulator.writeAuthority(parser.value(authorityOption), &error))
            return fail(ExitFailure, error);
        std::printf("Hue bridge simulator listening for HTTPS on %s (bridge %s)\n",
                    qPrintable(simulator.tlsHostAndPort()), qPrintable(simulator.bridgeId()));
    }
    std::fflush(stdout);
    return app.exec();
}
