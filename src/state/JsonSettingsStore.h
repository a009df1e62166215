#pragma once

#include "state/SettingsStore.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QVariantMap>

#include <memory>

class QFileSystemWatcher;
class QTimer;

/// The settings store on Linux and Windows: a JSON file, so values keep their JSON types. The file is the
/// user's, and other programs (glowdeckctl, an editor) may change it while Glowdeck runs:
/// - a save first reads the file again when it changed since it was last read or written (time, size or
///   content), keeps what others wrote and puts only the changed keys on top; the keys others changed
///   are announced (`setChangedElsewhereHandler`);
/// - `watchForChanges` follows the file, so their changes arrive within a second, also without a save;
/// - the file is replaced whole, through a temporary file in its folder and a rename, under a lock file;
///   a file this store creates (also after it vanished) is readable by its owner only, in a folder of its
///   own made the same; the mode of a file or folder it did not create is never changed;
/// - a symbolic link in its place (as dotfile managers keep them) is read and written through: the file it
///   leads to is replaced in its own folder, with its mode, and the link stays. Only a link this user made,
///   leading (through links of this user) to a regular file of this user, is followed: as root, a link
///   someone else put in a folder of theirs must not make us read or replace a system file.
///
/// Nothing the user has is ever overwritten or lost:
/// - a file that reads empty (when it held something) or is not valid JSON may be in the middle of another
///   program's write (an editor that truncates, then writes): nothing is taken from it and nothing is
///   written over it while it stays so, for up to two seconds while the file is watched (read again every
///   100 ms) and up to 0.8 s otherwise (glowdeckctl, the start); changes made meanwhile are held and
///   written on top of what the file then holds. A file that stays broken is treated as below; one that
///   stays empty is written anew with the settings held, and the user is told. At start, an empty file is
///   empty settings: it holds nothing to keep aside;
/// - a file that is not a JSON object, or is larger than maxFileBytes, is kept beside under a name of its own
///   (".broken-<time>", ".too-large-<time>", with "-2", "-3"... when that is taken) before anything is
///   written, the user is told, and the store goes on with what it held;
/// - a link not followed (also one that leads nowhere or to a folder), a folder or any other non-file in its
///   place, or a file that cannot be read, is left untouched: the store works in memory and says that
///   nothing is saved, and why;
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

    /// Takes in what other programs write to the file from now on (needs the event loop).
    void watchForChanges();

    bool contains(const QString& key) const override;
    QVariant value(const QString& key) const override;
    void setValue(const QString& key, const QVariant& value) override;
    void setValues(const QVariantMap& values) override;
    void remove(const QString& key) override;
    QString saveError() const override { return m_saveError; }

protected:
    void reportUnreadable(const QString& key, const QString& expected) const override;

private:
    /// What the file looked like when this store last read or wrote it.
    struct Seen
    {
        bool exists = false;
        QDateTime modified;
        qint64 size = -1;
        QByteArray content;
    };
    enum class Reading
    {
        read,     ///< the values are in `values`
        empty,    ///< nothing but white space
        missing,  ///< no file
        broken,   ///< not a JSON object, or too large: to be kept aside
        unusable, ///< not a regular file, a link not followed, or unreadable: left alone
    };
    /// Where the settings are read and written: the settings file itself, or the file its links lead to.
    struct Target
    {
        QString path;    ///< empty when the link is not followed
        QString refusal; ///< why not ("a symbolic link to a folder (...)")
    };
    /// The file as it is now.
    struct Snapshot
    {
        Reading reading = Reading::missing;
        QString path; ///< the file read (a link's target); empty when the link is not followed
        QVariantMap values;
        Seen seen;
        QString why; ///< unusable: the message; broken: "broken" or "too-large"
    };

    /// What takeInChanges found.
    enum class Taken
    {
        done,      ///< read (what others changed is in `m_changedElsewhere`), missing or left alone
        unsettled, ///< empty or half-written: maybe in the middle of another program's write
        broken,    ///< too large: to be kept aside
    };

    Target resolveTarget() const;
    /// Reads the file as it is now, without changing anything on disk.
    Snapshot readFile() const;
    /// Empty when it held something, or not valid JSON: the file may be in the middle of a write.
    bool isUnsettled(const Snapshot& now) const;
    /// Reads the file again after short sleeps while it is unsettled, for a moment at most.
    void waitWhileUnsettled() const;
    /// The lock beside the file written, so that a program going through a link and one going to its target
    /// take the same.
    QString lockFileName() const;
    /// The first reading at start: creates the file, or keeps a broken one aside.
    bool open();
    /// Reads the file again (into @p now) when it changed, keeping the changes not written yet, and adds the
    /// keys others changed to `m_changedElsewhere`. Changes nothing while the file is unsettled.
    Taken takeInChanges(Snapshot& now);
    void rewatch();
    /// Stores @p changes (an invalid value removes its key) over what the file holds now, in one write.
    void save(const QVariantMap& changes);
    /// Takes in what others wrote, writes the changes not written yet on top, and announces the keys others
    /// changed. While the file is unsettled nothing is written: watched, it is read again by a timer;
    /// otherwise the caller waits a moment. A file that stays unsettled is replaced (replaceUnusable).
    void sync();
    /// The file stayed empty or broken, or is too large: keeps a broken one aside, tells the user, and
    /// writes what this store holds in its place. An empty file is left as it is while this store holds
    /// nothing either.
    void replaceUnusable(const Snapshot& now);
    /// Writes where the settings file leads now, or says why it cannot.
    bool writeFile();
    /// Replaces the file at @p path (the settings file, or its link's target) with what this store holds.
    bool writeTo(const QString& path);
    bool createFolder(const QString& folder);
    /// Moves the file at @p path out of the way under a name no other file has; the new name, or empty.
    QString keepAside(const QString& path, const QString& why);
    void setSaveError(const QString& error);
    void warn(const QString& message) const;

    QString m_fileName;
    QVariantMap m_values;           // what the file holds, with the changes not written yet
    QVariantMap m_pending;          // those changes: key -> value, invalid for a removal
    QStringList m_changedElsewhere; // announced once a save is done
    Seen m_seen;
    bool m_inMemory = false; // nothing is written this run
    QString m_saveError;
    std::unique_ptr<QFileSystemWatcher> m_watcher;
    std::unique_ptr<QTimer> m_settle; // a burst of file events is read once
    std::unique_ptr<QTimer> m_retry;  // reads an unsettled file again
    QElapsedTimer m_unsettledSince;   // valid while the file is unsettled and watched
};
