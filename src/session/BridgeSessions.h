#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class BridgeSession;

/// The sessions of the bridges Glowdeck serves, in the order of the stored contacts. The application and
/// glowdeckctl build them from the stored contacts and own them here; whole-home actions go to each.
class BridgeSessions final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeSessions)

public:
    explicit BridgeSessions(QObject* parent = nullptr);
    ~BridgeSessions() override;

    /// Takes `session` in, after the others; announced with `added`.
    BridgeSession& add(std::unique_ptr<BridgeSession> session);
    /// Ends the session, which is announced with `removed` first; nothing when it is not one of these.
    void remove(BridgeSession* session);
    /// The session of the bridge with this id (compared without regard to case); null when there is none.
    BridgeSession* find(const QString& bridgeId) const;
    /// Every session, in order.
    QList<BridgeSession*> all() const;
    /// The first session; null while there is none.
    BridgeSession* first() const;
    /// What the views call the session's bridge: its name, with the end of its id where another bridge has
    /// the same name (bridges are all called "Philips hue" until their owner renames them).
    QString nameOf(const BridgeSession& session) const;
    qsizetype size() const { return qsizetype(m_sessions.size()); }
    bool isEmpty() const { return m_sessions.empty(); }

Q_SIGNALS:
    void added(BridgeSession* session);
    /// Sent while the session still lives, just before it goes.
    void removed(BridgeSession* session);

private:
    std::vector<std::unique_ptr<BridgeSession>> m_sessions;
};
