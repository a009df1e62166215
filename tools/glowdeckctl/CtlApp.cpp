#include "CtlApp.h"

#include "CtlCommon.h"
#include "CtlOutput.h"

#include "dbus/BusNames.h"
#include "dbus/RecordFields.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDateTime>
#include <QFileInfo>
#include <QLocale>

using Ctl::printError;

namespace {

// The application answers from its live state; it only waits when it is busy drawing.
constexpr int callTimeout = 5000;

QString canonical(const QString& file)
{
    const QString path = QFileInfo(file).canonicalFilePath();
    return path.isEmpty() ? QFileInfo(file).absoluteFilePath() : path;
}

/// Calls `method`; the reply's arguments, or nothing with the failure printed and `failure` set.
std::optional<QList<QVariant>> call(const QString& method, const QVariantList& arguments, int& failure)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(BusNames::service, BusNames::path, BusNames::interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(message, QDBus::Block, callTimeout);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return reply.arguments();
    // The interface refuses an ambiguous name as the command line would: nothing was sent.
    failure = reply.errorName() == BusNames::ambiguous ? exitUsage : exitFailed;
    printError(Ctl::Text::tr("Glowdeck refused: %1").arg(Ctl::printable(reply.errorMessage())));
    return std::nullopt;
}

std::optional<QList<QVariantMap>> records(const QString& method, int& failure)
{
    const std::optional<QList<QVariant>> reply = call(method, {}, failure);
    if (!reply || reply->isEmpty())
        return std::nullopt;
    return qdbus_cast<QList<QVariantMap>>(reply->constFirst());
}

/// The application's homes, in its order of bridges, with the lists `command` needs.
std::optional<QList<CtlHome>> homes(CtlCommand command, const QString& bridgeId, int& failure)
{
    const std::optional<QList<QVariantMap>> bridges = records(QStringLiteral("ListBridges"), failure);
    if (!bridges)
        return std::nullopt;
    QList<CtlHome> homes;
    for (const QVariantMap& bridge : *bridges) {
        const QString id = bridge.value(RecordFields::bridgeIdKey).toString();
        if (bridgeId.isEmpty() || id.compare(bridgeId, Qt::CaseInsensitive) == 0)
            homes.append(CtlHome{.bridgeId = id, .label = bridge.value(QStringLiteral("name")).toString()});
    }
    if (homes.isEmpty()) {
        printError(Ctl::Text::tr("Glowdeck serves no bridge %1.").arg(bridgeId));
        failure = exitUsage;
        return std::nullopt;
    }
    const auto homeOf = [&homes](const QVariantMap& fields) -> CtlHome* {
        const QString id = fields.value(RecordFields::bridgeIdKey).toString();
        for (CtlHome& home : homes) {
            if (home.bridgeId == id)
                return &home;
        }
        return nullptr;
    };
    const bool lights = command == CtlCommand::lights || command == CtlCommand::light;
    const bool scenes = command == CtlCommand::scenes || command == CtlCommand::scene;
    const bool rooms = !lights; // the scenes' table names their rooms
    if (lights) {
        const std::optional<QList<QVariantMap>> list = records(QStringLiteral("ListLights"), failure);
        if (!list)
            return std::nullopt;
        for (const QVariantMap& fields : *list) {
            CtlHome* home = homeOf(fields);
            if (const std::optional<HueLight> light = RecordFields::readLight(fields); home && light)
                home->lights.append(*light);
        }
    }
    if (rooms) {
        const std::optional<QList<QVariantMap>> list = records(QStringLiteral("ListRooms"), failure);
        if (!list)
            return std::nullopt;
        for (const QVariantMap& fields : *list) {
            CtlHome* home = homeOf(fields);
            if (const std::optional<HueGroup> group = RecordFields::readGroup(fields); home && group)
                home->groups.append(*group);
        }
    }
    if (scenes) {
        const std::optional<QList<QVariantMap>> list = records(QStringLiteral("ListScenes"), failure);
        if (!list)
            return std::nullopt;
        for (const QVariantMap& fields : *list) {
            CtlHome* home = homeOf(fields);
            if (const std::optional<HueScene> scene = RecordFields::readScene(fields); home && scene)
                home->scenes.append(*scene);
        }
    }
    return homes;
}

/// The change of a `light` or `room` command as the interface takes it: brightness in per cent.
QVariantMap changeOf(const CtlInvocation& invocation)
{
    const double percent =
        invocation.percent ? double(invocation.value) : double(invocation.value) * 100.0 / 254.0;
    switch (invocation.action) {
    case CtlAction::on:
        return {{QStringLiteral("on"), true}};
    case CtlAction::off:
        return {{QStringLiteral("on"), false}};
    case CtlAction::brightness:
        return {{QStringLiteral("brightness"), percent}};
    case CtlAction::hue:
        return {{QStringLiteral("hue"), invocation.value}};
    case CtlAction::ct:
        return {{QStringLiteral("mirek"), invocation.value}};
    case CtlAction::brighter:
        return {{QStringLiteral("brightness_step"), percent}};
    case CtlAction::darker:
        return {{QStringLiteral("brightness_step"), -percent}};
    }
    return {};
}

int change(const CtlInvocation& invocation)
{
    int failure = exitFailed;
    const std::optional<QList<CtlHome>> found = homes(invocation.command, invocation.bridgeId, failure);
    if (!found)
        return failure;
    const CtlTarget target = CtlOutput::findTarget(invocation.command, *found, invocation.targetId);
    if (target.home < 0)
        return target.failure;
    const CtlHome& home = found->at(target.home);
    if (invocation.command == CtlCommand::scene) {
        const QVariantMap options{{RecordFields::bridgeIdKey, home.bridgeId}};
        return call(QStringLiteral("RecallScene"), {home.scenes.at(target.index).scene_id, options}, failure)
                   ? exitDone
                   : failure;
    }
    QVariantMap fields = changeOf(invocation);
    fields.insert(RecordFields::bridgeIdKey, home.bridgeId);
    const bool light = invocation.command == CtlCommand::light;
    const QString id = light ? home.lights.at(target.index).lamp_id : home.groups.at(target.index).group_id;
    return call(light ? QStringLiteral("SetLight") : QStringLiteral("SetRoom"), {id, fields}, failure)
               ? exitDone
               : failure;
}

} // namespace

bool CtlApp::runsWith(const QString& file)
{
    // Without an address, libdbus looks for the bus in the session's runtime folder, and else would start a
    // bus of its own for the X display: a tool run from a script must not leave one behind.
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") &&
        !QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")))
        return false;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface() || !bus.interface()->isServiceRegistered(BusNames::service))
        return false;
    QDBusMessage get = QDBusMessage::createMethodCall(BusNames::service, BusNames::path,
                                                      QStringLiteral("org.freedesktop.DBus.Properties"),
                                                      QStringLiteral("Get"));
    get.setArguments({BusNames::interface, QStringLiteral("SettingsFile")});
    const QDBusMessage reply = bus.call(get, QDBus::Block, callTimeout);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return false;
    const QString served = reply.arguments().constFirst().value<QDBusVariant>().variant().toString();
    return !served.isEmpty() && canonical(served) == canonical(file);
}

bool CtlApp::serves(const CtlInvocation& invocation)
{
    switch (invocation.command) {
    case CtlCommand::lights:
    case CtlCommand::rooms:
    case CtlCommand::scenes:
    case CtlCommand::light:
    case CtlCommand::room:
    case CtlCommand::scene:
        break;
    case CtlCommand::allOn:
    case CtlCommand::allOff:
        // Glowdeck switches every bridge it serves; one bridge alone is asked directly.
        if (!invocation.bridgeId.isEmpty())
            return false;
        break;
    default:
        return false;
    }
    if (invocation.direct || !invocation.bridge.isEmpty() || !invocation.key.isEmpty() ||
        !invocation.trustRoots.isEmpty())
        return false;
    return runsWith(Ctl::settingsFileName(invocation));
}

int CtlApp::run(const CtlInvocation& invocation)
{
    int failure = exitFailed;
    switch (invocation.command) {
    case CtlCommand::lights:
    case CtlCommand::rooms:
    case CtlCommand::scenes: {
        const std::optional<QList<CtlHome>> found = homes(invocation.command, invocation.bridgeId, failure);
        if (!found)
            return failure;
        CtlOutput::printList(invocation.command, *found, invocation.json, found->size() > 1);
        return exitDone;
    }
    case CtlCommand::allOn:
        return call(QStringLiteral("AllOn"), {}, failure) ? exitDone : failure;
    case CtlCommand::allOff: {
        if (!invocation.offAfterMinutes)
            return call(QStringLiteral("AllOff"), {}, failure) ? exitDone : failure;
        const std::optional<QList<QVariant>> reply =
            call(QStringLiteral("SwitchOffIn"), {int(*invocation.offAfterMinutes)}, failure);
        if (!reply || reply->isEmpty())
            return failure;
        const QDateTime at = QDateTime::fromString(reply->constFirst().toString(), Qt::ISODate).toLocalTime();
        Ctl::write(stdout,
                   Ctl::Text::tr("The lights go off at %1.").arg(at.toString(QStringLiteral("HH:mm"))) +
                       u'\n');
        return exitDone;
    }
    default:
        return change(invocation);
    }
}
