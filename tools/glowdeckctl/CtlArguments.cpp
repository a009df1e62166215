#include "CtlArguments.h"
#include "CtlCommon.h"

#include "model/BridgeAddress.h"
#include "model/BridgeIdentity.h"

#include "state/JsonSettingsStore.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace {

struct Range
{
    qint64 min = 0;
    qint64 max = 0;
};

/// One change the `light` and `room` commands can make.
struct ActionForm
{
    const char* word;
    CtlAction action;
    bool takesValue;
    Range range;
    bool roomsOnly;
    bool percentToo; ///< also takes "N%", of full brightness
    const char* note;
};

// The bridge's own ranges: "bri" 0-254, "hue" 0-65535, "ct" in mired, "bri_inc" -254 to 254 (it refuses
// 255).
constexpr ActionForm actionForms[] = {
    {"on", CtlAction::on, false, {}, false, false, QT_TRANSLATE_NOOP("glowdeckctl", "switch on")},
    {"off", CtlAction::off, false, {}, false, false, QT_TRANSLATE_NOOP("glowdeckctl", "switch off")},
    {"brightness",
     CtlAction::brightness,
     true,
     {0, 254},
     false,
     true,
     QT_TRANSLATE_NOOP("glowdeckctl", " or 0%-100% (4 or 1% or less switches off)")},
    {"hue",
     CtlAction::hue,
     true,
     {0, 65535},
     false,
     false,
     QT_TRANSLATE_NOOP("glowdeckctl", " (colour; the lamp keeps its saturation)")},
    {"ct",
     CtlAction::ct,
     true,
     {153, 500},
     false,
     false,
     QT_TRANSLATE_NOOP("glowdeckctl", " mired (white tone; higher is warmer)")},
    {"brighter",
     CtlAction::brighter,
     true,
     {1, 254},
     true,
     true,
     QT_TRANSLATE_NOOP("glowdeckctl", " or 1%-100% (rooms only: raise the brightness by N)")},
    {"darker",
     CtlAction::darker,
     true,
     {1, 254},
     true,
     true,
     QT_TRANSLATE_NOOP("glowdeckctl", " or 1%-100% (rooms only: lower the brightness by N)")},
};

constexpr Range minutesRange{1, 1440};
constexpr Range waitRange{1, 600};

/// The options that go with some commands only; each command's entry lists those it takes.
enum OptionFlag : unsigned
{
    jsonOption = 1U << 0, // --json
    inOption = 1U << 1,
    waitOption = 1U << 2,
    discoveryUrlOption = 1U << 3,
    bridgeOption = 1U << 4,
    keyOption = 1U << 5,
    pickOption = 1U << 6,
    bridgeIdOption = 1U << 7,
    directOption = 1U << 8,
};
constexpr unsigned bridgeAndKey = bridgeOption | keyOption | bridgeIdOption;
/// The commands Glowdeck runs itself while it runs, unless --direct says otherwise.
constexpr unsigned viaGlowdeck = bridgeAndKey | directOption;

using OperandReader = QString (*)(const QStringList& operands, CtlInvocation& invocation);

/// One command: how it is written, what the help says about it and how its operands are read. A new command
/// is one more entry here and one more case in CtlCommands.
struct CommandForm
{
    const char* name;
    CtlCommand command;
    const char* synopsis;
    const char* summary;
    OperandReader readOperands;
    unsigned options; ///< the OptionFlags it takes
};

QString quoted(const QString& text)
{
    return u'"' + text + u'"';
}

QString unexpected(const QString& operand)
{
    return QCoreApplication::translate("glowdeckctl", "Unexpected argument %1.").arg(quoted(operand));
}

QString rangeText(Range range)
{
    return QString::number(range.min) + u'-' + QString::number(range.max);
}

/// Reads a whole decimal number in `range` into `number`; returns why not otherwise.
QString readNumber(const QString& text, const QString& what, Range range, qint64& number)
{
    const QString expected =
        QCoreApplication::translate("glowdeckctl", "%1 takes a whole number from %2 to %3")
            .arg(what, QString::number(range.min), QString::number(range.max));
    const bool digitsOnly = !text.isEmpty() && std::all_of(text.begin(), text.end(),
                                                           [](QChar c) { return c >= u'0' && c <= u'9'; });
    if (!digitsOnly)
        return QCoreApplication::translate("glowdeckctl", "%1, not %2.").arg(expected, quoted(text));
    bool ok = false;
    number = text.toLongLong(&ok);
    if (!ok || number < range.min || number > range.max)
        return QCoreApplication::translate("glowdeckctl", "%1; %2 is out of range.").arg(expected, text);
    return {};
}

QString changeWords(bool room)
{
    QStringList words;
    for (const ActionForm& form : actionForms) {
        if (!form.roomsOnly || room)
            words.append(QString::fromLatin1(form.word) +
                         (form.takesValue ? QStringLiteral(" N") : QString()));
    }
    return words.join(QStringLiteral(", "));
}

/// The refusals that name what a command changes; whole sentences, as translations change the words around.
struct TargetRefusals
{
    QString missing;
    QString empty;
    QString unknownChange; ///< "%1" the word given, "%2" the changes there are
};

TargetRefusals targetRefusals(CtlCommand command)
{
    if (command == CtlCommand::light)
        return {Ctl::Text::tr("'light' needs a lamp id."), Ctl::Text::tr("The lamp id must not be empty."),
                Ctl::Text::tr("Unknown change %1 for a lamp; use %2.")};
    if (command == CtlCommand::room)
        return {Ctl::Text::tr("'room' needs a room id."), Ctl::Text::tr("The room id must not be empty."),
                Ctl::Text::tr("Unknown change %1 for a room; use %2.")};
    return {Ctl::Text::tr("'scene' needs a scene id."), Ctl::Text::tr("The scene id must not be empty."), {}};
}

QString readTarget(const QStringList& operands, CtlInvocation& invocation, CtlCommand command)
{
    if (operands.isEmpty())
        return targetRefusals(command).missing;
    if (operands.first().isEmpty())
        return targetRefusals(command).empty;
    invocation.targetId = operands.first();
    return {};
}

QString readChange(const QStringList& operands, CtlInvocation& invocation, bool room)
{
    const QString command = room ? QStringLiteral("room") : QStringLiteral("light");
    if (QString error = readTarget(operands, invocation, room ? CtlCommand::room : CtlCommand::light);
        !error.isEmpty())
        return error;
    if (operands.size() < 2)
        return Ctl::Text::tr("'%1 %2' needs a change: %3.").arg(command, operands.first(), changeWords(room));

    const QString& word = operands.at(1);
    const auto form = std::find_if(std::begin(actionForms), std::end(actionForms), [&](const ActionForm& f) {
        return word == QLatin1String(f.word) && (!f.roomsOnly || room);
    });
    if (form == std::end(actionForms))
        return targetRefusals(room ? CtlCommand::room : CtlCommand::light)
            .unknownChange.arg(quoted(word), changeWords(room));
    invocation.action = form->action;

    qsizetype used = 2;
    if (form->takesValue) {
        if (operands.size() < 3)
            return Ctl::Text::tr("'%1' needs a number from %2 to %3.")
                .arg(word, QString::number(form->range.min), QString::number(form->range.max));
        const QString& number = operands.at(2);
        if (form->percentToo && number.endsWith(u'%')) {
            const Range percent{form->range.min > 0 ? 1 : 0, 100};
            if (QString error = readNumber(number.chopped(1), word + Ctl::Text::tr(" in per cent"), percent,
                                           invocation.value);
                !error.isEmpty())
                return error;
            invocation.percent = true;
        } else if (QString error = readNumber(number, word, form->range, invocation.value);
                   !error.isEmpty()) {
            return error;
        }
        used = 3;
    }
    if (operands.size() > used)
        return unexpected(operands.at(used));
    return {};
}

QString noOperands(const QStringList& operands, CtlInvocation&)
{
    return operands.isEmpty() ? QString() : unexpected(operands.first());
}

QString lightOperands(const QStringList& operands, CtlInvocation& invocation)
{
    return readChange(operands, invocation, false);
}

QString roomOperands(const QStringList& operands, CtlInvocation& invocation)
{
    return readChange(operands, invocation, true);
}

QString sceneOperands(const QStringList& operands, CtlInvocation& invocation)
{
    if (QString error = readTarget(operands, invocation, CtlCommand::scene); !error.isEmpty())
        return error;
    return operands.size() > 1 ? unexpected(operands.at(1)) : QString();
}

constexpr CommandForm commandForms[] = {
    {"lights", CtlCommand::lights, "",
     QT_TRANSLATE_NOOP("glowdeckctl", "List the lamps: id, name, on/off, brightness, kind, product"),
     noOperands, jsonOption | viaGlowdeck},
    {"rooms", CtlCommand::rooms, "",
     QT_TRANSLATE_NOOP("glowdeckctl",
                       "List the rooms and zones: id, name, type, on/off, brightness, lamp ids"),
     noOperands, jsonOption | viaGlowdeck},
    {"scenes", CtlCommand::scenes, "",
     QT_TRANSLATE_NOOP("glowdeckctl", "List the scenes: id, name, room, type, number of lamps"), noOperands,
     jsonOption | viaGlowdeck},
    {"light", CtlCommand::light, "LAMP CHANGE",
     QT_TRANSLATE_NOOP("glowdeckctl", "Change one lamp, named by its id or name (see CHANGE below)"),
     lightOperands, viaGlowdeck},
    {"room", CtlCommand::room, "ROOM CHANGE",
     QT_TRANSLATE_NOOP("glowdeckctl", "Change one room or zone, by its id or name (see CHANGE below)"),
     roomOperands, viaGlowdeck},
    {"scene", CtlCommand::scene, "SCENE",
     QT_TRANSLATE_NOOP("glowdeckctl", "Recall a scene, named by its id or name"), sceneOperands, viaGlowdeck},
    {"all-on", CtlCommand::allOn, "",
     QT_TRANSLATE_NOOP("glowdeckctl", "Switch every lamp on, with one request per bridge"), noOperands,
     viaGlowdeck},
    {"all-off", CtlCommand::allOff, "[--in MINUTES]",
     QT_TRANSLATE_NOOP("glowdeckctl",
                       "Switch every lamp off, with one request per bridge; with --in, say when"),
     noOperands, inOption | viaGlowdeck},
    {"discover", CtlCommand::discover, "[--discovery-url URL] [--pick ID]",
     QT_TRANSLATE_NOOP("glowdeckctl",
                       "Find the bridges on this network and show them; --pick ID stores that one's address"),
     noOperands, discoveryUrlOption | pickOption | jsonOption},
    {"pair", CtlCommand::pair, "[--wait SECONDS] [--pick ID]",
     QT_TRANSLATE_NOOP(
         "glowdeckctl",
         "Get a key from the bridge (press its link button); store it beside the other bridges"),
     noOperands, waitOption | bridgeOption | bridgeIdOption | pickOption | discoveryUrlOption},
    {"status", CtlCommand::status, "",
     QT_TRANSLATE_NOOP("glowdeckctl", "Show each paired bridge and whether it answers (--json too)"),
     noOperands, jsonOption | bridgeAndKey},
    {"watch", CtlCommand::watch, "",
     QT_TRANSLATE_NOOP(
         "glowdeckctl",
         "Print each change of a lamp or room as the bridge pushes it, until Ctrl+C (--json too)"),
     noOperands, jsonOption | bridgeAndKey},
    {"hotkeys", CtlCommand::hotkeys, "",
     QT_TRANSLATE_NOOP("glowdeckctl",
                       "List the global shortcuts, their keys and what each does (--json too)"),
     noOperands, jsonOption},
};

/// "pair", "discover or pair", "lights, rooms or scenes": the commands that take the option `flag`.
QString commandsTaking(OptionFlag flag)
{
    QStringList names;
    for (const CommandForm& form : commandForms) {
        if (form.options & flag)
            names.append(QString::fromLatin1(form.name));
    }
    if (names.size() < 2)
        return names.value(0);
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + Ctl::Text::tr(" or ") + last;
}

/// The discovery service is asked over HTTP or HTTPS; an empty URL switches it off.
bool isServiceUrl(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    return text.isEmpty() || (url.isValid() && (url.scheme() == u"http" || url.scheme() == u"https") &&
                              !url.host().isEmpty() && url.userInfo().isEmpty());
}

/// The key is a path segment of every request; bridges hand out letters and digits, so URL-safe is enough.
bool isBridgeKey(const QString& text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               c == u'-' || c == u'_' || c == u'.' || c == u'~';
    });
}

const QStringList valueOptions = {
    QStringLiteral("--bridge"),        QStringLiteral("--bridge-id"), QStringLiteral("--key"),
    QStringLiteral("--settings"),      QStringLiteral("--in"),        QStringLiteral("--wait"),
    QStringLiteral("--discovery-url"), QStringLiteral("--trust-root")};

/// QCommandLineParser reads "-5" as the short option "5"; a negative number deserves its own message.
QString negativeNumberIn(const QStringList& arguments)
{
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == u"--")
            break;
        if (valueOptions.contains(argument))
            ++i; // its value may start with a dash
        else if (argument.size() > 1 && argument.at(0) == u'-' && argument.at(1).isDigit())
            return Ctl::Text::tr(
                       "Numbers are never negative here, not %1 (a room gets dimmer with 'darker N').")
                .arg(quoted(argument));
    }
    return {};
}

} // namespace

bool CtlArguments::isBridgeAddress(const QString& text)
{
    return BridgeAddress::parse(text).has_value();
}

CtlArguments CtlArguments::refused(const QString& why)
{
    CtlArguments result;
    result.m_outcome = Outcome::invalid;
    result.m_error = why;
    return result;
}

CtlArguments CtlArguments::parse(const QStringList& arguments)
{
    if (QString error = negativeNumberIn(arguments); !error.isEmpty())
        return refused(error);

    const QCommandLineOption bridge(QStringLiteral("bridge"), QString(), QStringLiteral("HOST[:PORT]"));
    const QCommandLineOption trustRoot(QStringLiteral("trust-root"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption key(QStringLiteral("key"), QString(), QStringLiteral("KEY"));
    const QCommandLineOption settings(QStringLiteral("settings"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption json(QStringLiteral("json"));
    const QCommandLineOption direct(QStringLiteral("direct"));
    // Gone: records carry no key. Still recognised, so that an old script is told where the key is.
    const QCommandLineOption withKey(QStringLiteral("with-key"));
    const QCommandLineOption in(QStringLiteral("in"), QString(), QStringLiteral("MINUTES"));
    const QCommandLineOption wait(QStringLiteral("wait"), QString(), QStringLiteral("SECONDS"));
    const QCommandLineOption discoveryUrl(QStringLiteral("discovery-url"), QString(), QStringLiteral("URL"));
    const QCommandLineOption pick(QStringLiteral("pick"), QString(), QStringLiteral("ID"));
    const QCommandLineOption bridgeId(QStringLiteral("bridge-id"), QString(), QStringLiteral("ID"));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    QCommandLineParser parser;
    parser.addOptions({bridge, bridgeId, key, settings, json, direct, withKey, in, wait, discoveryUrl, pick,
                       trustRoot, help, version});
    if (!parser.parse(arguments))
        return refused(parser.errorText());

    for (const QCommandLineOption& option : {bridge, bridgeId, key, settings, in, wait, discoveryUrl, pick}) {
        if (parser.values(option).size() > 1)
            return refused(Ctl::Text::tr("--%1 is given more than once.").arg(option.names().constFirst()));
    }

    if (parser.isSet(withKey))
        return refused(
            Ctl::Text::tr("--with-key is no more: the records carry no key. The key is stored in the "
                          "settings file (%1).")
                .arg(JsonSettingsStore::defaultFileName()));

    CtlArguments result;
    if (parser.isSet(help)) {
        result.m_outcome = Outcome::help;
        return result;
    }
    if (parser.isSet(version)) {
        result.m_outcome = Outcome::version;
        return result;
    }

    QStringList operands = parser.positionalArguments();
    if (operands.isEmpty())
        return refused(Ctl::Text::tr("No command given."));
    const QString name = operands.takeFirst();
    const auto form = std::find_if(std::begin(commandForms), std::end(commandForms),
                                   [&](const CommandForm& f) { return name == QLatin1String(f.name); });
    if (form == std::end(commandForms))
        return refused(Ctl::Text::tr("Unknown command %1.").arg(quoted(name)));

    CtlInvocation& invocation = result.m_invocation;
    invocation.command = form->command;
    if (QString error = form->readOperands(operands, invocation); !error.isEmpty())
        return refused(error);

    const std::pair<const QCommandLineOption&, OptionFlag> ownedOptions[] = {
        {json, jsonOption},     {in, inOption},
        {wait, waitOption},     {discoveryUrl, discoveryUrlOption},
        {pick, pickOption},     {bridge, bridgeOption},
        {key, keyOption},       {bridgeId, bridgeIdOption},
        {direct, directOption},
    };
    for (const auto& [option, flag] : ownedOptions) {
        if (parser.isSet(option) && !(form->options & flag))
            return refused(Ctl::Text::tr("--%1 goes with %2 only, not with %3.")
                               .arg(option.names().constFirst(), commandsTaking(flag), name));
    }

    invocation.json = parser.isSet(json);
    invocation.direct = parser.isSet(direct);
    if (parser.isSet(pick)) {
        invocation.pick = parser.value(pick).toUpper();
        if (!BridgeIdentity::isBridgeId(invocation.pick))
            return refused(Ctl::Text::tr("--pick takes a bridge id (16 hexadecimal digits, as discover lists "
                                         "them), not %1.")
                               .arg(quoted(parser.value(pick))));
    }
    if (parser.isSet(bridgeId)) {
        invocation.bridgeId = parser.value(bridgeId).toUpper();
        if (!BridgeIdentity::isBridgeId(invocation.bridgeId))
            return refused(Ctl::Text::tr("--bridge-id takes a bridge id (16 hexadecimal digits, as status "
                                         "lists them), not %1.")
                               .arg(quoted(parser.value(bridgeId))));
    }
    // Pairing goes to one bridge: the one found with --pick, or the one named otherwise.
    if (invocation.command == CtlCommand::pair && parser.isSet(pick) &&
        (parser.isSet(bridge) || parser.isSet(bridgeId)))
        return refused(Ctl::Text::tr("pair takes --pick, or --bridge and --bridge-id, not both."));
    if (parser.isSet(in)) {
        qint64 minutes = 0;
        if (QString error = readNumber(parser.value(in), QStringLiteral("--in"), minutesRange, minutes);
            !error.isEmpty())
            return refused(error);
        invocation.offAfterMinutes = minutes;
    }
    if (parser.isSet(wait)) {
        qint64 seconds = 0;
        if (QString error = readNumber(parser.value(wait), QStringLiteral("--wait"), waitRange, seconds);
            !error.isEmpty())
            return refused(error);
        invocation.waitSeconds = seconds;
    }
    if (parser.isSet(discoveryUrl)) {
        invocation.discoveryUrl = parser.value(discoveryUrl);
        if (!isServiceUrl(*invocation.discoveryUrl))
            return refused(
                Ctl::Text::tr("--discovery-url takes an http or https URL (an empty one switches the "
                              "service off), not %1.")
                    .arg(quoted(*invocation.discoveryUrl)));
    }
    if (parser.isSet(bridge)) {
        invocation.bridge = parser.value(bridge);
        if (!isBridgeAddress(invocation.bridge))
            return refused(Ctl::Text::tr("--bridge takes HOST, HOST:PORT, https://HOST[:PORT] or "
                                         "http://HOST[:PORT], not %1.")
                               .arg(quoted(invocation.bridge)));
    }
    if (parser.isSet(key)) {
        invocation.key = parser.value(key);
        if (!isBridgeKey(invocation.key))
            return refused(
                Ctl::Text::tr("--key takes the bridge's key (letters, digits, '-', '_', '.', '~'), not %1.")
                    .arg(quoted(invocation.key)));
    }
    invocation.trustRoots = parser.values(trustRoot);
    if (parser.isSet(settings)) {
        invocation.settingsFile = parser.value(settings);
        if (invocation.settingsFile.isEmpty())
            return refused(Ctl::Text::tr("--settings takes a file name."));
    }
    result.m_outcome = Outcome::run;
    return result;
}

QString CtlArguments::refusal(const QString& error)
{
    return Ctl::Text::tr("glowdeckctl: %1\nTry 'glowdeckctl --help'.\n").arg(error);
}

namespace {

constexpr qsizetype helpWidth = 80;

/// `text` broken between words into lines of at most `width` characters.
QStringList wrapped(const QString& text, qsizetype width)
{
    QStringList lines;
    QString line;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && line.size() + 1 + word.size() > width) {
            lines.append(line);
            line.clear();
        }
        line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    if (!line.isEmpty())
        lines.append(line);
    return lines;
}

/// A paragraph of the help, wrapped, with an empty line after it.
QString paragraph(const QString& text)
{
    return wrapped(text, helpWidth - 1).join(u'\n') + QStringLiteral("\n\n");
}

} // namespace

QString CtlArguments::usage()
{
    constexpr qsizetype column = 24;
    QString text = Ctl::Text::tr("Usage: glowdeckctl [OPTIONS] COMMAND [ARGUMENTS]\n\n") +
                   paragraph(Ctl::Text::tr("Controls the Philips Hue lamps of the bridges Glowdeck is "
                                           "paired with.")) +
                   Ctl::Text::tr("Commands:\n");
    // The right part is wrapped in its column; a left part too wide for its column gets a line of its own.
    auto line = [&text](const QString& left, const QString& right) {
        const QStringList lines = wrapped(right, helpWidth - 1 - column);
        const QString indent(column, u' ');
        if (left.size() > column - 3)
            text += QStringLiteral("  ") + left + u'\n' + indent + lines.join(u'\n' + indent) + u'\n';
        else
            text +=
                QStringLiteral("  ") + left.leftJustified(column - 2) + lines.join(u'\n' + indent) + u'\n';
    };
    for (const CommandForm& form : commandForms) {
        const QString synopsis = QString::fromLatin1(form.synopsis);
        line(QString::fromLatin1(form.name) + (synopsis.isEmpty() ? QString() : u' ' + synopsis),
             Ctl::Text::tr(form.summary));
    }
    text += Ctl::Text::tr("\nCHANGE of light and room:\n");
    for (const ActionForm& form : actionForms) {
        const QString word = QString::fromLatin1(form.word);
        line(form.takesValue ? word + QStringLiteral(" N") : word,
             (form.takesValue ? rangeText(form.range) : QString()) + Ctl::Text::tr(form.note));
    }
    text += Ctl::Text::tr("\nOptions:\n");
    line(QStringLiteral("--direct"),
         Ctl::Text::tr("talk to the bridges even while Glowdeck runs (lists, changes, all-on, all-off); "
                       "otherwise these go through the running Glowdeck, whose window shows them at once"));
    line(QStringLiteral("--bridge ADDRESS"),
         Ctl::Text::tr("bridge address for this run (HOST, HOST:PORT, https://HOST[:PORT] or "
                       "http://HOST[:PORT]); only pair stores it (once it has a key)"));
    line(QStringLiteral("--bridge-id ID"),
         Ctl::Text::tr("the paired bridge for this run; without it lists, watch, status, all-on and "
                       "all-off serve every paired bridge, and a change the bridge with its id or name"));
    line(QStringLiteral("--key KEY"), Ctl::Text::tr("bridge key for this run (not stored)"));
    line(QStringLiteral("--settings FILE"),
         Ctl::Text::tr("settings file holding the paired bridges; default $GLOWDECK_SETTINGS, else ") +
             JsonSettingsStore::defaultFileName());
    line(QStringLiteral("--trust-root FILE"),
         Ctl::Text::tr("also trust this authority (PEM) for the bridge's certificate (a test bridge)"));
    line(QStringLiteral("--json"),
         Ctl::Text::tr("lights, rooms, scenes, discover: print the records as one JSON array, each "
                       "with its \"bridge_id\"; status: one JSON object; watch: each change as one JSON "
                       "object a line, with the field names of the lists"));
    line(QStringLiteral("--in MINUTES"),
         Ctl::Text::tr("all-off: have the bridge switch off in %1 minutes").arg(rangeText(minutesRange)));
    line(QStringLiteral("--wait SECONDS"),
         Ctl::Text::tr("pair: keep asking every second for SECONDS (%1) while you press the link button")
             .arg(rangeText(waitRange)));
    line(QStringLiteral("--discovery-url URL"),
         Ctl::Text::tr("discover: the discovery service to ask; default $GLOWDECK_DISCOVERY_URL, else "
                       "Philips' public service; an empty URL asks no service"));
    line(QStringLiteral("--pick ID"),
         Ctl::Text::tr("discover, pair: the bridge found with this id, when several answer"));
    line(QStringLiteral("-h, --help"), Ctl::Text::tr("show this help"));
    line(QStringLiteral("-v, --version"), Ctl::Text::tr("show the version"));
    text += u'\n';
    text += paragraph(Ctl::Text::tr(
        "Each bridge's address and key are kept in the settings file: 'discover --pick ID' stores the "
        "address, 'pair' the key, and the other commands use them. A lamp, room or scene is named by its "
        "id or, when no record has that id, by its name; an id found on several paired bridges needs "
        "--bridge-id."));
    text += paragraph(Ctl::Text::tr(
        "A change is done once the bridge has answered it, or once the running Glowdeck has queued it; "
        "every wait is bounded (a list 10 s, a change 5 s, pairing and discovery 15 s). watch runs until "
        "Ctrl+C (or SIGTERM), then exits 0."));
    text += wrapped(Ctl::Text::tr(
                        "Exit status: 0 done; 1 no bridge was found, or it could not be reached, paired with "
                        "or used, it refused or did not answer a change, no lamp, room or scene has that id "
                        "or name (or there is no event stream to watch), or the settings file could not be "
                        "written (a list still shows the bridges that answered); 2 bad command line, a "
                        "--bridge-id that is not paired, or an id or name that fits several (nothing is "
                        "sent)."),
                    helpWidth - 1)
                .join(u'\n') +
            u'\n';
    return text;
}
