#include "bridge/BridgeAnswer.h"

#include "bridge/ClipDecoder.h"
#include "bridge/HttpExchange.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// An error answer is a few hundred bytes; a list of this size is something else and not worth parsing twice.
constexpr qsizetype maxErrorAnswerBytes = 64 * 1024;

} // namespace

QStringList bridgeErrors(const QByteArray& body)
{
    if (body.size() > maxErrorAnswerBytes)
        return {};
    if (body.trimmed().startsWith('{'))
        return ClipDecoder::errorDescriptions(body);
    if (!body.trimmed().startsWith('['))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(body);
    QStringList errors;
    for (const QJsonValue entry : document.array()) {
        const QJsonValue error = entry.toObject().value(u"error");
        if (!error.isObject())
            continue;
        const QString description = error.toObject().value(u"description").toString();
        errors.append(!description.isEmpty()
                          ? description
                          : QStringLiteral("error %1").arg(error.toObject().value(u"type").toInteger()));
    }
    return errors;
}

WriteOutcome writeOutcome(const HttpResult& answer)
{
    using Kind = WriteOutcome::Kind;
    if (answer.timedOut)
        return {Kind::timedOut, 0, {}};
    if (answer.transportFailed)
        return {Kind::noAnswer, 0, answer.error};
    if (answer.tooLarge)
        return {Kind::unexpected, answer.status, {}};
    const QStringList errors = bridgeErrors(answer.body);
    // The current interface's 207: the parts named in `errors` were not done, the rest was.
    if (answer.status == 207)
        return {Kind::partly, answer.status,
                errors.isEmpty() ? QStringLiteral("part of the change was not taken")
                                 : errors.join(QStringLiteral("; "))};
    // A busy bridge of the current interface says so in `errors` too: its status decides, so that the
    // change goes again after a pause.
    if ((answer.status == 429 || answer.status == 503) && !answer.body.trimmed().startsWith('['))
        return {Kind::httpError, answer.status, errors.join(QStringLiteral("; "))};
    // The bridge's own words say more than its status, whatever status came with them.
    if (!errors.isEmpty())
        return {Kind::refused, answer.status, errors.join(QStringLiteral("; "))};
    if (answer.status < 200 || answer.status > 299)
        return {Kind::httpError, answer.status, {}};
    const QJsonDocument document = QJsonDocument::fromJson(answer.body);
    // {"errors": [], "data": [{"rid": "...", "rtype": "light"}]}
    if (document.isObject() && document.object().value(u"data").isArray())
        return {Kind::accepted, answer.status, {}};
    if (!document.isArray())
        return {Kind::unexpected, answer.status, {}};
    // [{"success":{"id":"3"}}] for a new schedule.
    const QJsonValue id = document.array().first().toObject().value(u"success").toObject().value(u"id");
    return {Kind::accepted, answer.status, {}, id.isString() ? id.toString().left(64) : QString()};
}
