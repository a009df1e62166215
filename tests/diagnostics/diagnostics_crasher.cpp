#include "diagnostics/Diagnostics.h"
#include "state/Console.h"
#include "state/MemorySettingsStore.h"
#include "state/SettingsKeys.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>

#include <stdexcept>
#include <sys/resource.h>

/// diagnostics_crasher terminate|segfault <crash folder> [<stored key>]
int main(int argc, char** argv)
{
    // Dying is the point here; a core file would only litter the build folder.
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);

    QCoreApplication application(argc, argv);
    if (argc != 3 && argc != 4)
        return 2;
    const QByteArray how = argv[1];
    QNetworkAccessManager network;
    MemorySettingsStore store;
    const QString key = argc == 4 ? QString::fromLocal8Bit(argv[3]) : QString();
    if (!key.isEmpty())
        store.setValue(SettingsKeys::bridgeUser, key);
    Diagnostics diagnostics(network, store, QUrl(), QString::fromLocal8Bit(argv[2]));
    diagnostics.start();
    for (int light = 1; light <= 60; ++light)
        printLine(QStringLiteral("Switching light %1 on").arg(light));
    if (!key.isEmpty()) {
        // Lines that hold a key the way careless code would print it.
        printLine(QStringLiteral("Using key ") + key);
        printLine(QStringLiteral("PUT http://127.0.0.1:9/api/%1/lights/1/state").arg(key));
    }

    if (how == "terminate")
        throw std::runtime_error(key.isEmpty() ? std::string("lamp on fire")
                                               : "lamp on fire at /api/" + key.toStdString() + "/lights");
    if (how == "segfault") {
        volatile int* volatile nowhere = nullptr;
        *nowhere = 1;
    }
    return 1;
}
