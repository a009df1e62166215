#pragma once

#include "bridge/WireTypes.h"
#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <optional>
#include <unordered_map>

/// Flattens the wire records of one answer into the records the menu works on. The records say nothing of the
/// bridge they came from: whoever read the answer knows that. Each call returns nothing for a resource the
/// menu leaves out (an unreachable lamp, a zone, a recycled or old scene). Lives only as long as the answer's
/// texts do.
class RecordDerivation final
{
public:
    std::optional<HueLight> light(const HueDevice& device);
    std::optional<HueGroup> group(const BridgeDataType_Group& group);
    std::optional<HueScene> scene(const BridgeDataType_Scene& scene);

    /// A fresh random identity for a list element; cheap enough to make hundreds per refresh.
    static QUuid freshId();
    /// A name as the window and the tables show it: control characters, and the bidirectional overrides and
    /// isolates that would show the rest of a line backwards ("\u202Eevil" reads "live"), become "?".
    static QString shownName(QString name);

private:
    /// One shared copy per distinct text: light ids, types and model names repeat hundreds of times in a
    /// large home, and sharing them saves an allocation each.
    const QString& pooled(WireText text);
    QStringList pooled(const std::optional<WireTextList>& texts);

    std::unordered_map<WireText, QString> m_pool;
};
