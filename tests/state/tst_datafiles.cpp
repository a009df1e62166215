#include "state/DataFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestDataFiles final : public QObject
{
    Q_OBJECT

private slots:
    void prefersTheFolderNamedInTheEnvironment();
    void findsTheSourceTreesFilesFromTheBuildTree();
    void answersEmptyForAFileNobodyShips();
};

void TestDataFiles::prefersTheFolderNamedInTheEnvironment()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("scripts")));
    QFile script(folder.filePath(QStringLiteral("scripts/send_debug.rb")));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.close();

    qputenv("GLOWDECK_DATA_DIR", folder.path().toLocal8Bit());
    const QString found = dataFilePath(QStringLiteral("scripts/send_debug.rb"));
    qunsetenv("GLOWDECK_DATA_DIR");
    QCOMPARE(found, QFileInfo(script).canonicalFilePath());
}

void TestDataFiles::findsTheSourceTreesFilesFromTheBuildTree()
{
    QVERIFY(!dataFilePath(QStringLiteral("README.md")).isEmpty());
}

void TestDataFiles::answersEmptyForAFileNobodyShips()
{
    QCOMPARE(dataFilePath(QStringLiteral("no/such/file")), QString());
    // A folder of that name is not the file.
    QCOMPARE(dataFilePath(QStringLiteral(".")), QString());
}

QTEST_GUILESS_MAIN(TestDataFiles)
#include "tst_datafiles.moc"
