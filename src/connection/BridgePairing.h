#pragma once

#include "connection/BridgeProbe.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class BridgeLink;
class QNetworkAccessManager;

/// One answer to a key request: the key or an outcome word, and how the bridge was reached.
struct PairingOutcome
{
    /// The new key, BridgePairing::pressButton or BridgePairing::noConnection.
    QString outcome;
    /// How the bridge was reached and who it proved to be; set whenever it answered.
    std::optional<ProbedBridge> contact;
    /// Why the bridge could not be asked, when its identity was refused: said instead of noConnection's text.
    QString refusal;
};

/// Asks the bridge for an application key after its link button was pressed.
class BridgePairing final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgePairing)

public:
    /// Outcome words of requestApiKey; any other outcome is the new key itself.
    static inline const QString pressButton = QStringLiteral("press_button");
    static inline const QString noConnection = QStringLiteral("no_connection");
    /// Longest name a bridge takes for a device.
    static constexpr qsizetype deviceTypeLimit = 40;

    /// The name the bridge keeps beside the key, so its owner can tell the keys apart: "glowdeck#" and the
    /// host name, cut to deviceTypeLimit. A host name that is empty or holds characters a bridge may refuse
    /// gives "glowdeck#linux" instead.
    static QString deviceType(const QString& hostName);
    /// The body of the link request, naming this machine.
    static QByteArray linkBody();

    BridgePairing(BridgeLink& settings, QNetworkAccessManager& network, QObject* parent = nullptr);

    /// Finds out how to reach the bridge at `address` (any form BridgeAddress takes) and who it is, then
    /// POSTs the link body to its "/api" and answers once with the key, pressButton (the bridge's errors 101
    /// and 1) or noConnection (no answer, a refused identity, an answer that is not a JSON array of results,
    /// an empty array, any other error). Only the first element of the answer counts. Pairing is where a
    /// bridge's identity is learnt: a new bridge id, and the key of a self-signed certificate, are trusted
    /// here.
    void requestApiKey(const QString& address, std::function<void(PairingOutcome)> done);

    /// The "Connect" action: asks the bridge at `hueIP`; on success sets `hueKey` and what was learnt of the
    /// bridge and emits paired(), otherwise sets `connectionErrorMessage` to the matching message. The stored
    /// key is left alone either way (the connection step stores it once the bridge has answered with lights).
    void pairWithBridge();

    /// The outcome of one link answer (a key, pressButton or noConnection): only its first element counts.
    static QString outcomeOf(const QString& reply);

    /// POST the link body to `url` (a bridge that must prove `identity`); the reply body as UTF-8 text, or
    /// nothing without an answer.
    void postString(const QString& url, const BridgeIdentity& identity,
                    std::function<void(std::optional<QString>)> done);

    static QString pressButtonMessage();
    static QString noConnectionMessage();

Q_SIGNALS:
    /// pairWithBridge() finished with this outcome (a key, pressButton or noConnection).
    void pairingFinished(const QString& outcome);
    /// pairWithBridge() stored a new key in `hueKey`: time to connect.
    void paired();

private:
    BridgeLink& m_settings;
    QNetworkAccessManager& m_network;
};
