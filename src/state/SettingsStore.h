#pragma once

#include <QString>
#include <QVariant>

#include <optional>

/// The user's persisted settings: typed values by key. A stored boolean stays a boolean and a string stays a
/// string, so readers can tell `false` from "false".
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;

    virtual bool contains(const QString& key) const = 0;
    /// The stored value as it is (bool, qint64, double or QString); invalid when absent.
    virtual QVariant value(const QString& key) const = 0;
    virtual void setValue(const QString& key, const QVariant& value) = 0;
    virtual void remove(const QString& key) = 0;

    /// false when absent; numbers count as true unless 0; the strings "true", "yes" and "1" count as true.
    bool readBool(const QString& key) const;
    /// 0 when absent or not a number; a true boolean reads as 1, numeric text as its number.
    qint64 readInt(const QString& key) const;
    /// Nothing when absent or not a string.
    std::optional<QString> readString(const QString& key) const;

    void writeBool(const QString& key, bool flag) { setValue(key, flag); }
    void writeInt(const QString& key, qint64 number) { setValue(key, number); }
    void writeString(const QString& key, const QString& text) { setValue(key, text); }
};
