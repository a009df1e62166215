#pragma once

#include "state/SettingsStore.h"

#include <QHash>

/// A store that keeps values in memory only: shows what the program costs without the settings file's
/// writes.
class MemoryStore final : public SettingsStore
{
public:
    bool contains(const QString& key) const override { return m_values.contains(key); }
    QVariant value(const QString& key) const override { return m_values.value(key); }
    void setValue(const QString& key, const QVariant& value) override { m_values.insert(key, value); }
    void remove(const QString& key) override { m_values.remove(key); }

private:
    QHash<QString, QVariant> m_values;
};
