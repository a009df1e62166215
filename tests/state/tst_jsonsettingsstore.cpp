#include "state/JsonSettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <thread>
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

constexpr QFile::Permissions shared = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser |
                                      QFile::WriteUser | QFile::ReadGroup | QFile::ReadOther;

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
    void changesTheModeOfNothingItDidNotCreate_data();
    void changesTheModeOfNothingItDidNotCreate();
    void followsOnlyALinkOfItsUserToAFile_data();
    void followsOnlyALinkOfItsUserToAFile();
    void keepsWhatOtherProgramsWrite();
    void anEditorWritingInPlaceLosesNothing_data();
    void anEditorWritingInPlaceLosesNothing();
    void startsWithAFileBeingWritten_data();
    void startsWithAFileBeingWritten();
    void keepsUnusableFilesAsideUnderNamesOfTheirOwn_data();
    void keepsUnusableFilesAsideUnderNamesOfTheirOwn();
    void leavesAFolderInItsPlaceAlone();
    void reportsAFailedWrite();
    void aFullDiskLosesNothingAlreadySaved();
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

void TestJsonSettingsStore::changesTheModeOfNothingItDidNotCreate_data()
{
    QTest::addColumn<QString>("before"); // "none" or "file" (mode 0644)
    QTest::newRow("made here: the owner's only, in a folder of its own") << "none";
    QTest::newRow("the user's file keeps its mode") << "file";
}

void TestJsonSettingsStore::changesTheModeOfNothingItDidNotCreate()
{
    QFETCH(QString, before);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("glowdeck/settings.json"));
    if (before == u"file") {
        QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("glowdeck"))));
        writeFile(file, R"({"keep": 1})");
        QVERIFY(QFile::setPermissions(file, shared));
    }
    Stderr said;
    JsonSettingsStore store(file);
    store.writeString(QStringLiteral("bridgeUser"), QStringLiteral("secret"));
    QVERIFY(store.saveError().isEmpty());
    QVERIFY(readFile(file).contains("secret"));
    if (before == u"none") {
        QCOMPARE(QFile::permissions(file) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(QFile::permissions(dir.filePath(QStringLiteral("glowdeck"))) & ~QFile::Permissions(0x0700),
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        // Deleted under the running program: made again, whole and the owner's only.
        QVERIFY(QFile::remove(file));
        store.writeString(QStringLiteral("bridgeIP"), QStringLiteral("192.0.2.7"));
        QVERIFY(readFile(file).contains("secret") && readFile(file).contains("192.0.2.7"));
        QCOMPARE(QFile::permissions(file) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
    } else {
        QCOMPARE(QFile::permissions(file), shared);
        QVERIFY(said.text().contains(u"other users may read it"_qs));
    }
}

void TestJsonSettingsStore::followsOnlyALinkOfItsUserToAFile_data()
{
    // The settings file is a link (as dotfile managers keep it) to "dotfiles/glowdeck.json", mode 0644.
    QTest::addColumn<QString>("link");    // where the settings file leads, from its folder
    QTest::addColumn<QString>("refusal"); // empty: followed
    QTest::addColumn<QByteArray>("content");
    const QByteArray valid = R"({"keep": 1})";
    QTest::newRow("to a file") << "../dotfiles/glowdeck.json" << QString() << valid;
    QTest::newRow("through a second link") << "second-link" << QString() << valid;
    QTest::newRow("to a broken file")
        << "../dotfiles/glowdeck.json" << QString() << QByteArray(R"({"keep": )");
    QTest::newRow("to nothing") << "../dotfiles/gone.json"
                                << "is a symbolic link to nothing" << valid;
    QTest::newRow("to a folder") << "../dotfiles"
                                 << "is a symbolic link to a folder" << valid;
    QTest::newRow("to a file of another user") << "../dotfiles/glowdeck.json"
                                               << "to a file of another user" << valid;
    QTest::newRow("made by another user") << "../dotfiles/glowdeck.json"
                                          << "a symbolic link of another user" << valid;
}

void TestJsonSettingsStore::followsOnlyALinkOfItsUserToAFile()
{
    QFETCH(QString, link);
    QFETCH(QString, refusal);
    QFETCH(QByteArray, content);
    const QByteArray valid = R"({"keep": 1})";
    QTemporaryDir dir;
    QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("glowdeck"))) &&
            QDir().mkpath(dir.filePath(QStringLiteral("dotfiles"))));
    const QString file = dir.filePath(QStringLiteral("glowdeck/settings.json"));
    const QString target = dir.filePath(QStringLiteral("dotfiles/glowdeck.json"));
    writeFile(target, content);
    QVERIFY(QFile::setPermissions(target, shared));
    QVERIFY(QFile::link(link, file));
    QVERIFY(QFile::link(QStringLiteral("../dotfiles/glowdeck.json"), dir.filePath("glowdeck/second-link")));
    // Another user's file or link: only root can make one to try.
    const bool asOther = refusal.contains(u"another user");
    if (asOther && geteuid() != 0)
        QSKIP("only root can give a file to another user");
    if (asOther && lchown(QFile::encodeName(refusal.contains(u"to a file") ? target : file).constData(),
                          65534, 65534) != 0)
        QFAIL("cannot give the file to another user");

    Stderr said;
    JsonSettingsStore store(file);
    store.writeString(QStringLiteral("bridgeUser"), QStringLiteral("secret"));
    QVERIFY(QFileInfo(file).isSymLink());
    const QStringList beside = QDir(dir.filePath(QStringLiteral("dotfiles"))).entryList(QDir::Files);
    if (content != valid) {
        // Kept aside beside the file it leads to, which is written anew (the owner's only, as a new file).
        QCOMPARE(beside.size(), 2);
        QCOMPARE(readFile(dir.filePath(u"dotfiles/"_qs + beside.last())), content);
        QVERIFY(readFile(target).contains("secret"));
        return;
    }
    QCOMPARE(QFile::permissions(target), shared);
    QCOMPARE(beside, QStringList{"glowdeck.json"});
    if (!refusal.isEmpty()) {
        QCOMPARE(readFile(target), valid);
        QVERIFY2(store.saveError().contains(refusal), qPrintable(store.saveError()));
        QVERIFY2(said.text().contains(refusal), qPrintable(said.text()));
        return;
    }
    QVERIFY2(store.saveError().isEmpty(), qPrintable(store.saveError()));
    QCOMPARE(store.readInt(QStringLiteral("keep")), 1);
    QVERIFY(readFile(target).contains("secret"));

    // Another program writes to the file the link leads to: watched, it arrives.
    store.watchForChanges();
    QStringList announced;
    store.setChangedElsewhereHandler([&](const QStringList& keys) { announced += keys; });
    JsonSettingsStore(target).writeString(QStringLiteral("bridgeIP"), QStringLiteral("192.0.2.9"));
    QTRY_COMPARE_WITH_TIMEOUT(announced, QStringList{"bridgeIP"}, 1000);
}

void TestJsonSettingsStore::keepsWhatOtherProgramsWrite()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    JsonSettingsStore running(file);
    QStringList announced;
    QStringList notices;
    running.setChangedElsewhereHandler([&](const QStringList& keys) { announced += keys; });
    running.setNoticeHandler([&](const QString& message) { notices << message; });
    running.writeString(QStringLiteral("bridgeUser"), QStringLiteral("old key"));
    running.writeString(QStringLiteral("appIcon"), QStringLiteral("Icon_Lamp1"));

    // "glowdeckctl pair" stores a new key; the running program's next save keeps it and says so.
    JsonSettingsStore(file).writeString(QStringLiteral("bridgeUser"), QStringLiteral("new key"));
    running.writeInt(QStringLiteral("keyIncrement"), 20);
    QCOMPARE(announced, QStringList{"bridgeUser"});
    QCOMPARE(running.readString(QStringLiteral("bridgeUser")), u"new key"_qs);
    QVERIFY(readFile(file).contains("new key") && readFile(file).contains("Icon_Lamp1"));

    // Broken by hand and left so: kept aside by the next save (after a moment's wait), which writes
    // everything anew, and the user is told.
    Stderr said;
    writeFile(file, R"({"bridgeUser": "new key", )");
    running.writeBool(QStringLiteral("showScenes"), true);
    const QStringList kept = QDir(dir.path()).entryList({"settings.json.broken-*"});
    QCOMPARE(kept.size(), 1);
    QCOMPARE(readFile(dir.filePath(kept.first())), QByteArray(R"({"bridgeUser": "new key", )"));
    QCOMPARE(notices.size(), 1);
    QVERIFY(notices.first().contains(u"was kept as"_qs));
    const JsonSettingsStore after(file);
    QCOMPARE(after.readString(QStringLiteral("bridgeUser")), u"new key"_qs);
    QVERIFY(after.readBool(QStringLiteral("showScenes")) &&
            after.readInt(QStringLiteral("keyIncrement")) == 20);

    // Watched, a change arrives without a save of its own, within a second.
    running.watchForChanges();
    announced.clear();
    JsonSettingsStore(file).writeString(QStringLiteral("bridgeIP"), QStringLiteral("192.0.2.9"));
    QTRY_COMPARE_WITH_TIMEOUT(announced, QStringList{"bridgeIP"}, 1000);
    QCOMPARE(running.readString(QStringLiteral("bridgeIP")), u"192.0.2.9"_qs);
}

void TestJsonSettingsStore::anEditorWritingInPlaceLosesNothing_data()
{
    // An editor saves by emptying the file and writing it again; the running program sees the file between.
    QTest::addColumn<QByteArray>("between");
    QTest::addColumn<bool>("completed"); // else the editor stops there (a crash, a full disk)
    const QByteArray halfWritten = R"({"bridgeUser": "key", "appIc)";
    QTest::newRow("emptied, then written") << QByteArray() << true;
    QTest::newRow("half-written, then completed") << halfWritten << true;
    QTest::newRow("left empty") << QByteArray() << false;
    QTest::newRow("left half-written") << halfWritten << false;
}

void TestJsonSettingsStore::anEditorWritingInPlaceLosesNothing()
{
    QFETCH(QByteArray, between);
    QFETCH(bool, completed);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    JsonSettingsStore running(file);
    running.setValues({{QStringLiteral("bridgeUser"), QStringLiteral("key")},
                       {QStringLiteral("appIcon"), QStringLiteral("Icon_Lamp1")}});
    running.watchForChanges();
    QStringList announced;
    QStringList notices;
    running.setChangedElsewhereHandler([&](const QStringList& keys) { announced += keys; });
    running.setNoticeHandler([&](const QString& message) { notices << message; });

    Stderr said;
    writeFile(file, between);
    // A save meanwhile waits: nothing is written over the file the editor is writing.
    running.writeInt(QStringLiteral("keyIncrement"), 20);
    QCOMPARE(readFile(file), between);
    QCOMPARE(running.readString(QStringLiteral("bridgeUser")), u"key"_qs);
    if (completed) {
        QTimer::singleShot(300, this,
                           [&] { writeFile(file, R"({"bridgeUser": "key", "appIcon": "Icon_Lamp2"})"); });
        QTRY_COMPARE_WITH_TIMEOUT(running.readString(QStringLiteral("appIcon")), u"Icon_Lamp2"_qs, 5000);
        // Taken in as the editor left it, the save on top; no key was ever announced as deleted.
        QCOMPARE(announced, QStringList{"appIcon"});
        QTRY_VERIFY(readFile(file).contains("keyIncrement"));
        QVERIFY(notices.isEmpty());
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(notices.size(), 1, 5000);
        QVERIFY(announced.isEmpty());
        QVERIFY2(notices.first().contains(between.isEmpty() ? u"was left empty"_qs : u"was kept as"_qs),
                 qPrintable(notices.first()));
    }
    const QStringList kept = QDir(dir.path()).entryList({"settings.json.broken-*"});
    QCOMPARE(kept.size(), !completed && !between.isEmpty() ? 1 : 0);
    if (!kept.isEmpty())
        QCOMPARE(readFile(dir.filePath(kept.first())), between);
    const JsonSettingsStore after(file);
    QCOMPARE(after.readString(QStringLiteral("bridgeUser")), u"key"_qs);
    QCOMPARE(after.readInt(QStringLiteral("keyIncrement")), 20);
    QCOMPARE(after.readString(QStringLiteral("appIcon")), completed ? u"Icon_Lamp2"_qs : u"Icon_Lamp1"_qs);
}

void TestJsonSettingsStore::startsWithAFileBeingWritten_data()
{
    QTest::addColumn<QByteArray>("atStart");
    QTest::addColumn<QByteArray>("soonAfter"); // written by another program while the store starts
    QTest::addColumn<QString>("icon");         // as the store then reads it
    const QByteArray whole = R"({"appIcon": "Icon_Lamp2"})";
    QTest::newRow("half-written, completed a moment later")
        << QByteArray(R"({"appIc)") << whole << "Icon_Lamp2";
    QTest::newRow("emptied, written a moment later") << QByteArray() << whole << "Icon_Lamp2";
    // An empty file holds nothing to keep aside: it is empty settings, and nothing is said.
    QTest::newRow("empty, and left so") << QByteArray() << QByteArray() << QString();
}

void TestJsonSettingsStore::startsWithAFileBeingWritten()
{
    QFETCH(QByteArray, atStart);
    QFETCH(QByteArray, soonAfter);
    QFETCH(QString, icon);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("settings.json"));
    writeFile(file, atStart);
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    // The other program, a moment into the store's start (which has no event loop to wait with).
    std::thread other([&] {
        if (soonAfter.isEmpty())
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        QFile in(file);
        if (in.open(QIODevice::WriteOnly))
            in.write(soonAfter);
    });
    Stderr said;
    const JsonSettingsStore store(file);
    other.join();
    QCOMPARE(store.readString(QStringLiteral("appIcon")).value_or(QString()), icon);
    QVERIFY(store.saveError().isEmpty());
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"settings.json"});
    QCOMPARE(said.text(), QString());
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

void TestJsonSettingsStore::aFullDiskLosesNothingAlreadySaved()
{
    // A disk of three pages (the file, the lock, the new file) where the test may mount one, else a folder
    // that refuses new files.
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("small"));
    QVERIFY(QDir().mkpath(folder));
    const QString file = folder + QStringLiteral("/settings.json");
    std::unique_ptr<JsonSettingsStore> store;
    const bool mounted =
        QProcess::execute(QStringLiteral("mount"), {"-t", "tmpfs", "-o", "size=12k", "tmpfs", folder}) == 0;
    const auto unmount = qScopeGuard([&] {
        store.reset();
        if (mounted)
            QProcess::execute(QStringLiteral("umount"), {folder});
    });
    store = std::make_unique<JsonSettingsStore>(file);
    store->writeString(QStringLiteral("bridgeUser"), QStringLiteral("secret"));
    QVERIFY2(store->saveError().isEmpty(), qPrintable(store->saveError()));
    if (mounted) {
        writeFile(folder + QStringLiteral("/filler"), QByteArray(8192, 'x')); // as much as fits
    } else {
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        if (QFileInfo(folder).isWritable())
            QSKIP("no small disk to mount, and a read-only folder does not stop this user");
    }
    Stderr said;
    store->writeString(QStringLiteral("appIcon"), QString(2048, u'x'));
    QVERIFY2(store->saveError().startsWith(u"cannot write the settings file"_qs),
             qPrintable(store->saveError()));
    QVERIFY(said.text().contains(u"cannot write the settings file"_qs));
    // Written whole or not at all: the file still holds what was saved before.
    QCOMPARE(
        JsonSettingsStore::parse(readFile(file)).value_or(QVariantMap()).value(u"bridgeUser"_qs).toString(),
        u"secret"_qs);
    if (!mounted)
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
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
