#include "CtlOutput.h"

#include "CtlCommon.h"

#include "bridge/CodedRecords.h"
#include "bridge/JsonWriter.h"
#include "dbus/RecordLookup.h"

#include <QHash>

#include <algorithm>
#include <cmath>

using Ctl::printable;
using Ctl::printError;
using Ctl::write;

namespace {

constexpr qsizetype widestCell = 60;

/// A cell as a table shows it: printable, and cut with "…" past `widestCell` characters, so that one long
/// name cannot push every row off the screen.
QString cell(const QString& text)
{
    const QString shown = printable(text);
    return shown.size() > widestCell ? shown.left(widestCell - 1) + u'\u2026' : shown;
}

/// Left-aligned columns two spaces apart; the last column is not padded.
QString table(const QList<QStringList>& rows)
{
    QList<qsizetype> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], cell(row.at(i)).size());
    }
    QString text;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i)
            line += i + 1 < row.size() ? cell(row.at(i)).leftJustified(widths[i] + 2) : cell(row.at(i));
        text += line + u'\n';
    }
    return text;
}

QString onOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

QString kind(const HueLight& light)
{
    if (!light.allows_brightness)
        return QStringLiteral("switch only");
    if (light.allows_color)
        return QStringLiteral("colour");
    if (light.allows_ambient)
        return QStringLiteral("white tone");
    return QStringLiteral("dimmable");
}

/// The headings of a list, in the user's language: made when asked for, once the translation is installed.
QStringList header(CtlCommand command)
{
    if (command == CtlCommand::lights)
        return {QStringLiteral("ID"),        Ctl::Text::tr("NAME"), Ctl::Text::tr("STATE"),
                Ctl::Text::tr("BRIGHTNESS"), Ctl::Text::tr("KIND"), Ctl::Text::tr("PRODUCT")};
    if (command == CtlCommand::rooms)
        return {QStringLiteral("ID"),   Ctl::Text::tr("NAME"),       Ctl::Text::tr("TYPE"),
                Ctl::Text::tr("STATE"), Ctl::Text::tr("BRIGHTNESS"), Ctl::Text::tr("LIGHTS")};
    return {QStringLiteral("ID"), Ctl::Text::tr("NAME"), Ctl::Text::tr("ROOM"), Ctl::Text::tr("TYPE"),
            Ctl::Text::tr("LIGHTS")};
}

QStringList lightRow(const HueLight& light)
{
    return {light.lamp_id, light.name,        onOff(light.is_on), QString::number(light.brightness),
            kind(light),   light.product_name};
}

QStringList groupRow(const HueGroup& group)
{
    return {group.group_id,
            group.name,
            group.isZone() ? QStringLiteral("zone") : QStringLiteral("room"),
            onOff(group.any_on),
            QString::number(group.brightness),
            group.lights.join(u',')};
}

/// `scene` with the name of its room or zone (`group_id` holds its id), from `names` by group id.
QStringList sceneRow(const HueScene& scene, const QHash<QString, QString>& names)
{
    return {scene.scene_id, scene.name, names.value(scene.group_id, QStringLiteral("-")), scene.type,
            QString::number(scene.lights.size())};
}

/// Appends the records in their coded form, in the bridge's order, each with the id of the bridge it is on
/// ("bridge_id", last). Records carry no key, so none ends up in the scripts, logs and bug reports that
/// output like this goes to.
template <typename Record>
void appendJson(JsonWriter& json, const QList<Record>& records, const QString& bridgeId)
{
    JsonWriter id;
    id.value(bridgeId);
    const QByteArray bridgeMember = QByteArrayLiteral(",\"bridge_id\":") + id.text() + '}';
    for (const Record& record : records) {
        QByteArray object = CodedRecords::encode(record);
        object.chop(1); // its closing brace
        json.raw(object + bridgeMember);
    }
}

/// The sentences that say a lamp, room or scene was not found once: "%1" is the id or name asked for.
struct TargetTexts
{
    QString notFoundHere;
    QString notFoundAnywhere;
    QString onSeveralBridges; ///< "%2" lists the bridges
};

template <typename Record>
CtlTarget findIn(const QList<CtlHome>& homes, QList<Record> CtlHome::*list, const TargetTexts& what,
                 const QString& key)
{
    QList<QList<Record>> lists;
    for (const CtlHome& home : homes)
        lists.append(home.*list);
    const QList<RecordLookup::Match> found = RecordLookup::find(lists, key);
    CtlTarget target;
    if (found.size() == 1) {
        target.home = found.first().bridge;
        target.index = found.first().index;
        target.failure = exitDone;
        return target;
    }
    if (found.isEmpty()) {
        printError((homes.size() > 1 ? what.notFoundAnywhere : what.notFoundHere).arg(printable(key)));
        return target;
    }
    // Nothing is sent on a guess: the same id on two bridges, or a name several records share.
    target.failure = exitUsage;
    const Record& first = lists.at(found.first().bridge).at(found.first().index);
    if (RecordLookup::hasId(first, key)) {
        QStringList names;
        for (const RecordLookup::Match& match : found)
            names << QStringLiteral("%1 (%2)").arg(printable(homes.at(match.bridge).label),
                                                   homes.at(match.bridge).bridgeId);
        // One sentence per text, so that each can be translated on its own.
        printError(what.onSeveralBridges.arg(printable(key), names.join(QStringLiteral(", "))) + u' ' +
                   Ctl::Text::tr("Nothing was sent; name one with --bridge-id ID."));
        return target;
    }
    QStringList candidates;
    for (const RecordLookup::Match& match : found) {
        const Record& record = lists.at(match.bridge).at(match.index);
        candidates << QStringLiteral("%1 \"%2\"")
                              .arg(printable(RecordLookup::idOf(record)), printable(record.name)) +
                          (homes.size() > 1 ? Ctl::Text::tr(" on %1").arg(homes.at(match.bridge).bridgeId)
                                            : QString());
    }
    printError(Ctl::Text::tr("The name %1 fits several: %2.")
                   .arg(printable(key), candidates.join(QStringLiteral(", "))) +
               u' ' + Ctl::Text::tr("Nothing was sent; name it by its id."));
    return target;
}

} // namespace

namespace CtlOutput {

void printList(CtlCommand command, const QList<CtlHome>& homes, bool json, bool several)
{
    QList<QStringList> rows;
    JsonWriter array;
    array.beginArray();
    for (const CtlHome& home : homes) {
        const qsizetype first = rows.size();
        switch (command) {
        case CtlCommand::lights:
            appendJson(array, home.lights, home.bridgeId);
            for (const HueLight& light : home.lights)
                rows.append(lightRow(light));
            break;
        case CtlCommand::rooms:
            appendJson(array, home.groups, home.bridgeId);
            for (const HueGroup& group : home.groups)
                rows.append(groupRow(group));
            break;
        default: {
            QHash<QString, QString> names;
            for (const HueGroup& group : home.groups)
                names.insert(group.group_id, group.name);
            for (const HueScene& scene : home.scenes)
                rows.append(sceneRow(scene, names));
            appendJson(array, home.scenes, home.bridgeId);
            break;
        }
        }
        // With several bridges an id alone does not say which lamp it is: each bridge numbers its own.
        for (qsizetype i = first; several && i < rows.size(); ++i)
            rows[i].prepend(home.label);
    }
    array.endArray();
    if (json)
        return write(stdout, QString::fromUtf8(array.text()) + u'\n');
    QStringList headings = header(command);
    if (several)
        headings.prepend(Ctl::Text::tr("BRIDGE"));
    rows.prepend(headings);
    write(stdout, table(rows));
}

/// What is said when a lamp, room or scene is not found or not found once; whole sentences for each kind,
/// since a translation changes the words around the noun with it.
static TargetTexts targetTexts(CtlCommand command)
{
    if (command == CtlCommand::light)
        return {Ctl::Text::tr("No light with the id or name %1 on this bridge."),
                Ctl::Text::tr("No light with the id or name %1 on any paired bridge."),
                Ctl::Text::tr("There is a light %1 on several paired bridges: %2.")};
    if (command == CtlCommand::room)
        return {Ctl::Text::tr("No room with the id or name %1 on this bridge."),
                Ctl::Text::tr("No room with the id or name %1 on any paired bridge."),
                Ctl::Text::tr("There is a room %1 on several paired bridges: %2.")};
    return {Ctl::Text::tr("No scene with the id or name %1 on this bridge."),
            Ctl::Text::tr("No scene with the id or name %1 on any paired bridge."),
            Ctl::Text::tr("There is a scene %1 on several paired bridges: %2.")};
}

CtlTarget findTarget(CtlCommand command, const QList<CtlHome>& homes, const QString& key)
{
    const TargetTexts what = targetTexts(command);
    if (command == CtlCommand::light)
        return findIn(homes, &CtlHome::lights, what, key);
    if (command == CtlCommand::room)
        return findIn(homes, &CtlHome::groups, what, key);
    return findIn(homes, &CtlHome::scenes, what, key);
}

qint64 bridgeBrightness(const CtlInvocation& invocation)
{
    if (!invocation.percent)
        return invocation.value;
    return qint64(std::lround(double(invocation.value) * 254.0 / 100.0));
}

} // namespace CtlOutput
