#pragma once

#include <QList>
#include <QSslCertificate>
#include <QString>
#include <QTemporaryDir>

#include <memory>

class BridgeSimulator;

/// `glowdeck --demo`: a simulated Hue bridge in this process and settings of its own in a fresh temporary
/// folder, so the demo never touches the user's settings or anything outside the machine.
class DemoMode final
{
public:
    DemoMode();
    ~DemoMode();

    /// Empties every outside address the user has not set explicitly. Call before anything reads them.
    static void switchOffOutsideAddresses();

    /// Starts the simulator on a free loopback port and writes its address (without a key, so the usual
    /// pairing runs) into the demo's settings file. False, with a message printed, on failure.
    bool start();

    QString settingsFile() const;
    QString crashFolder() const;
    /// The simulated bridge's own authority, trusted for its certificate in the demo only.
    QList<QSslCertificate> trustRoots() const;
    /// Where "Run at Start" keeps its record in the demo, instead of the user's real start-up settings.
    QString loginItemFolder() const;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<BridgeSimulator> m_bridge;
};
