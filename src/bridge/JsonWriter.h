#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Writes compact JSON text with members in the order they are written (QJsonObject would sort them).
/// Numbers use the shortest text that reads back to the same value, so a float 0.3171 stays "0.3171".
class JsonWriter final
{
public:
    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    JsonWriter& key(QStringView name);

    JsonWriter& value(QStringView text);
    JsonWriter& value(const char* text) { return value(QString::fromUtf8(text)); }
    JsonWriter& value(bool flag);
    JsonWriter& value(qint64 number);
    JsonWriter& value(int number) { return value(qint64(number)); }
    JsonWriter& value(float number);
    JsonWriter& value(double number);
    JsonWriter& value(const QStringList& texts);
    JsonWriter& null();
    /// Inserts already encoded JSON as one value.
    JsonWriter& raw(const QByteArray& json);

    /// `name: value` in one call.
    template <typename T>
    JsonWriter& member(QStringView name, const T& v)
    {
        key(name);
        return value(v);
    }

    const QByteArray& text() const { return m_text; }

private:
    void separate();

    QByteArray m_text;
    bool m_needsComma = false;
};
