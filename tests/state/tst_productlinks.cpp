#include "BuiltInLinks.h"
#include "state/ProductLinks.h"

#include <QFile>
#include <QTest>

class TestProductLinks final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsNowhereAndHelpsFromTheGuideUnlessConfigured();
};

void TestProductLinks::sendsNowhereAndHelpsFromTheGuideUnlessConfigured()
{
    qunsetenv("GLOWDECK_ERROR_ENDPOINT");
    qunsetenv("GLOWDECK_HELP_URL");
    qputenv("GLOWDECK_FEEDBACK_URL", ""); // switched off: the guide takes its place
    const ProductLinks links = ProductLinks::fromEnvironment();
    QCOMPARE(links.errorEndpoint, QUrl(QStringLiteral(GLOWDECK_BUILT_IN_ERROR_ENDPOINT)));
    QCOMPARE(links.feedback, ProductLinks::guide(QStringLiteral("reporting-a-problem")));
    if (!QByteArray(GLOWDECK_BUILT_IN_HELP_URL).isEmpty())
        return;
    QCOMPARE(links.help, ProductLinks::guide());
    QFile guide(links.help.toLocalFile());
    QVERIFY(guide.open(QIODevice::ReadOnly));
    QVERIFY(guide.readAll().contains(R"(id="reporting-a-problem")"));
}

QTEST_GUILESS_MAIN(TestProductLinks)
#include "tst_productlinks.moc"
