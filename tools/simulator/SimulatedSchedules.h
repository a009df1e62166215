#pragma once

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>

class QTimer;

/// The bridge's schedules, limited to one-shot timers ("localtime":"PThh:mm:ss"). Each timer really runs (a
/// QTimer on the calling thread) and, when due, hands its command back through commandDue().
class SimulatedSchedules final : public QObject
{
    Q_OBJECT
public:
    explicit SimulatedSchedules(QObject* parent = nullptr);
    ~SimulatedSchedules() override;

    /// POST /schedules: checks @p body, starts the timer and answers [{"success":{"id":".."}}] or errors.
    QJsonArray create(const QJsonObject& body);
    /// DELETE /schedules/<id>.
    QJsonArray remove(const QString& id);
    bool contains(const QString& id) const { return m_schedules.contains(id); }
    QJsonObject schedule(const QString& id) const { return m_schedules.value(id); }
    QStringList ids() const { return m_order; }
    /// The list as served, in creation order.
    QByteArray json() const;
    /// Stops and forgets every schedule.
    void clear();
    /// Runs the timer @p id now, as when its time comes; false when there is no such schedule.
    bool fire(const QString& id);

    /// Parses "PThh:mm:ss" (minutes and seconds below 60, as a bridge takes it) into milliseconds; -1 when it
    /// is not one.
    static qint64 timerDuration(const QString& localTime);

signals:
    /// A timer is due: the simulator should carry out @p method on @p address with @p body.
    void commandDue(const QByteArray& method, const QString& address, const QJsonObject& body);

private:
    QStringList m_order;
    QHash<QString, QJsonObject> m_schedules;
    QHash<QString, QTimer*> m_timers;
    int m_nextId = 1;
};
