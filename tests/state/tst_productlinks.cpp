#include "BuiltInLinks.h"
#include "state/ProductLinks.h"

#include <QFile>
#include <QTest>

class TestProductLinks final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void sendsNowhereAndHelpsFromTheGuideUnlessConfigured();
    void theEnvironmentStillDecides();
};

void TestProductLinks::init()
{
    for (const char* name : {"GLOWDECK_ERROR_ENDPOINT", "GLOWDECK_HELP_URL", "GLOWDECK_FEEDBACK_URL"})
        qunsetenv(name);
}

void TestProductLinks::sendsNowhereAndHelpsFromTheGuideUnlessConfigured()
{
    const ProductLinks links = ProductLinks::fromEnvironment();
    QCOMPARE(links.errorEndpoint, QUrl(QStringLiteral(GLOWDECK_BUILT_IN_ERROR_ENDPOINT)));
    if (QByteArray(GLOWDECK_BUILT_IN_HELP_URL).isEmpty()) {
        QVERIFY(links.help.isLocalFile());
        QVERIFY(links.help.path().endsWith(QStringLiteral("/guide/index.html")));
        QFile guide(links.help.toLocalFile());
        QVERIFY(guide.open(QIODevice::ReadOnly));
        QVERIFY(guide.readAll().contains(R"(id="reporting-a-problem")"));
    }
    if (QByteArray(GLOWDECK_BUILT_IN_FEEDBACK_URL).isEmpty()) {
        QCOMPARE(links.feedback.adjusted(QUrl::RemoveFragment), ProductLinks::guide());
        QCOMPARE(links.feedback.fragment(), QStringLiteral("reporting-a-problem"));
    }
}

void TestProductLinks::theEnvironmentStillDecides()
{
    qputenv("GLOWDECK_ERROR_ENDPOINT", "http://127.0.0.1:9/crash/");
    qputenv("GLOWDECK_HELP_URL", "http://127.0.0.1:9/help/");
    qputenv("GLOWDECK_FEEDBACK_URL", ""); // switched off: the guide takes its place
    const ProductLinks links = ProductLinks::fromEnvironment();
    QCOMPARE(links.errorEndpoint, QUrl(QStringLiteral("http://127.0.0.1:9/crash/")));
    QCOMPARE(links.help, QUrl(QStringLiteral("http://127.0.0.1:9/help/")));
    QCOMPARE(links.feedback, ProductLinks::guide(QStringLiteral("reporting-a-problem")));
    init();
}

QTEST_GUILESS_MAIN(TestProductLinks)
#include "tst_productlinks.moc"
