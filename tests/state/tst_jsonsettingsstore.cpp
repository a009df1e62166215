#include "state/JsonSettingsStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestJsonSettingsStore final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTypesAcrossARestart();
    void readsLooselyTypedValuesLikeTheSystemStore_data();
    void readsLooselyTypedValuesLikeTheSystemStore();
    void isReadableByItsOwnerOnly();
    void keepsABrokenFileInsteadOfOverwritingIt();
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

void TestJsonSettingsStore::keepsABrokenFileInsteadOfOverwritingIt()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    QFile broken(file);
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write(R"({"bridgeUser": "secret", )");
    broken.close();

    JsonSettingsStore store(file);
    QVERIFY(!store.contains(QStringLiteral("bridgeUser")));
    store.writeBool(QStringLiteral("showScenes"), true);
    const QStringList kept = QDir(dir.path()).entryList({QStringLiteral("settings.json.broken-*")});
    QCOMPARE(kept.size(), 1);
    QFile copy(dir.filePath(kept.first()));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QVERIFY(copy.readAll().contains("secret"));
}

void TestJsonSettingsStore::followsTheConfigurationFolder()
{
    QTemporaryDir dir;
    qputenv("XDG_CONFIG_HOME", dir.path().toUtf8());
    QCOMPARE(JsonSettingsStore::defaultFileName(), dir.filePath(QStringLiteral("glowdeck/settings.json")));
}

QTEST_GUILESS_MAIN(TestJsonSettingsStore)
#include "tst_jsonsettingsstore.moc"
