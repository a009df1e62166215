#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <functional>
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
    /// Stores several values at once, so that another program reading the settings sees all of them or none
    /// (an address with the key that belongs to it). An invalid value removes its key. The default stores
    /// them one by one.
    virtual void setValues(const QVariantMap& values);
    virtual void remove(const QString& key) = 0;
    /// Why changes made so far may not have reached the disk (reported once when it happened); empty when
    /// every change is saved.
    virtual QString saveError() const { return {}; }

    /// Called with the keys another program changed, once the store holds their new values.
    void setChangedElsewhereHandler(std::function<void(const QStringList& keys)> handler)
    {
        m_changedElsewhere = std::move(handler);
    }
    /// Called when `saveError` changes: a save failed, or one succeeded after a failure.
    void setSaveErrorHandler(std::function<void()> handler) { m_saveErrorChanged = std::move(handler); }
    /// Called with a message for the user about something the store did on its own (a broken file kept
    /// aside).
    void setNoticeHandler(std::function<void(const QString&)> handler) { m_notice = std::move(handler); }

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
    void notifyChangedElsewhere(const QStringList& keys) const
    {
        if (m_changedElsewhere && !keys.isEmpty())
            m_changedElsewhere(keys);
    }
    void notifySaveErrorChanged() const
    {
        if (m_saveErrorChanged)
            m_saveErrorChanged();
    }
    void notify(const QString& message) const
    {
        if (m_notice)
            m_notice(message);
    }

    /// Says that `key` holds something that is not `expected` ("a boolean", "a whole number", "text").
    /// Called once per key. The default prints one line on standard error.
    virtual void reportUnreadable(const QString& key, const QString& expected) const;

private:
    template <typename T>
    std::optional<T> unreadable(const QString& key, const char* expected) const;

    mutable QSet<QString> m_reportedKeys;
    std::function<void(const QStringList&)> m_changedElsewhere;
    std::function<void()> m_saveErrorChanged;
    std::function<void(const QString&)> m_notice;
};
