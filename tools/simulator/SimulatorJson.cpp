#include "SimulatorJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <simdjson.h>

bool SimulatorJson::readMembers(const QByteArray& text, QList<Member>* members, QString* error)
{
    auto fail = [error](const QString& message) {
        if (error)
            *error = message;
        return false;
    };

    // The DOM parser walks object members in document order, which is the whole point of using it here.
    simdjson::dom::parser parser;
    const simdjson::padded_string padded(text.constData(), size_t(text.size()));
    simdjson::dom::element root;
    if (const auto code = parser.parse(padded).get(root); code != simdjson::SUCCESS)
        return fail(
            QStringLiteral("not valid JSON (%1)").arg(QString::fromUtf8(simdjson::error_message(code))));
    simdjson::dom::object object;
    if (root.get(object) != simdjson::SUCCESS)
        return fail(QStringLiteral("not a JSON object"));

    QList<Member> result;
    for (const auto field : object) {
        const std::string value = simdjson::minify(field.value);
        result.append({QString::fromUtf8(field.key.data(), qsizetype(field.key.size())),
                       QByteArray(value.data(), qsizetype(value.size()))});
    }
    if (members)
        *members = std::move(result);
    return true;
}

QJsonValue SimulatorJson::parseValue(const QByteArray& json)
{
    // QJsonDocument only takes objects and arrays at the top, so wrap the value in an array.
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson('[' + json + ']', &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isArray() || document.array().size() != 1)
        return QJsonValue(QJsonValue::Undefined);
    return document.array().first();
}

QByteArray SimulatorJson::write(const QJsonValue& value)
{
    if (value.isObject())
        return QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact);
    if (value.isArray())
        return QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact);
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return wrapped.mid(1, wrapped.size() - 2);
}

QByteArray SimulatorJson::quoted(const QString& text)
{
    return write(QJsonValue(text));
}

QByteArray SimulatorJson::writeObject(const QList<QPair<QString, QByteArray>>& members)
{
    QByteArray out("{");
    for (const auto& [key, json] : members) {
        if (out.size() > 1)
            out += ',';
        out += quoted(key);
        out += ':';
        out += json;
    }
    out += '}';
    return out;
}

QJsonObject SimulatorJson::error(int type, const QString& address, const QString& description)
{
    return QJsonObject{{QStringLiteral("error"), QJsonObject{{QStringLiteral("type"), type},
                                                             {QStringLiteral("address"), address},
                                                             {QStringLiteral("description"), description}}}};
}

QByteArray SimulatorJson::errorAnswer(int type, const QString& address, const QString& description)
{
    return write(QJsonArray{error(type, address, description)});
}

QJsonObject SimulatorJson::success(const QString& address, const QJsonValue& value)
{
    return QJsonObject{{QStringLiteral("success"), QJsonObject{{address, value}}}};
}

QString SimulatorJson::valueText(const QJsonValue& value)
{
    if (value.isString())
        return value.toString();
    return QString::fromUtf8(write(value));
}
