#include "state/JsonSettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <unistd.h>

namespace {

/// What the store says on standard error while it lives.
class Stderr final
{
public:
    Stderr()
    {
        std::fflush(stderr);
        m_saved = dup(STDERR_FILENO);
        if (m_file.open())
            dup2(m_file.handle(), STDERR_FILENO);
    }
    ~Stderr() { text(); }
    /// Ends the capture (the first time) and returns what was said.
    QString text()
    {
        std::fflush(stderr);
        if (m_saved >= 0) {
            dup2(m_saved, STDERR_FILENO);
            close(std::exchange(m_saved, -1));
        }
        m_file.seek(0);
        return QString::fromUtf8(m_file.readAll());
    }

private:
    QTemporaryFile m_file;
    int m_saved = -1;
};

void writeFile(const QString& name, const QByteArray& content)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray readFile(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestJsonSettingsStore final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTypesAcrossARestart();
    void readsLooselyTypedValuesLikeTheSystemStore_data();
    void readsLooselyTypedValuesLikeTheSystemStore();
    void isReadableByItsOwnerOnly();
    void keepsUnusableFilesAsideUnderNamesOfTheirOwn_data();
    void keepsUnusableFilesAsideUnderNamesOfTheirOwn();
    void leavesAFolderInItsPlaceAlone();
    void reportsAFailedWrite();
    void reportsAWrongTypeOnceAndKeepsIt();
    void followsTheConfigurationFolder();
};

void TestJsonSettingsStore::keepsTypesAcrossARestart()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("nested/settings.json"));
    {
        JsonSettingsStore store(file);
        store.writeBool(QStringLiteral("flag"), false);
        store.writeString(QStringLiteral("text"), QStringLiteral("false"));
        store.writeInt(QStringLiteral("number"), -7);
        store.writeString(QStringLiteral("hide_light_00:17:88:01:00:aa-0b"), QStringLiteral("x"));
    }
    JsonSettingsStore store(file);
    QCOMPARE(store.value(QStringLiteral("flag")).typeId(), QMetaType::Bool);
    QCOMPARE(store.value(QStringLiteral("text")), QVariant(QStringLiteral("false")));
    QCOMPARE(store.readInt(QStringLiteral("number")), -7);
    QVERIFY(store.contains(QStringLiteral("hide_light_00:17:88:01:00:aa-0b")));
    store.remove(QStringLiteral("flag"));
    QVERIFY(!store.contains(QStringLiteral("flag")));
}

void TestJsonSettingsStore::readsLooselyTypedValuesLikeTheSystemStore_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("asBool");
    QTest::addColumn<qint64>("asInt");
    QTest::addColumn<bool>("isString");

    QTest::newRow("absent") << QVariant() << false << qint64(0) << false;
    QTest::newRow("true") << QVariant(true) << true << qint64(1) << false;
    QTest::newRow("number") << QVariant(qint64(3)) << true << qint64(3) << false;
    QTest::newRow("numeric text") << QVariant(QStringLiteral("12")) << false << qint64(12) << true;
    QTest::newRow("yes") << QVariant(QStringLiteral("YES")) << true << qint64(0) << true;
    QTest::newRow("fraction") << QVariant(2.75) << true << qint64(2) << false;
}

void TestJsonSettingsStore::readsLooselyTypedValuesLikeTheSystemStore()
{
    QFETCH(QVariant, stored);
    QFETCH(bool, asBool);
    QFETCH(qint64, asInt);
    QFETCH(bool, isString);
    QTemporaryDir dir;
    JsonSettingsStore store(dir.filePath(QStringLiteral("settings.json")));
    if (stored.isValid())
        store.setValue(QStringLiteral("key"), stored);
    QCOMPARE(store.readBool(QStringLiteral("key")), asBool);
    QCOMPARE(store.readInt(QStringLiteral("key")), asInt);
    QCOMPARE(store.readString(QStringLiteral("key")).has_value(), isString);
}

void TestJsonSettingsStore::isReadableByItsOwnerOnly()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    JsonSettingsStore store(file);
    store.writeString(QStringLiteral("bridgeUser"), QStringLiteral("secret"));
    store.writeString(QStringLiteral("bridgeIP"), QStringLiteral("192.0.2.7"));
    QCOMPARE(QFile::permissions(file) & ~(QFile::ReadUser | QFile::WriteUser),
             QFile::ReadOwner | QFile::WriteOwner);
}

void TestJsonSettingsStore::keepsUnusableFilesAsideUnderNamesOfTheirOwn_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("keptAs");
    QTest::addColumn<QString>("message");
    QTest::newRow("not JSON") << QByteArray(R"({"bridgeUser": "secret", )") << "broken"
                              << "is not valid JSON; it was kept as";
    QTest::newRow("larger than 1 MiB")
        << QByteArray(R"({"bridgeUser": "secret", "x": ")" + QByteArray(1024 * 1024, 'x') + "\"}")
        << "too-large"
        << "is larger than 1 MiB (1048609 bytes), far more than any of ours; it was not read, it was kept as";
}

void TestJsonSettingsStore::keepsUnusableFilesAsideUnderNamesOfTheirOwn()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, keptAs);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    // Twice within one second: the second kept file must not replace the first.
    for (int round = 0; round < 2; ++round) {
        writeFile(file, content);
        Stderr said;
        JsonSettingsStore store(file);
        QVERIFY(!store.contains(QStringLiteral("bridgeUser")));
        store.writeBool(QStringLiteral("showScenes"), true);
        QVERIFY(store.saveError().isEmpty());
        QVERIFY2(said.text().contains(message), qPrintable(said.text()));
    }
    const QStringList kept = QDir(dir.path()).entryList({"settings.json." + keptAs + "-*"});
    QCOMPARE(kept.size(), 2);
    for (const QString& name : kept)
        QCOMPARE(readFile(dir.filePath(name)), content);
    QVERIFY(JsonSettingsStore(file).readBool(QStringLiteral("showScenes")));
}

void TestJsonSettingsStore::leavesAFolderInItsPlaceAlone()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    QVERIFY(QDir().mkpath(file));
    const QFile::Permissions before = QFile::permissions(file);
    Stderr said;
    JsonSettingsStore store(file);
    store.writeString(QStringLiteral("bridgeIP"), QStringLiteral("192.0.2.7"));
    QCOMPARE(store.readString(QStringLiteral("bridgeIP")), QStringLiteral("192.0.2.7")); // for this run
    QVERIFY(store.saveError().contains(QStringLiteral("is a folder")));
    QVERIFY2(
        said.text().contains(QStringLiteral("is a folder; it is left as it is, and settings are not saved")),
        qPrintable(said.text()));
    QVERIFY(QFileInfo(file).isDir());
    QCOMPARE(QFile::permissions(file), before);
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"settings.json"});
}

void TestJsonSettingsStore::reportsAFailedWrite()
{
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("config"));
    JsonSettingsStore store(folder + QStringLiteral("/settings.json"));
    store.writeInt(QStringLiteral("keyIncrement"), 20);
    QVERIFY(store.saveError().isEmpty());
    // The folder goes away under the running program and a file takes its place: nothing can be written.
    QVERIFY(QDir(folder).removeRecursively());
    writeFile(folder, "not a folder");
    Stderr said;
    store.writeInt(QStringLiteral("keyIncrement"), 30);
    store.writeInt(QStringLiteral("keyIncrement"), 40);
    QVERIFY(store.saveError().startsWith(QStringLiteral("cannot write the settings file")));
    QCOMPARE(said.text().count(QStringLiteral("cannot write")), 1);
}

void TestJsonSettingsStore::reportsAWrongTypeOnceAndKeepsIt()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    writeFile(file, R"({"showScenes": "banana", "bridgeUser": 42, "keyIncrement": [1]})");
    Stderr said;
    JsonSettingsStore store(file);
    for (int round = 0; round < 2; ++round) {
        QVERIFY(!store.readBool(QStringLiteral("showScenes")));
        QCOMPARE(store.readString(QStringLiteral("bridgeUser")), std::nullopt);
        QCOMPARE(store.readInt(QStringLiteral("keyIncrement")), 0);
    }
    store.writeBool(QStringLiteral("showColorBarsForRooms"), true);
    const QString text = said.text();
    for (const char* line : {R"("showScenes" in %1 should hold a boolean (true or false))",
                             R"("bridgeUser" in %1 should hold text (a JSON string))",
                             R"("keyIncrement" in %1 should hold a whole number)"})
        QCOMPARE(text.count(QString::fromLatin1(line).arg(file)), 1);
    const QByteArray kept = readFile(file);
    QVERIFY2(kept.contains(R"("showScenes": "banana")") && kept.contains(R"("bridgeUser": 42)"),
             kept.constData());
}

void TestJsonSettingsStore::followsTheConfigurationFolder()
{
    QTemporaryDir dir;
    qputenv("XDG_CONFIG_HOME", dir.path().toUtf8());
    QCOMPARE(JsonSettingsStore::defaultFileName(), dir.filePath(QStringLiteral("glowdeck/settings.json")));
}

QTEST_GUILESS_MAIN(TestJsonSettingsStore)
#include "tst_jsonsettingsstore.moc"
