#pragma once

#include "state/Preferences.h"

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

class CrashRecorder;
class QNetworkAccessManager;
class SettingsStore;

/// Start-up notices, uncaught errors and crash reports, posted as Rollbar items to the product's
/// error-collection endpoint. No endpoint (or reports switched off by the user) means nothing is sent. Every
/// item and every line a crash report keeps passes through the redaction of state/Redaction.h first.
class Diagnostics final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Diagnostics)

public:
    /// The project's access token for the error-collection service.
    static inline const QString accessToken = QStringLiteral("3f9c1a7e5b2d4c6e8a0b1c2d3e4f5a6b");

    /// `crashFolder` keeps crash reports written while the process dies, until the next start sends them.
    Diagnostics(QNetworkAccessManager& network, SettingsStore& store, QUrl endpoint, QString crashFolder,
                QObject* parent = nullptr);
    ~Diagnostics() override;

    /// Sends the crash reports left by an earlier run, then the information message "Glowdeck booted", and
    /// installs the handlers for uncaught exceptions and fatal signals.
    void start();

    /// Whether anything is sent at all (an endpoint is set and the user has not switched reports off).
    bool isEnabled() const;

    /// Sends `message` as an information item.
    void reportInfo(const QString& message);
    /// An uncaught exception: prints "[ATTENTION] Uncaught exception <what>" and reports it at debug level.
    void reportUncaughtException(const QString& what);

Q_SIGNALS:
    /// An item went out (tests wait for it).
    void itemSent();

private:
    /// `text` without the stored key or anything shaped like a key in a request path.
    QString redact(const QString& text) const;
    void sendCrashReports();
    /// Posts one item; `done` learns whether the collector answered at all.
    void sendItem(const QString& level, const QJsonObject& body,
                  std::function<void(bool answered)> done = {});

    QNetworkAccessManager& m_network;
    Preferences m_preferences;
    QUrl m_endpoint;
    QString m_crashFolder;
    std::unique_ptr<CrashRecorder> m_recorder; // null until start()
};
