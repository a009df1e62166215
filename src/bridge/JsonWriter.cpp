#include "bridge/JsonWriter.h"

#include <charconv>
#include <cmath>
#include <cstdio>

void JsonWriter::separate()
{
    if (m_needsComma)
        m_text.append(',');
    m_needsComma = true;
}

JsonWriter& JsonWriter::beginObject()
{
    separate();
    m_text.append('{');
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::endObject()
{
    m_text.append('}');
    m_needsComma = true;
    return *this;
}

JsonWriter& JsonWriter::beginArray()
{
    separate();
    m_text.append('[');
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::endArray()
{
    m_text.append(']');
    m_needsComma = true;
    return *this;
}

JsonWriter& JsonWriter::key(QStringView name)
{
    value(name);
    m_text.append(':');
    m_needsComma = false;
    return *this;
}

JsonWriter& JsonWriter::value(QStringView text)
{
    separate();
    m_text.append('"');
    // Bytes of multi-byte UTF-8 sequences are all 0x80 or above, so escaping byte by byte is safe.
    for (const char c : text.toUtf8()) {
        switch (c) {
        case '"':
            m_text.append("\\\"");
            break;
        case '\\':
            m_text.append("\\\\");
            break;
        case '\n':
            m_text.append("\\n");
            break;
        case '\r':
            m_text.append("\\r");
            break;
        case '\t':
            m_text.append("\\t");
            break;
        default:
            if (uchar(c) < 0x20) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", unsigned(uchar(c)));
                m_text.append(escaped);
            } else {
                m_text.append(c);
            }
        }
    }
    m_text.append('"');
    return *this;
}

JsonWriter& JsonWriter::value(bool flag)
{
    separate();
    m_text.append(flag ? "true" : "false");
    return *this;
}

JsonWriter& JsonWriter::value(qint64 number)
{
    separate();
    m_text.append(QByteArray::number(number));
    return *this;
}

namespace {

template <typename Float>
QByteArray shortestText(Float number)
{
    if (!std::isfinite(number))
        return QByteArrayLiteral("null"); // JSON has no NaN or infinity
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    return QByteArray(buffer, result.ptr - buffer);
}

} // namespace

JsonWriter& JsonWriter::value(float number)
{
    separate();
    m_text.append(shortestText(number));
    return *this;
}

JsonWriter& JsonWriter::value(double number)
{
    separate();
    m_text.append(shortestText(number));
    return *this;
}

JsonWriter& JsonWriter::value(const QStringList& texts)
{
    beginArray();
    for (const QString& text : texts)
        value(text);
    return endArray();
}

JsonWriter& JsonWriter::null()
{
    separate();
    m_text.append("null");
    return *this;
}

JsonWriter& JsonWriter::raw(const QByteArray& json)
{
    separate();
    m_text.append(json);
    return *this;
}
