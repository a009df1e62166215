#include "state/HomeModel.h"

#include "state/BridgeHome.h"

#include <algorithm>

HomeModel::HomeModel(QObject* parent) : QObject(parent) {}

HomeModel::~HomeModel() = default;

BridgeHome& HomeModel::add(const QString& bridgeId)
{
    m_homes.push_back(std::make_unique<BridgeHome>(bridgeId));
    BridgeHome& home = *m_homes.back();
    Q_EMIT bridgeAdded(&home);
    return home;
}

void HomeModel::remove(BridgeHome* home)
{
    const auto at =
        std::find_if(m_homes.begin(), m_homes.end(), [home](const auto& h) { return h.get() == home; });
    if (at == m_homes.end())
        return;
    Q_EMIT bridgeRemoved(home);
    std::unique_ptr<BridgeHome> leaving = std::move(*at);
    m_homes.erase(at);
}

BridgeHome* HomeModel::find(const QString& bridgeId) const
{
    if (bridgeId.isEmpty())
        return nullptr;
    const auto at = std::find_if(m_homes.begin(), m_homes.end(), [&bridgeId](const auto& home) {
        return home->bridgeId().compare(bridgeId, Qt::CaseInsensitive) == 0;
    });
    return at == m_homes.end() ? nullptr : at->get();
}

QList<BridgeHome*> HomeModel::homes() const
{
    QList<BridgeHome*> homes;
    for (const auto& home : m_homes)
        homes.append(home.get());
    return homes;
}
