#include "model/BridgeContact.h"

namespace {

/// The text member `name` of `object`, or empty when it is absent or not text (said in `problems`).
QString textMember(const QJsonObject& object, QStringView name, QStringList* problems)
{
    const QJsonValue value = object.value(name);
    if (value.isUndefined() || value.isNull())
        return {};
    if (!value.isString()) {
        if (problems)
            problems->append(QStringLiteral("its \"%1\" is not text and was left out").arg(name));
        return {};
    }
    return value.toString();
}

} // namespace

QString BridgeContact::endpoint() const
{
    const std::optional<BridgeAddress> parsed = BridgeAddress::parse(address);
    if (!parsed || (parsed->scheme.isEmpty() && transport.isEmpty()))
        return {};
    return parsed->base(transport);
}

QJsonObject BridgeContact::toJson() const
{
    return {{QStringLiteral("id"), id},
            {QStringLiteral("address"), address},
            {QStringLiteral("key"), key},
            {QStringLiteral("transport"), transport},
            {QStringLiteral("certificate"), QString::fromLatin1(certificate.toHex())},
            {QStringLiteral("name"), name}};
}

std::optional<BridgeContact> BridgeContact::fromJson(const QJsonValue& value, QStringList* problems)
{
    if (!value.isObject()) {
        if (problems)
            problems->append(QStringLiteral("it is not an object"));
        return std::nullopt;
    }
    const QJsonObject object = value.toObject();
    BridgeContact contact;
    contact.address = textMember(object, u"address", problems);
    contact.key = textMember(object, u"key", problems);
    contact.name = textMember(object, u"name", problems);
    // What is not of its shape is not used: the bridge is then simply asked again.
    const QString id = textMember(object, u"id", problems);
    if (BridgeIdentity::isBridgeId(id))
        contact.id = id.toUpper();
    else if (!id.isEmpty() && problems)
        problems->append(QStringLiteral("its \"id\" is no bridge id and was left out"));
    const QString transport = textMember(object, u"transport", problems);
    if (transport == BridgeAddress::https || transport == BridgeAddress::http)
        contact.transport = transport;
    else if (!transport.isEmpty() && problems)
        problems->append(QStringLiteral("its \"transport\" is neither https nor http and was left out"));
    const QString certificate = textMember(object, u"certificate", problems);
    const QByteArray pinned = QByteArray::fromHex(certificate.toLatin1());
    if (pinned.size() == 32 &&
        QString::fromLatin1(pinned.toHex()).compare(certificate, Qt::CaseInsensitive) == 0)
        contact.certificate = pinned;
    else if (!certificate.isEmpty() && problems)
        problems->append(QStringLiteral("its \"certificate\" is not a key's hash and was left out"));
    return contact;
}
