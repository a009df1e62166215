#pragma once

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

/// The plain data of a simulated home and its file format: one JSON object {"lights":{..},"groups":{..},
/// "scenes":{..},"sensors":{..},"config":{..},"users":[..]}, resource ids kept in document order; "sensors"
/// (switches with batteries) may be missing. A dump of a bridge's full
/// state reads as well (its users then come from the config's whitelist).
struct SimulatedHomeDocument final
{
    /// One resource list. When isRaw is set the list is the verbatim text in raw and holds no items.
    struct Resources
    {
        QStringList order;
        QHash<QString, QJsonObject> items;
        QByteArray raw;
        bool isRaw = false;
    };

    /// A registered application ("whitelist" entry).
    struct User
    {
        QString name;
        QString deviceType;
        QString created;
        QString lastUsed;
    };

    Resources lights;
    Resources groups;
    Resources scenes;
    Resources sensors;
    QJsonObject config;
    QList<User> users;

    /// Reads and checks a home document. On failure @p error says what is wrong and @p out is untouched.
    static bool read(const QByteArray& text, SimulatedHomeDocument* out, QString* error = nullptr);
    /// Reads an object of id -> object in document order; @p name prefixes the messages.
    static bool readResources(const QByteArray& json, const QString& name, Resources* out,
                              QString* error = nullptr);
    /// Writes the document, one resource per line. Fails when a list holds raw text.
    bool write(QByteArray* text, QString* error = nullptr) const;
};
