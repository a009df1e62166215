#pragma once

#include <QString>

/// Names of the persisted settings; they are the file format, so they never change. The shortcuts keep their
/// own "GlobalHotkeys_" keys beside these (hotkeys/GlobalHotkeys.h).
namespace SettingsKeys {

/// The bridges, as an array of their contacts (model/BridgeContact.h), written once a bridge has answered.
inline const QString bridges = QStringLiteral("bridges");
// The first bridge again, in the keys older versions read it from: written beside "bridges" in the same save,
// so that an older Glowdeck reading the file still reaches that bridge. Read only from a file without
// "bridges".
inline const QString bridgeIP = QStringLiteral("bridgeIP");
inline const QString bridgeUser = QStringLiteral("bridgeUser");
inline const QString bridgeID = QStringLiteral("bridgeID");
inline const QString bridgeTransport = QStringLiteral("bridgeTransport");
inline const QString bridgeCertificateKey = QStringLiteral("bridgeCertificateKey");

// The fields of the shared state.
inline const QString appIcon = QStringLiteral("appIcon");
inline const QString keyIncrement = QStringLiteral("keyIncrement");
inline const QString preferredWindowHeightLights = QStringLiteral("preferredWindowHeightLights");
inline const QString preferredWindowHeightRooms = QStringLiteral("preferredWindowHeightRooms");
inline const QString preferredWindowHeightScenes = QStringLiteral("preferredWindowHeightScenes");
inline const QString activePanel = QStringLiteral("activePanel");
inline const QString showScenes = QStringLiteral("showScenes");
inline const QString showColorBarsForRooms = QStringLiteral("showColorBarsForRooms");
inline const QString showZones = QStringLiteral("showZones");
/// true: desktop notifications of events the user did not cause; absent: off.
inline const QString notifyEvents = QStringLiteral("notifyEvents");

// The user's other choices and what the application remembers between runs.
inline const QString hasSeenWelcomeScreen = QStringLiteral("hasSeenWelcomeScreen");
inline const QString appInvocations = QStringLiteral("appInvocations");
/// Set once the user has followed the review request; no request is shown after it.
inline const QString noMoreReviewRequests = QStringLiteral("noMoreReviewRequests");
/// The version the user reviewed.
inline const QString reviewedVersion = QStringLiteral("reviewedVersion");
/// "manual" while the connection pane is on Manual; absent or anything else is Automatic.
inline const QString connectionChoice = QStringLiteral("connectionChoice");
/// The drop-down window's width as the user dragged it; absent: the narrowest.
inline const QString dropDownWidth = QStringLiteral("dropDownWidth");
/// Set once Glowdeck has said, in its window, why it shows there rather than behind a tray icon.
inline const QString hasExplainedWindowMode = QStringLiteral("hasExplainedWindowMode");
/// Followed by the slot number (0 to 4): the room action of a custom shortcut.
inline const QString customGroupActionPrefix = QStringLiteral("hotkeyCustomGroupAction");
/// Lamp ids joined with ",".
inline const QString lightOrder = QStringLiteral("lightOrder");
/// Followed by a light's `unique_id`: true when the user hid the light.
inline const QString hiddenLightPrefix = QStringLiteral("hide_light_");
/// Absent means reports are sent.
inline const QString sendErrorReports = QStringLiteral("sendErrorReports");

} // namespace SettingsKeys
