#pragma once

#include "state/SettingsStore.h"

#include <QVariantHash>

/// Settings kept in memory only, for runs that must not touch a settings file: glowdeckctl without one, the
/// crash-report test's dying process, the benchmarks (which show what the program costs without the file's
/// writes).
class MemorySettingsStore final : public SettingsStore
{
public:
    bool contains(const QString& key) const override { return m_values.contains(key); }
    QVariant value(const QString& key) const override { return m_values.value(key); }
    void setValue(const QString& key, const QVariant& value) override { m_values.insert(key, value); }
    void setValues(const QVariantMap& values) override
    {
        for (auto it = values.begin(); it != values.end(); ++it) {
            if (it.value().isValid())
                m_values.insert(it.key(), it.value());
            else
                m_values.remove(it.key());
        }
    }
    void remove(const QString& key) override { m_values.remove(key); }

private:
    QVariantHash m_values;
};
