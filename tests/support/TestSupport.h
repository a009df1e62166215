#pragma once

#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/Console.h"
#include "state/JsonSettingsStore.h"

#include <QNetworkAddressEntry>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A settings file of its own in a fresh temporary folder, with the shared state on top of it.
class TestSettings final
{
public:
    TestSettings();

    QString fileName() const { return m_dir.filePath(QStringLiteral("settings.json")); }
    JsonSettingsStore& store() { return *m_store; }
    BridgeLink& settings() { return *m_settings; }
    /// Drops the state and opens the same file again, as a new start of the program would.
    void reopen();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<JsonSettingsStore> m_store;
    std::unique_ptr<BridgeLink> m_settings;
};

/// Collects the diagnostic lines printed while it lives.
class PrintedLines final
{
public:
    PrintedLines();
    ~PrintedLines();
    QStringList lines() const { return m_lines; }

private:
    QStringList m_lines;
    LineSink m_previous;
};

/// This computer's networks as a test sets them for discovery: "192.168.1.10/24" each; loopback
/// ("127.0.0.1/8") alone when none are given.
QList<QNetworkAddressEntry> ownNetworks(const QStringList& addressesAndPrefixes = {u"127.0.0.1/8"_qs});
