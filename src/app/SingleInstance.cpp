#include "app/SingleInstance.h"

#include "state/Console.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>

#include <optional>

namespace {

constexpr QByteArrayView openRequest = "open\n";
constexpr QByteArrayView openAnswer = "opened\n";
constexpr int answerMilliseconds = 2000;

/// The path with its symbolic links resolved, also while its last parts do not exist yet (the file, or its
/// "glowdeck" folder, before the first start made them): the deepest part that exists is resolved and the
/// rest appended, so that "~/.config" as a link and the folder it leads to give one path.
QString resolvedPath(const QString& fileName)
{
    QString path = QDir::cleanPath(QFileInfo(fileName).absoluteFilePath());
    QStringList missing;
    for (;;) {
        const QString canonical = QFileInfo(path).canonicalFilePath();
        if (!canonical.isEmpty())
            return missing.isEmpty() ? canonical : QDir(canonical).filePath(missing.join(u'/'));
        const QFileInfo part(path);
        const QString parent = part.absolutePath();
        if (parent == path)
            return QDir::cleanPath(QFileInfo(fileName).absoluteFilePath());
        missing.prepend(part.fileName());
        path = parent;
    }
}

} // namespace

SingleInstance::SingleInstance(QString settingsFile, QObject* parent)
    : QObject(parent), m_name(socketName(settingsFile))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::onConnection);
}

QString SingleInstance::socketName(const QString& settingsFile)
{
    const QString path = resolvedPath(settingsFile);
    const QByteArray digest = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256).toHex();
    const QString name = QStringLiteral("glowdeck-") + QString::fromLatin1(digest.left(16));
    // The session's own folder; without one, the shared temporary folder with the user's name in the
    // socket's.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir())
        return runtime + u'/' + name;
    return QDir::tempPath() + u'/' + qEnvironmentVariable("USER", QStringLiteral("user")) + u'-' + name;
}

SingleInstance::Claim SingleInstance::claim()
{
    if (const std::optional<Claim> other = handOver())
        return *other;
    if (m_server.listen(m_name))
        return Claim::first;
    // Taken, yet nobody answered a moment ago: a start at the same moment may have just won, or a run that
    // died left its socket behind. Ask once more before clearing it away.
    if (const std::optional<Claim> other = handOver())
        return *other;
    QLocalServer::removeServer(m_name);
    if (!m_server.listen(m_name))
        printLine(QStringLiteral("Glowdeck: a later start cannot find this one (%1: %2).")
                      .arg(QDir::toNativeSeparators(m_name), m_server.errorString()));
    return Claim::first;
}

std::optional<SingleInstance::Claim> SingleInstance::handOver()
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    // A local connection is made or refused at once; nothing listening is no instance.
    if (!socket.waitForConnected(answerMilliseconds))
        return std::nullopt;
    socket.write(openRequest.data(), openRequest.size());
    QByteArray answer;
    while (!answer.endsWith('\n') && socket.waitForReadyRead(answerMilliseconds))
        answer += socket.readAll();
    return answer == openAnswer ? Claim::handedOver : Claim::unanswered;
}

void SingleInstance::onConnection()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
            // Only the one request; anything else (or more than a line) closes the connection unanswered.
            if (socket->bytesAvailable() < openRequest.size())
                return;
            if (socket->read(openRequest.size()) == openRequest) {
                Q_EMIT openRequested();
                socket->write(openAnswer.data(), openAnswer.size());
            }
            socket->disconnectFromServer();
        });
    }
}
