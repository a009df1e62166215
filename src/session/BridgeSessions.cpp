#include "session/BridgeSessions.h"

#include "session/BridgeSession.h"
#include "state/BridgeLink.h"

#include <algorithm>

BridgeSessions::BridgeSessions(QObject* parent) : QObject(parent) {}

BridgeSessions::~BridgeSessions() = default;

BridgeSession& BridgeSessions::add(std::unique_ptr<BridgeSession> session)
{
    BridgeSession& added = *session;
    m_sessions.push_back(std::move(session));
    Q_EMIT this->added(&added);
    return added;
}

void BridgeSessions::remove(BridgeSession* session)
{
    const auto at =
        std::find_if(m_sessions.begin(), m_sessions.end(),
                     [session](const std::unique_ptr<BridgeSession>& s) { return s.get() == session; });
    if (at == m_sessions.end())
        return;
    Q_EMIT removed(session);
    // Out of the list before it goes, so that nothing its destruction sets off finds it here.
    std::unique_ptr<BridgeSession> leaving = std::move(*at);
    m_sessions.erase(at);
}

BridgeSession* BridgeSessions::find(const QString& bridgeId) const
{
    if (bridgeId.isEmpty())
        return nullptr;
    const auto at = std::find_if(m_sessions.begin(), m_sessions.end(), [&bridgeId](const auto& session) {
        return session->bridgeId().compare(bridgeId, Qt::CaseInsensitive) == 0;
    });
    return at == m_sessions.end() ? nullptr : at->get();
}

QList<BridgeSession*> BridgeSessions::all() const
{
    QList<BridgeSession*> sessions;
    sessions.reserve(size());
    for (const std::unique_ptr<BridgeSession>& session : m_sessions)
        sessions.append(session.get());
    return sessions;
}

QString BridgeSessions::nameOf(const BridgeSession& session) const
{
    const QString name = session.link().displayName();
    const QString id = session.bridgeId();
    const bool repeated = std::any_of(m_sessions.cbegin(), m_sessions.cend(), [&](const auto& other) {
        return other.get() != &session && other->link().displayName() == name;
    });
    return repeated && !id.isEmpty() && name != id ? QStringLiteral("%1 (%2)").arg(name, id.right(6)) : name;
}

BridgeSession* BridgeSessions::first() const
{
    return m_sessions.empty() ? nullptr : m_sessions.front().get();
}
