#pragma once

#include "state/SettingsStore.h"

#include <memory>

class QSettings;

/// The settings store on Linux and Windows: a JSON file written through QSettings, so values keep their JSON
/// types. The file holds the bridge key and is readable by its owner only.
class JsonSettingsStore final : public SettingsStore
{
public:
    /// Opens `fileName`, creating it (and its folder) when missing. A file that is not a JSON object is not
    /// overwritten: it is kept beside under a ".broken-<time>" name, a message says so, and the store starts
    /// empty.
    explicit JsonSettingsStore(const QString& fileName);
    ~JsonSettingsStore() override;

    /// "glowdeck/settings.json" in the user's configuration folder ($XDG_CONFIG_HOME, else ~/.config).
    static QString defaultFileName();

    QString fileName() const;

    bool contains(const QString& key) const override;
    QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;

private:
    void save();

    std::unique_ptr<QSettings> m_settings;
    bool m_reportedWriteFailure = false;
};
