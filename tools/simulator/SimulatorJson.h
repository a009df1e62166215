#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QPair>
#include <QString>

/// JSON helpers of the simulator. A bridge serves the ids of a resource list in its own order, while
/// QJsonObject sorts its keys, so object members that must keep their order are read with simdjson and
/// written by hand here. Also builds the bridge's answer items.
class SimulatorJson final
{
public:
    /// One member of a JSON object, its value still as (minified) JSON text.
    struct Member
    {
        QString key;
        QByteArray json;
    };

    /// Reads the members of the JSON object @p text in document order. Returns false, with a readable reason
    /// in
    /// @p error, when @p text is not a single JSON object.
    static bool readMembers(const QByteArray& text, QList<Member>* members, QString* error = nullptr);

    /// Parses any JSON value text, scalars included. Returns an undefined value when @p json is not JSON.
    static QJsonValue parseValue(const QByteArray& json);

    /// @p value as compact JSON text (scalars included).
    static QByteArray write(const QJsonValue& value);

    /// The JSON string literal for @p text.
    static QByteArray quoted(const QString& text);

    /// An object built from already written member values, in the given order.
    static QByteArray writeObject(const QList<QPair<QString, QByteArray>>& members);

    /// One item of an error answer: {"error":{"type":..,"address":..,"description":..}}.
    static QJsonObject error(int type, const QString& address, const QString& description);

    /// A whole error answer: an array holding the one error item.
    static QByteArray errorAnswer(int type, const QString& address, const QString& description);

    /// One item of a success answer: {"success":{address:value}}.
    static QJsonObject success(const QString& address, const QJsonValue& value);

    /// How a bridge quotes a rejected value in "invalid value, X, for parameter, Y": strings bare, the rest
    /// as JSON text.
    static QString valueText(const QJsonValue& value);

    SimulatorJson() = delete;
};
