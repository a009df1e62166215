#include "BridgeSimulator.h"
#include "SignalWatcher.h"

#include "i18n/Translations.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHostAddress>
#include <QLocale>
#include <QMap>
#include <QRegularExpression>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

// Exit codes: 0 done, 1 could not listen or write, 2 bad command line or home file.
constexpr int ExitFailure = 1;
constexpr int ExitBadInput = 2;

int fail(int code, const QString& message)
{
    std::fprintf(stderr, "glowdeck-simulator: %s\n", qPrintable(message));
    return code;
}

// A house with more bridges than this is not one to try a program with.
constexpr int MaximumBridges = 16;

bool readNumber(const QString& text, int minimum, int maximum, int* value)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < minimum || number > maximum)
        return false;
    *value = number;
    return true;
}

/// The values of an option that each bridge may have its own of: given once, every bridge takes it; given
/// once per bridge, each takes its own, in order; not given, @p fallback for every bridge. Anything else
/// says why in @p error.
bool readPerBridge(const QCommandLineParser& parser, const QCommandLineOption& option, int bridges,
                   const QString& fallback, QStringList* values, QString* error)
{
    const QStringList given = parser.values(option);
    if (given.size() > 1 && given.size() != bridges) {
        *error = QCoreApplication::translate(
                     "glowdeck-simulator",
                     "--%1 takes one value for every bridge, or one for each: %2 given for %n bridges",
                     nullptr, bridges)
                     .arg(option.names().constFirst())
                     .arg(given.size());
        return false;
    }
    values->clear();
    for (int i = 0; i < bridges; ++i)
        values->append(given.isEmpty() ? fallback : given.at(given.size() == 1 ? 0 : i));
    return true;
}

/// The port of bridge @p index from the values readPerBridge() gave: a port given once for several bridges is
/// the first of a row, one per bridge (0 stays 0: any free port).
bool readPort(const QCommandLineOption& option, const QCommandLineParser& parser, const QStringList& values,
              int index, int* port, QString* error)
{
    const QString name = option.names().constFirst();
    const int step = parser.values(option).size() == 1 ? index : 0;
    if (!readNumber(values.at(index), 0, 65535, port)) {
        *error = QCoreApplication::translate("glowdeck-simulator",
                                             "--%1 needs a number from 0 to 65535, not \"%2\"")
                     .arg(name, values.at(index));
        return false;
    }
    if (*port != 0 && *port + step > 65535) {
        // A named count: lupdate passes over a translation whose count is an expression.
        const int row = step + 1;
        *error = QCoreApplication::translate("glowdeck-simulator",
                                             "--%1 %2 leaves no room for a row of %n ports", nullptr, row)
                     .arg(name, values.at(index));
        return false;
    }
    *port += *port != 0 ? step : 0;
    return true;
}

/// The bridge id a further bridge of the house gets: its floor's, with the last byte moved on by @p step, so
/// that the third bridge is not the first one again.
QString furtherBridgeId(const QString& floorId, int step)
{
    bool ok = false;
    const int last = floorId.right(2).toInt(&ok, 16);
    if (!ok || floorId.size() != 16)
        return floorId;
    return floorId.left(14) +
           QStringLiteral("%1").arg((last + step) % 256, 2, 16, QLatin1Char('0')).toUpper();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("glowdeck-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(GLOWDECK_VERSION));
    // Its help, start-up lines and usage errors in the user's language (LC_ALL, LC_MESSAGES, LANG), as
    // glowdeckctl's; its answers stay the bridge's, in English, as a real bridge's are.
    Translations::install(QLocale::system());

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "glowdeck-simulator",
        "Simulates Philips Hue bridges (version-1 REST interface; version-2 interface and "
        "event stream over HTTPS) on local ports. The options marked [each] apply to every bridge when given "
        "once, or to each bridge in turn when given once per bridge."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption bridgesOption(
        QStringLiteral("bridges"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Run N bridges (1 to %1; default: one per --bridge-id, else 1), each with its own id, "
            "ports, home, users and event stream: the first on the ground floor's default home, "
            "the second on the upper floor's.")
            .arg(MaximumBridges),
        QStringLiteral("N"));
    const QCommandLineOption portOption(
        QStringLiteral("port"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "[each] Port to listen on (default 0: any free port). Given once for several "
            "bridges, N, N+1, ..."),
        QStringLiteral("N"));
    const QCommandLineOption bindOption(
        QStringLiteral("bind"),
        QCoreApplication::translate("glowdeck-simulator", "Address to listen on (default 127.0.0.1)."),
        QStringLiteral("ADDRESS"), QStringLiteral("127.0.0.1"));
    const QCommandLineOption homeOption(
        QStringLiteral("home"),
        QCoreApplication::translate("glowdeck-simulator", "[each] Load the home from FILE."),
        QStringLiteral("FILE"));
    const QCommandLineOption saveOption(
        QStringLiteral("save-home"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Write the home (the default one, or the --home one) to FILE and exit; once per "
            "bridge."),
        QStringLiteral("FILE"));
    const QCommandLineOption userOption(
        QStringLiteral("user"),
        QCoreApplication::translate("glowdeck-simulator",
                                    "Register the user NAME on every bridge (may be repeated)."),
        QStringLiteral("NAME"));
    const QCommandLineOption linkOption(
        QStringLiteral("press-link-button"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Press the link buttons at start (pairing works for 30 s). Press them later with "
            "SIGUSR1, or one with a POST to its /__control/linkbutton from loopback."));
    const QCommandLineOption acceptOption(
        QStringLiteral("accept-pairing"),
        QCoreApplication::translate("glowdeck-simulator",
                                    "Accept every pairing request without the link button."));
    const QCommandLineOption latencyOption(
        QStringLiteral("latency"),
        QCoreApplication::translate("glowdeck-simulator", "[each] Delay every answer by MS milliseconds."),
        QStringLiteral("MS"));
    const QCommandLineOption verboseOption(
        QStringLiteral("verbose"),
        QCoreApplication::translate("glowdeck-simulator", "Print every request received."));
    const QCommandLineOption tlsPortOption(
        QStringLiteral("tls-port"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "[each] Serve HTTPS on port N as well (0: any free port; given once for several "
            "bridges, N, N+1, ...)."),
        QStringLiteral("N"));
    const QCommandLineOption certificateOption(
        QStringLiteral("certificate"),
        QCoreApplication::translate(
            "glowdeck-simulator", "[each] The certificate HTTPS clients see: signed (default), self-signed, "
                                  "other-bridge, expired or unknown-authority."),
        QStringLiteral("KIND"));
    const QCommandLineOption bridgeIdOption(
        QStringLiteral("bridge-id"),
        QCoreApplication::translate("glowdeck-simulator",
                                    "The bridge id (16 hexadecimal digits); once per bridge, each its own."),
        QStringLiteral("ID"));
    const QCommandLineOption authorityOption(
        QStringLiteral("write-authority"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Write the authority that signs the certificates (one for every bridge) to FILE "
            "(PEM), for a client to trust."),
        QStringLiteral("FILE"));
    const QCommandLineOption redirectOption(
        QStringLiteral("redirect-http"),
        QCoreApplication::translate("glowdeck-simulator",
                                    "Answer plain HTTP with 301 to HTTPS, as the newest bridge does."));
    const QCommandLineOption noHttpOption(
        QStringLiteral("no-http"),
        QCoreApplication::translate("glowdeck-simulator", "Serve HTTPS only (with --tls-port)."));
    const QCommandLineOption eventStreamOption(
        QStringLiteral("event-stream"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "[each] The event stream of HTTPS (GET /eventstream/clip/v2): normal (default: every "
            "change, also those sent with POST /__control/external/<v1 path> from loopback), "
            "silent (keep-alives only), off (404, as old firmware) or malformed (broken events)."),
        QStringLiteral("MODE"));
    const QCommandLineOption eventLifetimeOption(
        QStringLiteral("event-stream-lifetime"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "[each] End every event stream after N seconds, as busy bridges do (default 0: "
            "never)."),
        QStringLiteral("N"));
    const QCommandLineOption busyOption(
        QStringLiteral("busy-for"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "[each] As a bridge kept busy by another app: from the first change (PUT, POST or "
            "DELETE) it takes, answer every further change with 429 Too Many Requests for N "
            "seconds, then take them again; reads are answered all along (default 0: never). "
            "--busy-for N --busy-for 0 makes the first of two bridges busy."),
        QStringLiteral("N"));
    const QCommandLineOption noV2Option(
        QStringLiteral("no-v2"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Serve no version-2 interface: every /clip/v2/ path answers 404, as on a bridge with "
            "old firmware. Without it HTTPS serves GET and PUT /clip/v2/resource/... with the "
            "header hue-application-key, from the same home as version 1."));
    const QCommandLineOption v2BusyOption(
        QStringLiteral("v2-busy-for"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "[each] From the first version-2 write it takes, answer every further one with "
            "--v2-busy-status for N seconds; reads are answered all along (default 0: never)."),
        QStringLiteral("N"));
    const QCommandLineOption v2BusyStatusOption(
        QStringLiteral("v2-busy-status"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "The status of --v2-busy-for: 429 (default, over the budget) or 503 (busy)."),
        QStringLiteral("STATUS"), QStringLiteral("429"));
    const QCommandLineOption v2PartialOption(
        QStringLiteral("v2-partial"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Answer a version-2 write of a room, zone or the whole home 207 when some of its "
            "lamps cannot be reached: those stay as they are and are named in \"errors\"."));
    const QCommandLineOption v2ErrorOption(
        QStringLiteral("v2-write-error"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Answer every version-2 write with 400 and the error TEXT, changing nothing."),
        QStringLiteral("TEXT"));
    const QCommandLineOption v2PaceOption(
        QStringLiteral("v2-pace"),
        QCoreApplication::translate(
            "glowdeck-simulator",
            "Enforce the bridge's pace over version 2: a light takes a write every 100 ms, a "
            "grouped light one a second; sooner ones are answered 429."));
    parser.addOptions(
        {bridgesOption, portOption,         bindOption,          homeOption,      saveOption,
         userOption,    linkOption,         acceptOption,        latencyOption,   verboseOption,
         tlsPortOption, certificateOption,  bridgeIdOption,      authorityOption, redirectOption,
         noHttpOption,  eventStreamOption,  eventLifetimeOption, busyOption,      noV2Option,
         v2BusyOption,  v2BusyStatusOption, v2PartialOption,     v2ErrorOption,   v2PaceOption});
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(ExitBadInput, parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (parser.isSet(QStringLiteral("help-all")))
        parser.process(app); // prints the help with Qt's options and exits
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        return fail(ExitBadInput, QCoreApplication::translate("glowdeck-simulator", "unexpected argument %1")
                                      .arg(parser.positionalArguments().first()));

    int bridges = std::max<int>(1, int(parser.values(bridgeIdOption).size()));
    if (parser.isSet(bridgesOption) && !readNumber(parser.value(bridgesOption), 1, MaximumBridges, &bridges))
        return fail(ExitBadInput,
                    QCoreApplication::translate("glowdeck-simulator",
                                                "--bridges needs a number from 1 to %1, not \"%2\"")
                        .arg(MaximumBridges)
                        .arg(parser.value(bridgesOption)));
    // An id, or a file to write a home to, is one bridge's own: one for several is no choice at all.
    for (const QCommandLineOption* option : {&bridgeIdOption, &saveOption}) {
        const qsizetype given = parser.values(*option).size();
        if (given > 0 && given != bridges)
            return fail(ExitBadInput,
                        QCoreApplication::translate(
                            "glowdeck-simulator",
                            "--%1 takes one value for each bridge: %2 given for %n bridges", nullptr, bridges)
                            .arg(option->names().constFirst())
                            .arg(given));
    }
    QString error;
    QStringList ports, tlsPorts, homes, kindNames, latencies, eventModeNames, eventLifetimes, busySpells,
        v2BusySpells;
    for (const auto& [option, fallback, values] :
         {std::tuple(&portOption, QStringLiteral("0"), &ports),
          std::tuple(&tlsPortOption, QString(), &tlsPorts), std::tuple(&homeOption, QString(), &homes),
          std::tuple(&certificateOption, QStringLiteral("signed"), &kindNames),
          std::tuple(&latencyOption, QStringLiteral("0"), &latencies),
          std::tuple(&eventStreamOption, QStringLiteral("normal"), &eventModeNames),
          std::tuple(&eventLifetimeOption, QStringLiteral("0"), &eventLifetimes),
          std::tuple(&busyOption, QStringLiteral("0"), &busySpells),
          std::tuple(&v2BusyOption, QStringLiteral("0"), &v2BusySpells)}) {
        if (!readPerBridge(parser, *option, bridges, fallback, values, &error))
            return fail(ExitBadInput, error);
    }
    const QHostAddress address(parser.value(bindOption));
    if (address.isNull())
        return fail(ExitBadInput, QCoreApplication::translate("glowdeck-simulator",
                                                              "--bind needs an IP address, not \"%1\"")
                                      .arg(parser.value(bindOption)));
    const bool tls = parser.isSet(tlsPortOption);
    if ((parser.isSet(noHttpOption) || parser.isSet(redirectOption) || parser.isSet(authorityOption) ||
         parser.isSet(eventStreamOption) || parser.isSet(eventLifetimeOption)) &&
        !tls)
        return fail(ExitBadInput,
                    QCoreApplication::translate(
                        "glowdeck-simulator", "--no-http, --redirect-http, --write-authority, --event-stream "
                                              "and --event-stream-lifetime go with --tls-port"));
    const QString v2BusyStatus = parser.value(v2BusyStatusOption);
    if (v2BusyStatus != u"429" && v2BusyStatus != u"503")
        return fail(ExitBadInput, QCoreApplication::translate("glowdeck-simulator",
                                                              "--v2-busy-status is 429 or 503, not \"%1\"")
                                      .arg(v2BusyStatus));
    const QMap<QString, BridgeSimulator::EventStreamMode> eventModes{
        {QStringLiteral("normal"), BridgeSimulator::EventStreamMode::Normal},
        {QStringLiteral("silent"), BridgeSimulator::EventStreamMode::Silent},
        {QStringLiteral("off"), BridgeSimulator::EventStreamMode::Off},
        {QStringLiteral("malformed"), BridgeSimulator::EventStreamMode::Malformed}};
    const QMap<QString, BridgeSimulator::CertificateKind> kinds{
        {QStringLiteral("signed"), BridgeSimulator::CertificateKind::Signed},
        {QStringLiteral("self-signed"), BridgeSimulator::CertificateKind::SelfSigned},
        {QStringLiteral("other-bridge"), BridgeSimulator::CertificateKind::OtherBridge},
        {QStringLiteral("expired"), BridgeSimulator::CertificateKind::Expired},
        {QStringLiteral("unknown-authority"), BridgeSimulator::CertificateKind::UnknownAuthority}};
    static const QRegularExpression bridgeIdPattern(QStringLiteral("^[0-9A-Fa-f]{16}$"));

    // One bridge as the command line asks for it.
    struct Bridge
    {
        std::unique_ptr<BridgeSimulator> simulator;
        int port = 0;
        int tlsPort = -1; // none
        int latency = 0;
        int eventLifetime = 0;
        int busySeconds = 0;
        int v2BusySeconds = 0;
    };
    std::vector<Bridge> house;
    for (int i = 0; i < bridges; ++i) {
        Bridge bridge;
        if (!readPort(portOption, parser, ports, i, &bridge.port, &error) ||
            (tls && !readPort(tlsPortOption, parser, tlsPorts, i, &bridge.tlsPort, &error)))
            return fail(ExitBadInput, error);
        if (!readNumber(latencies.at(i), 0, 600'000, &bridge.latency))
            return fail(ExitBadInput,
                        QCoreApplication::translate(
                            "glowdeck-simulator", "--latency needs milliseconds from 0 to 600000, not \"%1\"")
                            .arg(latencies.at(i)));
        if (!eventModes.contains(eventModeNames.at(i)))
            return fail(
                ExitBadInput,
                QCoreApplication::translate("glowdeck-simulator", "--event-stream is one of %1, not \"%2\"")
                    .arg(eventModes.keys().join(QStringLiteral(", ")), eventModeNames.at(i)));
        if (!readNumber(eventLifetimes.at(i), 0, 86'400, &bridge.eventLifetime))
            return fail(ExitBadInput, QCoreApplication::translate(
                                          "glowdeck-simulator",
                                          "--event-stream-lifetime needs seconds from 0 to 86400, not \"%1\"")
                                          .arg(eventLifetimes.at(i)));
        if (!readNumber(busySpells.at(i), 0, 86'400, &bridge.busySeconds))
            return fail(ExitBadInput,
                        QCoreApplication::translate("glowdeck-simulator",
                                                    "--busy-for needs seconds from 0 to 86400, not \"%1\"")
                            .arg(busySpells.at(i)));
        if (!readNumber(v2BusySpells.at(i), 0, 86'400, &bridge.v2BusySeconds))
            return fail(ExitBadInput,
                        QCoreApplication::translate("glowdeck-simulator",
                                                    "--v2-busy-for needs seconds from 0 to 86400, not \"%1\"")
                            .arg(v2BusySpells.at(i)));
        if (!kinds.contains(kindNames.at(i)))
            return fail(ExitBadInput, QCoreApplication::translate("glowdeck-simulator",
                                                                  "--certificate is one of %1, not \"%2\"")
                                          .arg(kinds.keys().join(QStringLiteral(", ")), kindNames.at(i)));
        const QString id = parser.values(bridgeIdOption).value(i);
        if (!id.isEmpty() && !bridgeIdPattern.match(id).hasMatch())
            return fail(ExitBadInput,
                        QCoreApplication::translate("glowdeck-simulator",
                                                    "--bridge-id needs 16 hexadecimal digits, not \"%1\"")
                            .arg(id));

        // The first two bridges are the two floors of one house; any further one is a floor again, under an
        // id of its own.
        bridge.simulator = std::make_unique<BridgeSimulator>(i % 2 == 0 ? BridgeSimulator::Floor::Ground
                                                                        : BridgeSimulator::Floor::Upper);
        BridgeSimulator& simulator = *bridge.simulator;
        if (!homes.at(i).isEmpty() && !simulator.loadHome(homes.at(i), &error))
            return fail(ExitBadInput, error);
        // After the home file: the command line names the bridge even when the file does too.
        if (!id.isEmpty())
            simulator.setBridgeId(id);
        else if (i >= 2)
            simulator.setBridgeId(furtherBridgeId(simulator.bridgeId(), i / 2));
        for (const Bridge& other : house) {
            if (other.simulator->bridgeId() == simulator.bridgeId())
                return fail(ExitBadInput,
                            QCoreApplication::translate("glowdeck-simulator",
                                                        "two bridges would have the id %1: give each its own "
                                                        "with --bridge-id")
                                .arg(simulator.bridgeId()));
        }
        for (const QString& user : parser.values(userOption)) {
            if (!simulator.registerUser(user, QStringLiteral("glowdeck#simulator")))
                return fail(ExitBadInput, QCoreApplication::translate(
                                              "glowdeck-simulator", "--user \"%1\" is not a usable user name")
                                              .arg(user));
        }
        house.push_back(std::move(bridge));
    }
    if (parser.isSet(saveOption)) {
        for (int i = 0; i < bridges; ++i) {
            if (!house.at(i).simulator->saveHome(parser.values(saveOption).at(i), &error))
                return fail(ExitFailure, error);
        }
        return 0;
    }

    SignalWatcher signalWatcher(true);
    QObject::connect(&signalWatcher, &SignalWatcher::terminationRequested, &app, &QCoreApplication::quit);
    // Several bridges say which one each line is about; one bridge's lines read as they always did.
    const auto which = [bridges](const BridgeSimulator& simulator) {
        return bridges > 1 ? QCoreApplication::translate("glowdeck-simulator", " on bridge %1",
                                                         "Completes \"Link button pressed (%1)%2\"")
                                 .arg(simulator.bridgeId())
                           : QString();
    };
    // The link buttons can be pressed while the simulator runs, as a real bridge's can.
    const auto sayPressed = [](const QString& how, const QString& where) {
        std::printf("%s\n",
                    qPrintable(QCoreApplication::translate(
                                   "glowdeck-simulator",
                                   "Link button pressed (%1)%2: pairing works for the next 30 s",
                                   "%1 is the signal or request that pressed it, %2 the bridge or nothing")
                                   .arg(how, where)));
        std::fflush(stdout);
    };
    QObject::connect(&signalWatcher, &SignalWatcher::user1Received, [&] {
        for (const Bridge& bridge : house)
            bridge.simulator->pressLinkButton();
        sayPressed(QStringLiteral("SIGUSR1"),
                   bridges > 1 ? QCoreApplication::translate("glowdeck-simulator", " on every bridge",
                                                             "Completes \"Link button pressed (%1)%2\"")
                               : QString());
    });
    // Scripts read the address and the bridge after "listening on", whatever the language: the part in
    // brackets is never translated.
    const auto sayListening = [](const QString& listening, const QString& address, const QString& id) {
        std::printf("%s (bridge %s)\n", qPrintable(listening.arg(address)), qPrintable(id));
    };
    for (int i = 0; i < bridges; ++i) {
        Bridge& bridge = house.at(i);
        BridgeSimulator& simulator = *bridge.simulator;
        if (parser.isSet(linkOption))
            simulator.pressLinkButton();
        simulator.setAcceptPairingAtOnce(parser.isSet(acceptOption));
        simulator.setLatency(bridge.latency);
        simulator.setBusyAfterChange(bridge.busySeconds * 1000);
        simulator.setV2Enabled(!parser.isSet(noV2Option));
        simulator.setV2Busy(v2BusyStatus.toInt(), bridge.v2BusySeconds * 1000, true);
        simulator.setV2PartialSuccess(parser.isSet(v2PartialOption));
        simulator.setV2PaceEnforced(parser.isSet(v2PaceOption));
        if (parser.isSet(v2ErrorOption))
            simulator.setV2WriteError(400, parser.value(v2ErrorOption), -1);
        // Nobody reads the recorded requests of the program, and a demo may run for hours.
        simulator.setRecording(false);
        QObject::connect(&simulator, &BridgeSimulator::linkButtonPressedByRequest,
                         [&sayPressed, &which, &simulator] {
                             sayPressed(QStringLiteral("POST /__control/linkbutton"), which(simulator));
                         });
        if (parser.isSet(verboseOption)) {
            const QByteArray prefix =
                bridges > 1 ? '[' + simulator.bridgeId().toLatin1() + "] " : QByteArray();
            QObject::connect(&simulator, &BridgeSimulator::requestReceived,
                             [prefix](const SimulatedRequest& request) {
                                 std::printf("%s%s %s %s\n", prefix.constData(), request.method.constData(),
                                             qPrintable(request.path), request.rawBody.left(200).constData());
                                 std::fflush(stdout);
                             });
        }
        if (!parser.isSet(noHttpOption)) {
            if (!simulator.listen(address, quint16(bridge.port)))
                return fail(ExitFailure, simulator.errorString());
            sayListening(
                QCoreApplication::translate("glowdeck-simulator", "Hue bridge simulator listening on %1"),
                simulator.hostAndPort(), simulator.bridgeId());
        }
        if (tls) {
            // One authority signs every bridge of the process, as the maker signs every real one: a client
            // trusts one file for all of them.
            if (i > 0)
                simulator.setAuthority(house.front().simulator->authority());
            if (!simulator.listenTls(address, quint16(bridge.tlsPort)))
                return fail(ExitFailure, simulator.errorString());
            simulator.setCertificate(kinds.value(kindNames.at(i)));
            simulator.setRedirectHttpToHttps(parser.isSet(redirectOption));
            simulator.setEventStreamMode(eventModes.value(eventModeNames.at(i)));
            simulator.setEventStreamLifetime(bridge.eventLifetime);
            if (i == 0 && parser.isSet(authorityOption) &&
                !simulator.writeAuthority(parser.value(authorityOption), &error))
                return fail(ExitFailure, error);
            sayListening(QCoreApplication::translate("glowdeck-simulator",
                                                     "Hue bridge simulator listening for HTTPS on %1"),
                         simulator.tlsHostAndPort(), simulator.bridgeId());
        }
    }
    std::fflush(stdout);
    return app.exec();
}
