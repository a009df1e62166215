#pragma once

#include <QSet>
#include <QString>
#include <QVariant>

#include <optional>

/// The user's persisted settings: typed values by key. A stored boolean stays a boolean and a string stays a
/// string, so readers can tell `false` from "false".
///
/// The readers are as lenient as the platform's own settings store ("yes" is true, "12" is 12). A value they
/// cannot read as the type they want is reported once per key, naming the key and that type; it reads as
/// absent and stays in the file as the user wrote it, until a new value is stored under that key.
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;

    virtual bool contains(const QString& key) const = 0;
    /// The stored value as it is (bool, qint64, double or QString); invalid when absent.
    virtual QVariant value(const QString& key) const = 0;
    virtual void setValue(const QString& key, const QVariant& value) = 0;
    virtual void remove(const QString& key) = 0;
    /// Why changes made so far may not have reached the disk (reported once when it happened); empty when
    /// every change is saved.
    virtual QString saveError() const { return {}; }

    /// A boolean, a number (true unless 0) or the text "true", "yes", "1", "false", "no" or "0" in any case.
    std::optional<bool> storedBool(const QString& key) const;
    /// A whole number, a boolean (1 or 0), a fraction (cut toward zero) or numeric text.
    std::optional<qint64> storedInt(const QString& key) const;
    /// Text only.
    std::optional<QString> storedString(const QString& key) const;

    /// storedBool, or false.
    bool readBool(const QString& key) const { return storedBool(key).value_or(false); }
    /// storedInt, or 0.
    qint64 readInt(const QString& key) const { return storedInt(key).value_or(0); }
    /// storedString: nothing when absent or not a string.
    std::optional<QString> readString(const QString& key) const { return storedString(key); }
    /// Whether `key` holds a value the reader of `expected` (QMetaType::Bool, LongLong or QString) cannot
    /// use.
    bool holdsUnreadable(const QString& key, QMetaType::Type expected) const;

    void writeBool(const QString& key, bool flag) { setValue(key, flag); }
    void writeInt(const QString& key, qint64 number) { setValue(key, number); }
    void writeString(const QString& key, const QString& text) { setValue(key, text); }

protected:
    /// Says that `key` holds something that is not `expected` ("a boolean", "a whole number", "text").
    /// Called once per key. The default prints one line on standard error.
    virtual void reportUnreadable(const QString& key, const QString& expected) const;

private:
    template <typename T>
    std::optional<T> unreadable(const QString& key, const char* expected) const;

    mutable QSet<QString> m_reportedKeys;
};
