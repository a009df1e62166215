#pragma once

#include "CtlArguments.h"

#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <QList>
#include <QString>

/// One bridge's home as a run of glowdeckctl sees it, read from the bridge or from the running application.
struct CtlHome
{
    QString bridgeId;
    QString label; ///< how output names the bridge: its name, else its id or address
    QList<HueLight> lights;
    QList<HueGroup> groups;
    QList<HueScene> scenes; ///< each with the room or zone it belongs to in `group_id`
};

/// The lamp, room or scene a change names, found among the homes of a run.
struct CtlTarget
{
    qsizetype home = -1;  ///< -1: none, with the reason printed and the exit status in `failure`
    qsizetype index = -1; ///< in the home's list
    int failure = exitFailed;
};

/// What glowdeckctl prints of the homes, the same whether they come from the bridges or from the application.
namespace CtlOutput {

/// Prints the lamps, rooms or scenes (`command`) of `homes` as one table or one JSON array; `several`: more
/// than one bridge is served (if not all answered), so the table names the bridge of each row.
void printList(CtlCommand command, const QList<CtlHome>& homes, bool json, bool several);

/// The one lamp (`light`), room or scene (`command`) that `key` names among `homes`, by id or by name. None
/// when no record has that id or name (exit 1), or when several do (exit 2, the candidates listed); nothing
/// is to be sent then.
CtlTarget findTarget(CtlCommand command, const QList<CtlHome>& homes, const QString& key);

/// The brightness or step of `invocation` in the bridge's units (0-254).
qint64 bridgeBrightness(const CtlInvocation& invocation);

} // namespace CtlOutput
