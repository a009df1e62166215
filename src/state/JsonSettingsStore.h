#pragma once

#include "state/SettingsStore.h"

#include <QVariantMap>

#include <memory>

class QSettings;

/// The settings store on Linux and Windows: a JSON file written through QSettings, so values keep their JSON
/// types. A save writes only the keys this process changed over what the file holds then: what another
/// process (glowdeckctl) stored meanwhile under other keys stays. The file holds the bridge key and is
/// readable by its owner only.
///
/// Nothing the user has is ever overwritten or lost:
/// - a file that is not a JSON object, or is larger than maxFileBytes, is kept beside under a name of its own
///   (".broken-<time>", ".too-large-<time>", with "-2", "-3"... when that is taken) and the store starts
///   empty;
/// - a folder or any other non-file in its place, or a file that cannot be read, is left untouched: the store
///   works in memory and says that nothing is saved;
/// - a value of the wrong type is reported (SettingsStore) and stays in the file.
/// Each problem is reported once on standard error, naming the file.
class JsonSettingsStore final : public SettingsStore
{
public:
    /// No settings file of ours comes near this; a bigger one is not read.
    static constexpr qint64 maxFileBytes = 1024 * 1024;

    /// Opens `fileName`, creating it (and its folder) when missing.
    explicit JsonSettingsStore(const QString& fileName);
    ~JsonSettingsStore() override;

    /// "glowdeck/settings.json" in the user's configuration folder ($XDG_CONFIG_HOME, else ~/.config).
    static QString defaultFileName();

    /// The values of a settings file's text; nothing when it is not a JSON object. Empty text is an empty
    /// object.
    static std::optional<QVariantMap> parse(const QByteArray& text);

    QString fileName() const { return m_fileName; }

    bool contains(const QString& key) const override;
    QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void remove(const QString& key) override;
    QString saveError() const override { return m_saveError; }

protected:
    void reportUnreadable(const QString& key, const QString& expected) const override;

private:
    /// Makes sure a readable regular file of ours is there; false when the store must stay in memory.
    bool prepareFile();
    /// Moves the file out of the way under a name no other file has; the new name, or empty.
    QString keepAside(const QString& why);
    void save();
    void warn(const QString& message) const;

    QString m_fileName;
    std::unique_ptr<QSettings> m_settings; // null while the store works in memory
    QVariantMap m_memory;
    QString m_saveError;
};
