#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class BridgeHome;

/// The home as the views observe it: one BridgeHome per bridge, in the order the bridges are stored. The
/// application keeps one per session; the views of today show the first.
class HomeModel final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HomeModel)

public:
    explicit HomeModel(QObject* parent = nullptr);
    ~HomeModel() override;

    /// A new, empty home for the bridge with this id (empty while it is not known), after the others.
    BridgeHome& add(const QString& bridgeId = QString());
    /// Drops `home`, announced with `bridgeRemoved` while it still lives; nothing when it is not one of
    /// these.
    void remove(BridgeHome* home);
    /// The home of the bridge with this id (compared without regard to case); null when there is none.
    BridgeHome* find(const QString& bridgeId) const;
    QList<BridgeHome*> homes() const;

Q_SIGNALS:
    void bridgeAdded(BridgeHome* home);
    void bridgeRemoved(BridgeHome* home);

private:
    std::vector<std::unique_ptr<BridgeHome>> m_homes;
};
