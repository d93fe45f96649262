// The repository: what is stored, what replaces what, and its sheet on the data page.
#include "DataPage.h"
#include "FileTools.h"
#include "WindowTestMain.h"

#include <QLabel>
#include <QTableWidget>

#include <filesystem>
#include <fstream>

using DataRepository::Kind;

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

}

class RepositoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(MiscTool::getCachedPath()).removeRecursively());
    }

    void copiesEverything();
    void newCopyReplacesTheOld();
    void failedCopyLosesNothing_data();
    void failedCopyLosesNothing();
    void copyOntoItselfChangesNothing();
    void repositoryIsNotCopiedIntoItself();
    void repositoryItselfIsNoSource_data();
    void repositoryItselfIsNoSource();
    void namesThatAreNoText();
    void nothingElseIsLeftBehind();
    void saveAsksForASource();
    void saveReportsSuccessWhateverHappens();
    void selectKeepsSizeAndLevel();
    void deleteSwitchesTheKind();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void RepositoryTest::copiesEverything()
{
    const QString source = path(QStringLiteral("My Folder"));
    writeFile(source + QStringLiteral("/.hidden/中文 é"), "text");
    QVERIFY(QDir().mkpath(source + QStringLiteral("/empty")));
    QVERIFY(QFile::link(QStringLiteral("/nowhere"), source + QStringLiteral("/link")));
    QVERIFY(DataRepository::save(Kind::Folder, source + QLatin1Char('/'), {}));
    const QString copy = DataRepository::pathOf(Kind::Folder, QStringLiteral("My Folder"));
    QCOMPARE(copy, MiscTool::getCachedPath() + QStringLiteral("/Repository/Data/Folder/My Folder"));
    QCOMPARE(fileContent(copy + QStringLiteral("/.hidden/中文 é")), QByteArray("text"));
    QVERIFY(QDir(copy + QStringLiteral("/empty")).exists());
    QCOMPARE(QFileInfo(copy + QStringLiteral("/link")).symLinkTarget(), QStringLiteral("/nowhere"));
    QCOMPARE(QFileInfo(copy).lastModified(), QFileInfo(source).lastModified());
    QCOMPARE(DataRepository::sizeOf(Kind::Folder, QStringLiteral("My Folder"), {}), 4);
}

void RepositoryTest::newCopyReplacesTheOld()
{
    const QString source = path(QStringLiteral("folder"));
    writeFile(source + QStringLiteral("/old"), "old");
    QVERIFY(DataRepository::save(Kind::Folder, source, {}));
    QVERIFY(QFile::remove(source + QStringLiteral("/old")));
    writeFile(source + QStringLiteral("/new"), "new");
    QVERIFY(DataRepository::save(Kind::Folder, source, {}));
    const QString copy = DataRepository::pathOf(Kind::Folder, QStringLiteral("folder"));
    QVERIFY(!QFile::exists(copy + QStringLiteral("/old")));
    QCOMPARE(fileContent(copy + QStringLiteral("/new")), QByteArray("new"));
}

void RepositoryTest::failedCopyLosesNothing_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("source is gone") << "gone";
    QTest::newRow("stopped by the program's end") << "stopped";
}

void RepositoryTest::failedCopyLosesNothing()
{
    QFETCH(const QString, how);
    const QString source = path(QStringLiteral("disc.iso"));
    writeFile(source, "first");
    QVERIFY(DataRepository::save(Kind::Image, source, {}));
    writeFile(source, "second");
    std::stop_source stop;
    if (how == QLatin1StringView("gone"))
        QVERIFY(QFile::remove(source));
    else
        stop.request_stop();
    QVERIFY(!DataRepository::save(Kind::Image, source, stop.get_token()));
    QCOMPARE(fileContent(DataRepository::pathOf(Kind::Image, QStringLiteral("disc.iso"))),
             QByteArray("first"));
}

void RepositoryTest::copyOntoItselfChangesNothing()
{
    const QString copy = DataRepository::pathOf(Kind::Folder, QStringLiteral("kept"));
    writeFile(copy + QStringLiteral("/file"), "content");
    QVERIFY(DataRepository::save(Kind::Folder, copy, {}));
    QCOMPARE(fileContent(copy + QStringLiteral("/file")), QByteArray("content"));
}

void RepositoryTest::repositoryIsNotCopiedIntoItself()
{
    const QString documents = MiscTool::getCachedPath();
    writeFile(documents + QStringLiteral("/letter"), "text");
    QVERIFY(DataRepository::save(Kind::Folder, documents, {}));
    const QString copy = DataRepository::pathOf(Kind::Folder, QFileInfo(documents).fileName());
    QCOMPARE(fileContent(copy + QStringLiteral("/letter")), QByteArray("text"));
    QVERIFY(!QFile::exists(copy + QStringLiteral("/Repository")));
}

void RepositoryTest::repositoryItselfIsNoSource_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("all of it") << "/Repository";
    QTest::newRow("the stores, among which the copy is made") << "/Repository/Data";
}

void RepositoryTest::repositoryItselfIsNoSource()
{
    QFETCH(const QString, source);
    writeFile(DataRepository::pathOf(Kind::Image, QStringLiteral("a.iso")), "a");
    QVERIFY(!DataRepository::save(Kind::Folder, MiscTool::getCachedPath() + source, {}));
    QVERIFY(DataRepository::names(Kind::Folder).isEmpty());
}

// The names are bytes to the file system, and need not be text.
void RepositoryTest::namesThatAreNoText()
{
    const std::filesystem::path source(path(QStringLiteral("folder")).toStdString());
    std::filesystem::create_directories(source / "sub\xe9");
    std::ofstream(source / "sub\xe9" / "caf\xe9") << "text";
    QVERIFY(DataRepository::save(Kind::Folder, path(QStringLiteral("folder")), {}));
    const std::filesystem::path copy(
        DataRepository::pathOf(Kind::Folder, QStringLiteral("folder")).toStdString());
    QCOMPARE(std::filesystem::file_size(copy / "sub\xe9" / "caf\xe9"), std::uintmax_t(4));
    QVERIFY(DataRepository::remove(Kind::Folder, QStringLiteral("folder")));
    QVERIFY(!std::filesystem::exists(copy));
}

void RepositoryTest::nothingElseIsLeftBehind()
{
    writeFile(path(QStringLiteral("a.iso")), "a");
    QVERIFY(DataRepository::save(Kind::Image, path(QStringLiteral("a.iso")), {}));
    QVERIFY(DataRepository::save(Kind::Image, path(QStringLiteral("a.iso")), {}));
    QVERIFY(!DataRepository::save(Kind::Image, path(QStringLiteral("b.iso")), {}));
    QCOMPARE(DataRepository::names(Kind::Image), QStringList(QStringLiteral("a.iso")));
    QVERIFY(DataRepository::names(Kind::Folder).isEmpty());
    QCOMPARE(QDir(MiscTool::getCachedPath() + QStringLiteral("/Repository/Data"))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("Folder"), QStringLiteral("Image")}));
}

void RepositoryTest::saveAsksForASource()
{
    const DataPage page;
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Source cannot be null."),
                  QStringLiteral("Please select source first."));
    page.click("saveButton");
    QVERIFY(alerts.isDone());
}

void RepositoryTest::saveReportsSuccessWhateverHappens()
{
    const DataPage page;
    page.choose(m_folder->path());
    QVERIFY(m_folder->remove());
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Saved to repository."),
                  QStringLiteral("Saved to repository successfully."));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("not saved")));
    page.click("saveButton");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(!page.page->hasRunningJob());
}

void RepositoryTest::selectKeepsSizeAndLevel()
{
    writeFile(path(QStringLiteral("file")), QByteArray(5000, 'x'));
    writeFile(DataRepository::pathOf(Kind::Image, QStringLiteral("big.iso")),
              QByteArray(90000, 'x'));
    const DataPage page;
    page.choose(m_folder->path());
    page.click("openButton");
    auto *panel = page.page->findChild<QDialog *>(QStringLiteral("repositoryPanel"));
    QVERIFY(panel);
    auto *table = panel->findChild<QTableWidget *>(QStringLiteral("repositoryTable"));
    QCOMPARE(table->rowCount(), 0);
    auto *select = panel->findChild<QAbstractButton *>(QStringLiteral("selectButton"));
    select->click();
    QVERIFY2(panel->isVisible(), "nothing is chosen without a row");

    panel->findChild<QAbstractButton *>(QStringLiteral("imagesSegment"))->click();
    QCOMPARE(table->rowCount(), 1);
    QTRY_COMPARE(table->item(0, 1)->text(), QStringLiteral("90.0 KB"));
    table->selectRow(0);
    select->click();
    QVERIFY(!panel->isVisible());
    QCOMPARE(page.control<QComboBox>("sourceTypePopUp")->currentIndex(), 1);
    QCOMPARE(page.control<QLineEdit>("sourceField")->text(),
             DataRepository::pathOf(Kind::Image, QStringLiteral("big.iso")));
    QCOMPARE(page.control<QLabel>("fileSizeLabel")->text(), QStringLiteral("5.0 KB"));
    QCOMPARE(page.control<QLabel>("sourceTipLabel")->text(),
             QStringLiteral("Please selec a folder to burn"));
}

void RepositoryTest::deleteSwitchesTheKind()
{
    writeFile(DataRepository::pathOf(Kind::Image, QStringLiteral("a.iso")), "a");
    const DataPage page;
    page.click("openButton");
    auto *panel = page.page->findChild<QDialog *>(QStringLiteral("repositoryPanel"));
    panel->findChild<QAbstractButton *>(QStringLiteral("imagesSegment"))->click();
    auto *table = panel->findChild<QTableWidget *>(QStringLiteral("repositoryTable"));
    auto *button = panel->findChild<QAbstractButton *>(QStringLiteral("repositoryDeleteButton"));
    AlertRecorder alerts;
    button->click();
    QVERIFY2(alerts.seen().isEmpty(), "no row, no question");

    const QString question = QStringLiteral("Are you sure to delete?");
    const QString warning = QStringLiteral("The operation is irreversible.");
    table->selectRow(0);
    alerts.expect(question, warning, QMessageBox::Cancel);
    button->click();
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(page.control<QComboBox>("sourceTypePopUp")->currentIndex(), 0);

    alerts.expect(question, warning);
    button->click();
    QTRY_COMPARE(table->rowCount(), 0);
    QCOMPARE(page.control<QComboBox>("sourceTypePopUp")->currentIndex(), 1);
    QVERIFY(DataRepository::names(Kind::Image).isEmpty());
}

MAPLORN_WINDOW_TEST_MAIN(RepositoryTest)
#include "RepositoryTest.moc"
