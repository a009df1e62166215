#pragma once

#include "CtlArguments.h"

#include "state/SettingsStore.h"

#include <QVariantHash>

#include <cstdio>

/// What the command runners of glowdeckctl share: output and the settings file.
namespace Ctl {

/// Writes `text` as UTF-8 and flushes, so lines keep their order with those the libraries print.
void write(std::FILE* stream, const QString& text);
/// One line on standard error, after "glowdeckctl: ".
void printError(const QString& line);
/// `text` with control characters and bidirectional overrides replaced by '?': names and addresses from the
/// network must not reach the terminal as they are. Other characters, joiners of emoji included, stay.
QString printable(QString text);
/// --settings, else $GLOWDECK_SETTINGS, else the default file.
QString settingsFileName(const CtlInvocation& invocation);
/// "1 light", "3 lights".
QString counted(qsizetype count, const QString& noun);

/// Stands in for the settings file when there is none to read, so that a run never creates one.
class MemorySettingsStore final : public SettingsStore
{
public:
    bool contains(const QString& key) const override { return m_values.contains(key); }
    QVariant value(const QString& key) const override { return m_values.value(key); }
    void setValue(const QString& key, const QVariant& value) override { m_values.insert(key, value); }
    void remove(const QString& key) override { m_values.remove(key); }

private:
    QVariantHash m_values;
};

} // namespace Ctl
