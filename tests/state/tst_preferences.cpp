#include "TestSupport.h"
#include "state/SettingsKeys.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace Keys = SettingsKeys;

namespace {

/// Counts the versions of a file put in place (created, or renamed over it) while it lives, as a program
/// watching its folder sees them.
class FileVersions final
{
public:
    explicit FileVersions(const QString& file)
        : m_name(QFile::encodeName(QFileInfo(file).fileName())), m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        const QByteArray folder = QFile::encodeName(QFileInfo(file).absolutePath());
        m_watching = m_fd >= 0 && inotify_add_watch(m_fd, folder.constData(), IN_CREATE | IN_MOVED_TO) >= 0;
    }
    ~FileVersions() { close(m_fd); }
    bool watching() const { return m_watching; }
    /// The versions put in place so far.
    int count()
    {
        alignas(inotify_event) char buffer[16384];
        for (ssize_t size; (size = read(m_fd, buffer, sizeof buffer)) > 0;) {
            for (const char* at = buffer; at < buffer + size;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                if (event->len > 0 && std::strcmp(event->name, m_name.constData()) == 0)
                    ++m_count;
                at += sizeof(inotify_event) + event->len;
            }
        }
        return m_count;
    }

private:
    QByteArray m_name;
    int m_fd;
    bool m_watching = false;
    int m_count = 0;
};

QByteArray readFile(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& name, const QByteArray& content)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

class TestPreferences final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsDefaultsOnAFirstRun();
    void loadsStoredValues();
    void replacesOnlyAZeroKeyIncrement_data();
    void replacesOnlyAZeroKeyIncrement();
    void keepsFlagsItCannotReadInTheFile();
    void keepsTheStoredSceneChoiceOfAnExistingUser_data();
    void keepsTheStoredSceneChoiceOfAnExistingUser();
    void asksForAResizeOnEveryPanelAssignment();
    void givesTheDefaultHeightForAnUnknownPanel();
    void switchingScenesOffResetsTheStoredPanel();
    void storesColourBarsBeforeShowingThem();
    void notifiesOnlyOnChange();
    void takesInABridgeStoredByAnotherProgramWhole();
    void takesInAnOlderVersionsBridgeOnceWithEveryKey();
    void readsTheStoredBridgesStrictly_data();
    void readsTheStoredBridgesStrictly();
    void showsChoicesAnotherProgramStored();
    void keepsEachBridgesOwnLampOrder();
};

void TestPreferences::loadsDefaultsOnAFirstRun()
{
    TestSettings t;
    BridgeLink& s = t.settings();
    s.load();
    s.preferences().settleDefaults();
    QCOMPARE(s.hueIP(), QString());
    QCOMPARE(s.hueKey(), QString());
    QCOMPARE(s.preferences().appIcon(), QStringLiteral("Icon_Lamp0"));
    QCOMPARE(s.preferences().keyIncrement(), 50);
    // An absent height is taken as 0, not the initial 280.
    QCOMPARE(s.preferences().presetWindowHeight(MainPanels::lights), 0);
    QCOMPARE(s.preferences().presetWindowHeight(MainPanels::rooms), 0);
    QCOMPARE(s.preferences().presetWindowHeight(MainPanels::scenes), 0);
    QVERIFY(s.preferences().showColorBarsForRooms());
    QCOMPARE(t.store().value(Keys::showColorBarsForRooms), QVariant(true));
    QVERIFY(s.preferences().showScenes());
    QCOMPARE(t.store().value(Keys::showScenes), QVariant(true));
    QVERIFY(!s.home().bridgeConnected());
    QCOMPARE(s.preferences().activeMainPanel(), MainPanels::lights);
}

void TestPreferences::loadsStoredValues()
{
    TestSettings t;
    JsonSettingsStore& store = t.store();
    store.writeString(Keys::bridgeIP, QStringLiteral("192.0.2.7"));
    store.writeString(Keys::bridgeUser, QStringLiteral("key"));
    store.writeString(Keys::appIcon, QStringLiteral("Icon_Lamp2"));
    store.writeInt(Keys::preferredWindowHeightRooms, 420);
    store.writeBool(Keys::showColorBarsForRooms, false);
    store.writeBool(Keys::showScenes, true);
    store.writeInt(Keys::activePanel, 2);
    t.reopen();

    BridgeLink& s = t.settings();
    s.load();
    QCOMPARE(s.hueIP(), QStringLiteral("192.0.2.7"));
    QCOMPARE(s.hueKey(), QStringLiteral("key"));
    QCOMPARE(s.preferences().appIcon(), QStringLiteral("Icon_Lamp2"));
    QCOMPARE(s.preferences().presetWindowHeight(MainPanels::rooms), 420);
    QVERIFY(!s.preferences().showColorBarsForRooms());
    QVERIFY(s.preferences().showScenes());
    QCOMPARE(t.store().readInt(Keys::activePanel), 2); // kept while scenes are shown
}

void TestPreferences::replacesOnlyAZeroKeyIncrement_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<qint64>("loaded");
    QTest::newRow("zero") << QVariant(qint64(0)) << qint64(50);
    QTest::newRow("negative") << QVariant(qint64(-20)) << qint64(-20);
    QTest::newRow("ten") << QVariant(qint64(10)) << qint64(10);
    QTest::newRow("not a number") << QVariant(QStringLiteral("lots")) << qint64(50);
}

void TestPreferences::replacesOnlyAZeroKeyIncrement()
{
    QFETCH(QVariant, stored);
    QFETCH(qint64, loaded);
    TestSettings t;
    t.store().setValue(Keys::keyIncrement, stored);
    t.settings().load();
    QCOMPARE(t.settings().preferences().keyIncrement(), loaded);
}

void TestPreferences::keepsFlagsItCannotReadInTheFile()
{
    TestSettings t;
    t.store().setValue(Keys::showScenes, QStringLiteral("maybe"));
    t.store().setValue(Keys::showColorBarsForRooms, QVariant(QVariantList{}));
    t.settings().preferences().settleDefaults();
    QVERIFY(t.settings().preferences().showScenes());
    QVERIFY(t.settings().preferences().showColorBarsForRooms());
    QCOMPARE(t.store().value(Keys::showScenes),
             QVariant(QStringLiteral("maybe"))); // the user's, until changed
    QCOMPARE(t.store().value(Keys::showColorBarsForRooms), QVariant(QVariantList{}));
}

void TestPreferences::keepsTheStoredSceneChoiceOfAnExistingUser_data()
{
    QTest::addColumn<bool>("shown");
    QTest::newRow("hidden") << false;
    QTest::newRow("shown") << true;
}

void TestPreferences::keepsTheStoredSceneChoiceOfAnExistingUser()
{
    QFETCH(bool, shown);
    TestSettings t;
    t.store().writeString(Keys::bridgeIP, QStringLiteral("192.0.2.7"));
    t.store().writeBool(Keys::showScenes, shown);
    t.reopen();
    t.settings().load();
    t.settings().preferences().settleDefaults();
    QCOMPARE(t.settings().preferences().showScenes(), shown);
    QCOMPARE(t.store().value(Keys::showScenes), QVariant(shown));
}

void TestPreferences::asksForAResizeOnEveryPanelAssignment()
{
    TestSettings t;
    BridgeLink& s = t.settings();
    s.preferences().setPresetWindowHeight(MainPanels::rooms, 333);
    QSignalSpy resize(&s.preferences(), &Preferences::windowResizePlease);
    QSignalSpy changed(&s.preferences(), &Preferences::changed);

    s.preferences().setActiveMainPanel(MainPanels::rooms);
    s.preferences().setActiveMainPanel(MainPanels::rooms);
    QCOMPARE(resize.size(), 2);
    QCOMPARE(resize.last().first().toLongLong(), 333);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(t.store().readInt(Keys::activePanel), 1);
}

void TestPreferences::givesTheDefaultHeightForAnUnknownPanel()
{
    TestSettings t;
    t.settings().preferences().setActiveMainPanel(MainPanels(7));
    QCOMPARE(t.settings().preferences().preferredHeightOfActivePanel(), Preferences::defaultWindowHeight);
}

void TestPreferences::switchingScenesOffResetsTheStoredPanel()
{
    TestSettings t;
    BridgeLink& s = t.settings();
    s.preferences().setShowScenes(true);
    s.preferences().setActiveMainPanel(MainPanels::scenes);
    s.preferences().setShowScenes(false);
    QCOMPARE(t.store().readInt(Keys::activePanel), 0);
    QCOMPARE(t.store().value(Keys::showScenes), QVariant(false));
    QCOMPARE(s.preferences().activeMainPanel(),
             MainPanels::scenes); // the open window keeps its panel until it reopens
}

void TestPreferences::storesColourBarsBeforeShowingThem()
{
    TestSettings t;
    BridgeLink& s = t.settings();
    bool storedWhenNotified = true;
    s.preferences().whenChanged({Keys::showColorBarsForRooms}, this, [&] {
        storedWhenNotified = t.store().value(Keys::showColorBarsForRooms) == QVariant(false);
    });
    s.preferences().setShowColorBarsForRooms(false);
    QVERIFY(storedWhenNotified);
}

void TestPreferences::notifiesOnlyOnChange()
{
    TestSettings t;
    BridgeLink& s = t.settings();
    QSignalSpy lights(&s.home(), &BridgeHome::lightsChanged);
    const QList<HueLight> list{HueLight{.lamp_id = QStringLiteral("1")}};
    s.home().setLights(list);
    s.home().setLights(list);
    QCOMPARE(lights.size(), 1);
    QVERIFY(s.home().updateLight(QStringLiteral("1"), [](HueLight& l) { l.is_on = true; }));
    QVERIFY(!s.home().updateLight(QStringLiteral("2"), [](HueLight& l) { l.is_on = true; }));
    QCOMPARE(lights.size(), 2);
    QVERIFY(s.home().lights().first().is_on);
}

void TestPreferences::takesInABridgeStoredByAnotherProgramWhole()
{
    TestSettings t;
    BridgeLink& settings = t.settings();
    settings.setHueIP(u"192.0.2.7"_qs);
    settings.setHueKey(u"old key"_qs);
    settings.persistBridge();
    t.store().watchForChanges();
    QSignalSpy changed(&settings, &BridgeLink::bridgeChangedElsewhere);

    // "glowdeckctl pair" with another bridge while the program runs: the file never holds the new address
    // with the old key, so the running program takes in both together.
    FileVersions versions(t.fileName());
    QVERIFY(versions.watching());
    JsonSettingsStore paired(t.fileName());
    BridgeLink pairing(paired);
    pairing.load();
    pairing.setHueIP(u"192.0.2.8"_qs);
    pairing.setHueKey(u"new key"_qs);
    pairing.setBridgeContact(u"https"_qs, u"001788FFFE000001"_qs, QByteArray(32, 'k'));
    pairing.persistBridge();
    QCOMPARE(versions.count(), 1);
    // Stored as the list of bridges, and for older versions in the loose keys as well.
    const QJsonObject written = QJsonDocument::fromJson(readFile(t.fileName())).object();
    QCOMPARE(written.value(u"bridges").toArray(), QJsonArray{pairing.contact().toJson()});
    QCOMPARE(written.value(u"bridgeIP").toString(), u"192.0.2.8"_qs);
    QCOMPARE(written.value(u"bridgeUser").toString(), u"new key"_qs);
    QCOMPARE(written.value(u"bridgeCertificateKey").toString(),
             QString::fromLatin1(QByteArray(32, 'k').toHex()));
    QTRY_COMPARE_WITH_TIMEOUT(settings.hueKey(), u"new key"_qs, 1000);
    QCOMPARE(settings.hueIP(), u"192.0.2.8"_qs);
    QCOMPARE(settings.bridgeID(), u"001788FFFE000001"_qs);
    QCOMPARE(changed.size(), 1);
    // The next refresh keeps what it answered to: the new key, never the old one again.
    settings.persistBridge();
    QCOMPARE(JsonSettingsStore(t.fileName()).readString(u"bridgeUser"_qs), u"new key"_qs);
}

void TestPreferences::takesInAnOlderVersionsBridgeOnceWithEveryKey()
{
    TestSettings t;
    const QString certificate = QStringLiteral("ab").repeated(32);
    const QJsonObject older{{"bridgeIP", "192.0.2.7:8080"},        {"bridgeUser", "the key"},
                            {"bridgeID", "001788fffe6a3b2c"},      {"bridgeTransport", "https"},
                            {"bridgeCertificateKey", certificate}, {"appIcon", "Icon_Lamp2"}};
    writeFile(t.fileName(), QJsonDocument(older).toJson());
    t.reopen();
    t.settings().load();
    // Reading alone (as glowdeckctl does) leaves the bridge as it is stored.
    QVERIFY(!QJsonDocument::fromJson(readFile(t.fileName())).object().contains(u"bridges"));
    BridgeLink::keepBridgesInTheNewForm(t.settings().preferences(), t.settings().activity());

    const BridgeContact expected{.id = u"001788FFFE6A3B2C"_qs,
                                 .address = u"192.0.2.7:8080"_qs,
                                 .key = u"the key"_qs,
                                 .transport = u"https"_qs,
                                 .certificate = QByteArray::fromHex(certificate.toLatin1())};
    QCOMPARE(t.settings().contact(), expected);
    // Written anew as "bridges", every older key kept beside it as it was (the id in the case it is used in).
    const QJsonObject written = QJsonDocument::fromJson(readFile(t.fileName())).object();
    QCOMPARE(written.value(u"bridges").toArray(), QJsonArray{expected.toJson()});
    for (const QString& key : older.keys())
        QCOMPARE(written.value(key).toString().toUpper(), older.value(key).toString().toUpper());
    QCOMPARE(t.settings().activity().log().filter(u"older version"_qs).size(), 1);

    // Once: the next start reads "bridges" and writes nothing.
    const QByteArray migrated = readFile(t.fileName());
    t.reopen();
    t.settings().load();
    BridgeLink::keepBridgesInTheNewForm(t.settings().preferences(), t.settings().activity());
    QCOMPARE(t.settings().contact(), expected);
    QCOMPARE(readFile(t.fileName()), migrated);
    QVERIFY(t.settings().activity().log().filter(u"older version"_qs).isEmpty());
}

void TestPreferences::readsTheStoredBridgesStrictly_data()
{
    QTest::addColumn<QByteArray>("bridges");
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<QString>("problem");
    const QByteArray good = R"({"id":"001788FFFE000002","address":"192.0.2.9","key":"k2","transport":"http",)"
                            R"("certificate":"","name":"Upstairs"})";
    QTest::newRow("a good one") << good << QStringList{"192.0.2.9"} << QString();
    QTest::newRow("an entry that is no object")
        << "12, " + good << QStringList{"192.0.2.9"} << u"Stored bridge 1: it is not an object"_qs;
    QTest::newRow("an address that is no text")
        << R"({"address":7,"key":"k"}, )" + good << QStringList{"", "192.0.2.9"}
        << u"Stored bridge 1: its \"address\" is not text"_qs;
    QTest::newRow("an id that is no bridge id")
        << QByteArray(R"({"id":"../config","address":"192.0.2.8"})") << QStringList{"192.0.2.8"}
        << u"Stored bridge 1: its \"id\" is no bridge id"_qs;
    QTest::newRow("an unknown transport")
        << QByteArray(R"({"transport":"ftp","address":"192.0.2.8"})") << QStringList{"192.0.2.8"}
        << u"its \"transport\" is neither https nor http"_qs;
    QTest::newRow("a certificate that is no key's hash")
        << QByteArray(R"({"certificate":"zz","address":"192.0.2.8"})") << QStringList{"192.0.2.8"}
        << u"its \"certificate\" is not a key's hash"_qs;
}

void TestPreferences::readsTheStoredBridgesStrictly()
{
    QFETCH(QByteArray, bridges);
    QFETCH(QStringList, addresses);
    QFETCH(QString, problem);
    TestSettings t;
    // "bridges" wins over the loose keys of an older version.
    writeFile(t.fileName(), R"({"bridgeIP":"192.0.2.1","bridgeUser":"old","bridges":[)" + bridges + "]}");
    t.reopen();
    QStringList problems;
    QStringList read;
    for (const BridgeContact& contact : t.settings().preferences().bridges(&problems))
        read << contact.address;
    QCOMPARE(read, addresses);
    QCOMPARE(problems.filter(problem).size(), problem.isEmpty() ? problems.size() : 1);
    QCOMPARE(problems.isEmpty(), problem.isEmpty());

    // The program starts with the first one and says what it left out.
    t.settings().load();
    QCOMPARE(t.settings().hueIP(), addresses.first());
    if (!problem.isEmpty())
        QVERIFY2(!t.settings().activity().log().filter(problem).isEmpty(),
                 qPrintable(t.settings().activity().log().join(u'\n')));
    const std::optional<BridgeContact> first =
        BridgeContact::fromJson(QJsonDocument::fromJson("[" + bridges + "]").array().last());
    QCOMPARE(BridgeContact::fromJson(first->toJson()), first); // what is read is written back the same
}

void TestPreferences::showsChoicesAnotherProgramStored()
{
    TestSettings t;
    BridgeLink& s = t.settings();
    s.load();
    s.preferences().setShowScenes(true);
    s.preferences().setActiveMainPanel(MainPanels::scenes);
    s.home().setLights({HueLight{.lamp_id = u"1"_qs, .unique_id = u"uid-1"_qs},
                        HueLight{.lamp_id = u"2"_qs, .unique_id = u"uid-2"_qs}});
    t.store().watchForChanges();
    int icon = 0;
    int visibility = 0;
    s.preferences().whenChanged({Keys::appIcon}, this, [&icon] { ++icon; });
    s.preferences().whenLightVisibilityChanged(this, [&visibility] { ++visibility; });
    FileVersions versions(t.fileName());
    QVERIFY(versions.watching());

    JsonSettingsStore(t.fileName())
        .setValues({{Keys::appIcon, u"Icon_Lamp2"_qs},
                    {Keys::showZones, false},
                    {Keys::showScenes, false},
                    {Keys::showColorBarsForRooms, false},
                    {Keys::keyIncrement, 20},
                    {Keys::preferredWindowHeightRooms, 400},
                    {Keys::hiddenLightPrefix + u"uid-1"_qs, true},
                    {Keys::lightOrder, u"2,1"_qs}});
    QTRY_COMPARE_WITH_TIMEOUT(s.preferences().appIcon(), u"Icon_Lamp2"_qs, 1000);
    QCOMPARE(icon, 1);
    QVERIFY(!s.preferences().showZones() && !s.preferences().showScenes() &&
            !s.preferences().showColorBarsForRooms());
    QCOMPARE(s.preferences().keyIncrement(), 20);
    QCOMPARE(s.preferences().presetWindowHeight(MainPanels::rooms), 400);
    QCOMPARE(visibility, 1);
    QVERIFY(s.preferences().isLightHidden(s.home().lights().last()));
    QCOMPARE(s.home().lights().first().lamp_id, u"2"_qs);
    // Taken in, not stored again: switching scenes off here would also have reset the stored panel.
    QCOMPARE(versions.count(), 1);
    QCOMPARE(JsonSettingsStore(t.fileName()).readInt(Keys::activePanel), 2);
}

void TestPreferences::keepsEachBridgesOwnLampOrder()
{
    // An older version's order, and two bridges that both have lamps "1" and "2".
    TestSettings t;
    t.store().writeString(Keys::lightOrder, u"2,1"_qs);
    Preferences& preferences = t.settings().preferences();
    preferences.setBridges({BridgeContact{.id = u"001788FFFE000001"_qs, .address = u"192.0.2.1"_qs},
                            BridgeContact{.id = u"001788FFFE000002"_qs, .address = u"192.0.2.2"_qs}});
    BridgeHome downstairsHome, upstairsHome;
    BridgeLink downstairs(preferences, t.settings().activity(), downstairsHome);
    BridgeLink upstairs(preferences, t.settings().activity(), upstairsHome);
    downstairs.load(preferences.bridges().at(0), 0);
    upstairs.load(preferences.bridges().at(1), 1);
    QCOMPARE(downstairs.lightOrder(), u"2,1"_qs); // the older order is the first bridge's
    QCOMPARE(upstairs.lightOrder(), QString());

    // Ordering one bridge's lamps leaves the other's as they are, and shows at once.
    const QList<HueLight> lamps{HueLight{.lamp_id = u"1"_qs}, HueLight{.lamp_id = u"2"_qs}};
    downstairsHome.setLights(lamps);
    upstairsHome.setLights(lamps);
    upstairs.setLightOrder({lamps.at(1), lamps.at(0)});
    QCOMPARE(t.store().readString(u"lightOrder_001788FFFE000002"_qs), u"2,1"_qs);
    QCOMPARE(upstairsHome.lights().first().lamp_id, u"2"_qs);
    downstairs.setLightOrder(lamps);
    QCOMPARE(downstairs.lightOrder(), u"1,2"_qs);
    QCOMPARE(upstairs.lightOrder(), u"2,1"_qs);
    QCOMPARE(t.store().readString(Keys::lightOrder), u"2,1"_qs); // an older version still reads its own
}

QTEST_GUILESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
