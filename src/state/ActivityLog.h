#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

class QTimer;

/// What the program tells about itself: the log (printed to standard output as it grows, kept for the debug
/// window and reports), the notice shown to the user for a few seconds, and why settings may not have been
/// saved. No bridge key ever gets into it: every line is cleaned of each bridge's key (state/Redaction.h).
/// Lives on the main thread.
class ActivityLog final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ActivityLog)

public:
    /// The log is emptied, not trimmed, once it holds this many lines.
    static constexpr qsizetype capacity = 1001;
    /// How long a notice shows.
    static constexpr int noticeSeconds = 8;

    explicit ActivityLog(QObject* parent = nullptr);

    /// The key of the bridge `owner` stands for, to be kept out of every line from now on; an empty one
    /// forgets it.
    void setKey(const void* owner, const QString& key);

    /// Prints the line and appends it to the log, both with every key redacted.
    void addLogLine(const QString& message);
    /// Shows @p message to the user for a few seconds (the drop-down window's line) and logs it, or
    /// @p logLine in its place. A message shown already stays, for a few seconds from now.
    void showNotice(const QString& message, const QString& logLine = QString());

    QStringList log() const { return m_lines; }
    QString notice() const { return m_notice; }
    /// Why settings changed in this run may be lost (the settings store's words); empty while every change is
    /// saved.
    QString settingsSaveError() const { return m_saveError; }
    /// Logs a new reason, and says so with `settingsSaveErrorChanged`.
    void setSettingsSaveError(const QString& error);

Q_SIGNALS:
    void logChanged();
    void noticeChanged();
    void settingsSaveErrorChanged();

private:
    QStringList m_lines;
    QString m_notice;
    QString m_saveError;
    QHash<const void*, QString> m_keys;
    QTimer* m_noticeExpiry;
};
