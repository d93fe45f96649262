// The repository: what is stored, what replaces what, and its sheet on the data page.
#include "DataPage.h"
#include "FileTools.h"
#include "WindowTestMain.h"

#include <QTableWidget>

#include <filesystem>
#include <fstream>

using namespace Qt::StringLiterals;

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
    const QString source = path(u"My Folder"_s);
    writeFile(source + u"/.hidden/中文 é"_s, "text");
    QVERIFY(QDir().mkpath(source + u"/empty"_s));
    QVERIFY(QFile::link(u"/nowhere"_s, source + u"/link"_s));
    QVERIFY(DataRepository::save(Kind::Folder, source + u'/', {}));
    const QString copy = DataRepository::pathOf(Kind::Folder, u"My Folder"_s);
    QCOMPARE(copy, MiscTool::getCachedPath() + u"/Repository/Data/Folder/My Folder"_s);
    QCOMPARE(fileContent(copy + u"/.hidden/中文 é"_s), "text"_ba);
    QVERIFY(QDir(copy + u"/empty"_s).exists());
    QCOMPARE(QFileInfo(copy + u"/link"_s).symLinkTarget(), u"/nowhere"_s);
    QCOMPARE(QFileInfo(copy).lastModified(), QFileInfo(source).lastModified());
    QCOMPARE(DataRepository::sizeOf(Kind::Folder, u"My Folder"_s, {}), 4);
}

void RepositoryTest::newCopyReplacesTheOld()
{
    const QString source = path(u"folder"_s);
    writeFile(source + u"/old"_s, "old");
    QVERIFY(DataRepository::save(Kind::Folder, source, {}));
    QVERIFY(QFile::remove(source + u"/old"_s));
    writeFile(source + u"/new"_s, "new");
    QVERIFY(DataRepository::save(Kind::Folder, source, {}));
    const QString copy = DataRepository::pathOf(Kind::Folder, u"folder"_s);
    QVERIFY(!QFile::exists(copy + u"/old"_s));
    QCOMPARE(fileContent(copy + u"/new"_s), "new"_ba);
}

void RepositoryTest::failedCopyLosesNothing_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("source is gone") << u"gone"_s;
    QTest::newRow("stopped by the program's end") << u"stopped"_s;
}

void RepositoryTest::failedCopyLosesNothing()
{
    QFETCH(const QString, how);
    const QString source = path(u"disc.iso"_s);
    writeFile(source, "first");
    QVERIFY(DataRepository::save(Kind::Image, source, {}));
    writeFile(source, "second");
    std::stop_source stop;
    if (how == "gone"_L1)
        QVERIFY(QFile::remove(source));
    else
        stop.request_stop();
    QVERIFY(!DataRepository::save(Kind::Image, source, stop.get_token()));
    QCOMPARE(fileContent(DataRepository::pathOf(Kind::Image, u"disc.iso"_s)), "first"_ba);
}

void RepositoryTest::copyOntoItselfChangesNothing()
{
    const QString copy = DataRepository::pathOf(Kind::Folder, u"kept"_s);
    writeFile(copy + u"/file"_s, "content");
    QVERIFY(DataRepository::save(Kind::Folder, copy, {}));
    QCOMPARE(fileContent(copy + u"/file"_s), "content"_ba);
}

void RepositoryTest::repositoryIsNotCopiedIntoItself()
{
    const QString documents = MiscTool::getCachedPath();
    writeFile(documents + u"/letter"_s, "text");
    QVERIFY(DataRepository::save(Kind::Folder, documents, {}));
    const QString copy = DataRepository::pathOf(Kind::Folder, QFileInfo(documents).fileName());
    QCOMPARE(fileContent(copy + u"/letter"_s), "text"_ba);
    QVERIFY(!QFile::exists(copy + u"/Repository"_s));
}

void RepositoryTest::repositoryItselfIsNoSource_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("all of it") << u"/Repository"_s;
    QTest::newRow("the stores, among which the copy is made") << u"/Repository/Data"_s;
}

void RepositoryTest::repositoryItselfIsNoSource()
{
    QFETCH(const QString, source);
    writeFile(DataRepository::pathOf(Kind::Image, u"a.iso"_s), "a");
    QVERIFY(!DataRepository::save(Kind::Folder, MiscTool::getCachedPath() + source, {}));
    QVERIFY(DataRepository::names(Kind::Folder).isEmpty());
}

// The names are bytes to the file system, and need not be text.
void RepositoryTest::namesThatAreNoText()
{
    const std::filesystem::path source(path(u"folder"_s).toStdString());
    std::filesystem::create_directories(source / "sub\xe9");
    std::ofstream(source / "sub\xe9" / "caf\xe9") << "text";
    QVERIFY(DataRepository::save(Kind::Folder, path(u"folder"_s), {}));
    const std::filesystem::path copy(
        DataRepository::pathOf(Kind::Folder, u"folder"_s).toStdString());
    QCOMPARE(std::filesystem::file_size(copy / "sub\xe9" / "caf\xe9"), std::uintmax_t(4));
    QVERIFY(DataRepository::remove(Kind::Folder, u"folder"_s));
    QVERIFY(!std::filesystem::exists(copy));
}

void RepositoryTest::nothingElseIsLeftBehind()
{
    writeFile(path(u"a.iso"_s), "a");
    QVERIFY(DataRepository::save(Kind::Image, path(u"a.iso"_s), {}));
    QVERIFY(DataRepository::save(Kind::Image, path(u"a.iso"_s), {}));
    QVERIFY(!DataRepository::save(Kind::Image, path(u"b.iso"_s), {}));
    QCOMPARE(DataRepository::names(Kind::Image), QStringList(u"a.iso"_s));
    QVERIFY(DataRepository::names(Kind::Folder).isEmpty());
    QCOMPARE(QDir(MiscTool::getCachedPath() + u"/Repository/Data"_s)
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{u"Folder"_s, u"Image"_s}));
}

void RepositoryTest::saveAsksForASource()
{
    const DataPage page;
    AlertRecorder alerts;
    alerts.expect(u"Source cannot be null."_s, u"Please select source first."_s);
    page.click("saveButton");
    QVERIFY(alerts.isDone());
}

void RepositoryTest::saveReportsSuccessWhateverHappens()
{
    const DataPage page;
    page.choose(m_folder->path());
    QVERIFY(m_folder->remove());
    AlertRecorder alerts;
    alerts.expect(u"Saved to repository."_s, u"Saved to repository successfully."_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"not saved"_s));
    page.click("saveButton");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(!page.page->hasRunningJob());
}

void RepositoryTest::selectKeepsSizeAndLevel()
{
    writeFile(path(u"file"_s), QByteArray(5000, 'x'));
    writeFile(DataRepository::pathOf(Kind::Image, u"big.iso"_s), QByteArray(90000, 'x'));
    const DataPage page;
    page.choose(m_folder->path());
    page.click("openButton");
    auto *panel = page.page->findChild<QDialog *>(u"repositoryPanel"_s);
    QVERIFY(panel);
    auto *table = panel->findChild<QTableWidget *>(u"repositoryTable"_s);
    QCOMPARE(table->rowCount(), 0);
    auto *select = panel->findChild<QAbstractButton *>(u"selectButton"_s);
    select->click();
    QVERIFY2(panel->isVisible(), "nothing is chosen without a row");

    panel->findChild<QAbstractButton *>(u"imagesSegment"_s)->click();
    QCOMPARE(table->rowCount(), 1);
    QTRY_COMPARE(table->item(0, 1)->text(), u"90.0 KB"_s);
    table->selectRow(0);
    select->click();
    QVERIFY(!panel->isVisible());
    QCOMPARE(page.control<QComboBox>("sourceTypePopUp")->currentIndex(), 1);
    QCOMPARE(page.shown("sourceField"), DataRepository::pathOf(Kind::Image, u"big.iso"_s));
    QCOMPARE(page.label("fileSizeLabel"), u"5.0 KB"_s);
    QCOMPARE(page.label("sourceTipLabel"), u"Please selec a folder to burn"_s);
}

void RepositoryTest::deleteSwitchesTheKind()
{
    writeFile(DataRepository::pathOf(Kind::Image, u"a.iso"_s), "a");
    const DataPage page;
    page.click("openButton");
    auto *panel = page.page->findChild<QDialog *>(u"repositoryPanel"_s);
    panel->findChild<QAbstractButton *>(u"imagesSegment"_s)->click();
    auto *table = panel->findChild<QTableWidget *>(u"repositoryTable"_s);
    auto *button = panel->findChild<QAbstractButton *>(u"repositoryDeleteButton"_s);
    AlertRecorder alerts;
    button->click();
    QVERIFY2(alerts.seen().isEmpty(), "no row, no question");

    const QString question = u"Are you sure to delete?"_s;
    const QString warning = u"The operation is irreversible."_s;
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
