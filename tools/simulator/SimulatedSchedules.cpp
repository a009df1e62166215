#include "SimulatedSchedules.h"

#include "SimulatorJson.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTimer>

#include <limits>
#include <utility>

namespace {

constexpr int MaximumSchedules = 100;

QJsonObject invalidValue(const QString& address, const QJsonValue& value, const QString& parameter)
{
    return SimulatorJson::error(7, address,
                                QStringLiteral("invalid value, %1, for parameter, %2")
                                    .arg(SimulatorJson::valueText(value), parameter));
}

} // namespace

SimulatedSchedules::SimulatedSchedules(QObject* parent) : QObject(parent) {}

SimulatedSchedules::~SimulatedSchedules() = default;

qint64 SimulatedSchedules::timerDuration(const QString& localTime)
{
    // As a bridge reads it: two digits each, minutes and seconds below 60.
    static const QRegularExpression pattern(QStringLiteral("^PT(\\d\\d):([0-5]\\d):([0-5]\\d)$"));
    const QRegularExpressionMatch match = pattern.match(localTime);
    if (!match.hasMatch())
        return -1;
    const qint64 milliseconds = ((match.captured(1).toLongLong() * 60 + match.captured(2).toLongLong()) * 60 +
                                 match.captured(3).toLongLong()) *
                                1000;
    // QTimer counts in int milliseconds: about 24 days is the longest timer we can run.
    return milliseconds <= std::numeric_limits<int>::max() ? milliseconds : -1;
}

QJsonArray SimulatedSchedules::create(const QJsonObject& body)
{
    const QString base = QStringLiteral("/schedules");
    QJsonArray errors;
    const QJsonValue command = body.value(QLatin1String("command"));
    const QJsonValue localTime = body.contains(QLatin1String("localtime"))
                                     ? body.value(QLatin1String("localtime"))
                                     : body.value(QLatin1String("time"));
    if (!command.isObject() || localTime.isUndefined()) {
        errors.append(SimulatorJson::error(5, base, QStringLiteral("invalid/missing parameters in body")));
        return errors;
    }

    const QJsonObject commandObject = command.toObject();
    const QJsonValue address = commandObject.value(QLatin1String("address"));
    const QJsonValue method = commandObject.value(QLatin1String("method"));
    const QJsonValue commandBody = commandObject.value(QLatin1String("body"));
    if (!address.isString() || !address.toString().startsWith(QLatin1String("/api/")))
        errors.append(invalidValue(base + QStringLiteral("/command"), address, QStringLiteral("address")));
    if (!method.isString() ||
        !QStringList{QStringLiteral("PUT"), QStringLiteral("POST"), QStringLiteral("DELETE")}.contains(
            method.toString()))
        errors.append(invalidValue(base + QStringLiteral("/command"), method, QStringLiteral("method")));
    if (!commandBody.isObject())
        errors.append(invalidValue(base + QStringLiteral("/command"), commandBody, QStringLiteral("body")));
    // Only relative timers are simulated; recurring ("R/PT..") and absolute times are refused.
    const qint64 duration = timerDuration(localTime.toString());
    if (duration < 0)
        errors.append(
            invalidValue(base + QStringLiteral("/localtime"), localTime, QStringLiteral("localtime")));
    // A bridge takes names of up to 32 characters and descriptions of up to 64.
    for (const auto& [key, longest] : {std::pair{"name", 32}, std::pair{"description", 64}}) {
        const QJsonValue value = body.value(QLatin1String(key));
        if (!value.isUndefined() && (!value.isString() || value.toString().size() > longest))
            errors.append(
                invalidValue(base + QLatin1Char('/') + QLatin1String(key), value, QLatin1String(key)));
    }
    for (const char* key : {"autodelete", "recycle"}) {
        const QJsonValue value = body.value(QLatin1String(key));
        if (!value.isUndefined() && !value.isBool())
            errors.append(
                invalidValue(base + QLatin1Char('/') + QLatin1String(key), value, QLatin1String(key)));
    }
    const QJsonValue status = body.value(QLatin1String("status"));
    if (!status.isUndefined() && status != QJsonValue(QStringLiteral("enabled")) &&
        status != QJsonValue(QStringLiteral("disabled")))
        errors.append(invalidValue(base + QStringLiteral("/status"), status, QStringLiteral("status")));
    if (m_order.size() >= MaximumSchedules)
        errors.append(SimulatorJson::error(301, base, QStringLiteral("Schedules list is full")));
    if (!errors.isEmpty())
        return errors;

    const QString id = QString::number(m_nextId++);
    const QString now = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    const QJsonObject schedule{
        {QStringLiteral("name"), body.value(QLatin1String("name")).toString(QStringLiteral("schedule"))},
        {QStringLiteral("description"), body.value(QLatin1String("description")).toString()},
        {QStringLiteral("command"), commandObject},
        {QStringLiteral("localtime"), localTime},
        {QStringLiteral("time"), localTime},
        {QStringLiteral("created"), now},
        {QStringLiteral("status"), status.toString(QStringLiteral("enabled"))},
        {QStringLiteral("autodelete"), body.value(QLatin1String("autodelete")).toBool(true)},
        {QStringLiteral("recycle"), body.value(QLatin1String("recycle")).toBool(false)},
        {QStringLiteral("starttime"), now},
    };
    m_order.append(id);
    m_schedules.insert(id, schedule);
    if (schedule.value(QLatin1String("status")) == QJsonValue(QStringLiteral("enabled"))) {
        auto* timer = new QTimer(this);
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        connect(timer, &QTimer::timeout, this, [this, id] { fire(id); });
        timer->start(int(duration));
        m_timers.insert(id, timer);
    }
    return QJsonArray{QJsonObject{{QStringLiteral("success"), QJsonObject{{QStringLiteral("id"), id}}}}};
}

QJsonArray SimulatedSchedules::remove(const QString& id)
{
    if (!contains(id))
        return QJsonArray{
            SimulatorJson::error(3, QStringLiteral("/schedules/%1").arg(id),
                                 QStringLiteral("resource, /schedules/%1, not available").arg(id))};
    delete m_timers.take(id);
    m_schedules.remove(id);
    m_order.removeAll(id);
    return QJsonArray{
        QJsonObject{{QStringLiteral("success"), QStringLiteral("/schedules/%1 deleted").arg(id)}}};
}

QByteArray SimulatedSchedules::json() const
{
    QList<QPair<QString, QByteArray>> members;
    for (const QString& id : m_order)
        members.append({id, SimulatorJson::write(m_schedules.value(id))});
    return SimulatorJson::writeObject(members);
}

void SimulatedSchedules::clear()
{
    qDeleteAll(m_timers);
    m_timers.clear();
    m_schedules.clear();
    m_order.clear();
}

bool SimulatedSchedules::fire(const QString& id)
{
    if (QTimer* timer = m_timers.take(id))
        timer->deleteLater();
    if (!contains(id))
        return false;
    QJsonObject schedule = m_schedules.value(id);
    // Settle the schedule's own state first: the command may well touch the schedules again.
    if (schedule.value(QLatin1String("autodelete")).toBool(true)) {
        m_schedules.remove(id);
        m_order.removeAll(id);
    } else {
        schedule.insert(QStringLiteral("status"), QStringLiteral("disabled"));
        m_schedules.insert(id, schedule);
    }
    const QJsonObject command = schedule.value(QLatin1String("command")).toObject();
    emit commandDue(command.value(QLatin1String("method")).toString().toLatin1(),
                    command.value(QLatin1String("address")).toString(),
                    command.value(QLatin1String("body")).toObject());
    return true;
}
