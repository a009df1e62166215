#include "state/Redaction.h"

#include <QTest>

class TestRedaction final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hidesTheKeyAndKeyShapedPathSegments_data();
    void hidesTheKeyAndKeyShapedPathSegments();
};

void TestRedaction::hidesTheKeyAndKeyShapedPathSegments_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("storedKey");
    QTest::addColumn<QString>("expected");
    const QString key = QStringLiteral("Ab3-dEf_9hIjKlMnOpQrStUvWxYz0123456789ab");
    QTest::newRow("the key anywhere")
        << "key=" + key + " again " + key << key << "key=[redacted] again [redacted]";
    QTest::newRow("another key in a path")
        << "GET http://127.0.0.1/api/1028d66426293e821ecfd9ef1a0731df/lights" << key
        << "GET http://127.0.0.1/api/[redacted]/lights";
    QTest::newRow("a schedule's own address") << R"({"address":"/api/abcdefghij/groups/0/action"})"
                                              << ""
                                              << R"({"address":"/api/[redacted]/groups/0/action"})";
    QTest::newRow("a word after /api/ stays") << "GET /api/config, /api/nouser and POST /api" << key
                                              << "GET /api/config, /api/nouser and POST /api";
    QTest::newRow("eight characters are a key") << "/api/abcd1234/lights"
                                                << ""
                                                << "/api/[redacted]/lights";
    QTest::newRow("a short stored key, percent-encoded too") << "/api/k%2Fy/lights k/y"
                                                             << "k/y"
                                                             << "/api/[redacted]/lights [redacted]";
    QTest::newRow("the last four characters stay")
        << "Connecting to Bridge... [\u20266789ab]" << key << "Connecting to Bridge... [\u20266789ab]";
    QTest::newRow("twice is once") << "/api/[redacted]/lights [redacted]" << key
                                   << "/api/[redacted]/lights [redacted]";
}

void TestRedaction::hidesTheKeyAndKeyShapedPathSegments()
{
    QFETCH(QString, text);
    QFETCH(QString, storedKey);
    QFETCH(QString, expected);
    QCOMPARE(redacted(text, storedKey), expected);
}

QTEST_GUILESS_MAIN(TestRedaction)
#include "tst_redaction.moc"
