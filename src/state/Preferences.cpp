#include "state/Preferences.h"

#include "state/SettingsKeys.h"
#include "state/SettingsStore.h"

#include <QStringList>

namespace Keys = SettingsKeys;

QString Preferences::bridgeAddress() const
{
    return m_store.readString(Keys::bridgeIP).value_or(QString());
}

void Preferences::setBridgeAddress(const QString& address)
{
    m_store.writeString(Keys::bridgeIP, address);
}

QString Preferences::bridgeKey() const
{
    return m_store.readString(Keys::bridgeUser).value_or(QString());
}

qint64 Preferences::keyIncrement() const
{
    const qint64 stored = m_store.readInt(Keys::keyIncrement);
    return stored == 0 ? 50 : stored;
}

bool Preferences::hasSeenWelcomeScreen() const
{
    return m_store.readBool(Keys::hasSeenWelcomeScreen);
}

void Preferences::setHasSeenWelcomeScreen()
{
    m_store.writeBool(Keys::hasSeenWelcomeScreen, true);
}

qint64 Preferences::windowOpenings() const
{
    return m_store.readInt(Keys::appInvocations);
}

void Preferences::setWindowOpenings(qint64 count)
{
    m_store.writeInt(Keys::appInvocations, count);
}

bool Preferences::hasReviewed() const
{
    return m_store.readBool(Keys::noMoreReviewRequests);
}

void Preferences::setReviewed(const QString& version)
{
    m_store.writeBool(Keys::noMoreReviewRequests, true);
    m_store.writeString(Keys::reviewedVersion, version);
}

bool Preferences::connectsManually() const
{
    return m_store.readString(Keys::connectionChoice) == QLatin1String("manual");
}

void Preferences::setConnectsManually(bool manual)
{
    m_store.writeString(Keys::connectionChoice,
                        manual ? QStringLiteral("manual") : QStringLiteral("automatic"));
}

qint64 Preferences::dropDownWidth() const
{
    return m_store.readInt(Keys::dropDownWidth);
}

void Preferences::setDropDownWidth(qint64 width)
{
    m_store.writeInt(Keys::dropDownWidth, width);
}

bool Preferences::hasExplainedWindowMode() const
{
    return m_store.readBool(Keys::hasExplainedWindowMode);
}

void Preferences::setHasExplainedWindowMode()
{
    m_store.writeBool(Keys::hasExplainedWindowMode, true);
}

std::optional<qint64> Preferences::storedActivePanel() const
{
    if (!m_store.contains(Keys::activePanel))
        return std::nullopt;
    return m_store.readInt(Keys::activePanel);
}

std::optional<QString> Preferences::customGroupAction(int slot) const
{
    return m_store.readString(Keys::customGroupActionPrefix + QString::number(slot));
}

void Preferences::setCustomGroupAction(int slot, const QString& optionId)
{
    m_store.writeString(Keys::customGroupActionPrefix + QString::number(slot), optionId);
}

QString Preferences::lightOrder() const
{
    return m_store.readString(Keys::lightOrder).value_or(QString());
}

void Preferences::setLightOrder(const QList<HueLight>& lights)
{
    QStringList ids;
    ids.reserve(lights.size());
    for (const HueLight& light : lights)
        ids.append(light.lamp_id);
    m_store.writeString(Keys::lightOrder, ids.join(u','));
}

bool Preferences::isLightHidden(const HueLight& light) const
{
    return m_store.readBool(Keys::hiddenLightPrefix + light.unique_id);
}

void Preferences::setLightHidden(const HueLight& light, bool hidden)
{
    m_store.writeBool(Keys::hiddenLightPrefix + light.unique_id, hidden);
}

std::optional<QString> Preferences::windowFrame(const QString& name) const
{
    return m_store.readString(name);
}

void Preferences::setWindowFrame(const QString& name, const QString& frame)
{
    m_store.writeString(name, frame);
}

bool Preferences::sendsErrorReports() const
{
    return !m_store.contains(Keys::sendErrorReports) || m_store.readBool(Keys::sendErrorReports);
}
