#pragma once

#include <QString>

/// Names of the persisted settings; they are the file format, so they never change.
namespace SettingsKeys {

inline const QString bridgeIP = QStringLiteral("bridgeIP");
inline const QString bridgeUser = QStringLiteral("bridgeUser");
inline const QString bridgeID = QStringLiteral("bridgeID");
inline const QString bridgeTransport = QStringLiteral("bridgeTransport");
inline const QString bridgeCertificateKey = QStringLiteral("bridgeCertificateKey");
inline const QString appIcon = QStringLiteral("appIcon");
inline const QString keyIncrement = QStringLiteral("keyIncrement");
inline const QString preferredWindowHeightLights = QStringLiteral("preferredWindowHeightLights");
inline const QString preferredWindowHeightRooms = QStringLiteral("preferredWindowHeightRooms");
inline const QString preferredWindowHeightScenes = QStringLiteral("preferredWindowHeightScenes");
inline const QString activePanel = QStringLiteral("activePanel");
inline const QString showScenes = QStringLiteral("showScenes");
inline const QString showColorBarsForRooms = QStringLiteral("showColorBarsForRooms");

} // namespace SettingsKeys
