// The DMG and ISO pages: their checks, and exactly what they hand to the disc-image tool, with a
// tool that writes down its arguments and does what the test says.
#include "AlertRecorder.h"
#include "DMGViewController.h"
#include "ISOViewController.h"
#include "RunningJobs.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

namespace {

constexpr int patience = 30000; // ms

const QString success = QStringLiteral("Image is generated successfully.");
const QString failure = QStringLiteral("Fail to generate Image.");

}

class ImagePageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void checksInOrder_data();
    void checksInOrder();
    void argumentsAreExact_data();
    void argumentsAreExact();
    void everyFailureIsOneMessage_data();
    void everyFailureIsOneMessage();
    void controlsWhileGenerating();
    void abortEndsTheTool();
    void choosingAFolderNamesTheVolume();
    void clearAsksNothing();

private:
    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        return m_page->findChild<Control *>(QLatin1StringView(name));
    }
    void click(const char *name) const
    {
        QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton);
    }
    void show(ImageViewController *page)
    {
        m_page.reset(page);
        m_page->show();
    }
    void enter(const QString &source, const QString &volume, const QString &output) const
    {
        control<QLineEdit>("srcFolderField")->setText(source);
        control<QLineEdit>("volumnNameField")->setText(volume);
        control<QLineEdit>("outputField")->setText(output);
    }
    // A tool that writes its arguments, one a line, and then runs these commands of a shell.
    void useTool(const QString &commands) const;
    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder->filePath(QLatin1StringView(name));
    }
    [[nodiscard]] QByteArray content(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ImageViewController> m_page;
};

void ImagePageTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    Session::setWorking(false);
    show(DMGViewController::getViewController());
}

void ImagePageTest::cleanup()
{
    m_page.reset();
    DiskImageTool::setProgramPath({});
}

void ImagePageTest::useTool(const QString &commands) const
{
    QFile tool(path("tool"));
    QVERIFY(tool.open(QIODevice::WriteOnly));
    tool.write("#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + path("arguments").toUtf8() + "'\n"
               + commands.toUtf8() + '\n');
    tool.close();
    QVERIFY(tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    DiskImageTool::setProgramPath(tool.fileName());
}

void ImagePageTest::checksInOrder_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QString>("message");

    QTest::newRow("nothing") << ""
                             << ""
                             << "Source folder cannot be null.";
    QTest::newRow("no name") << "/x"
                             << ""
                             << "Volume name cannot be null.";
    QTest::newRow("no output") << "/x"
                               << " "
                               << "Output file cannot be null.";
}

void ImagePageTest::checksInOrder()
{
    QFETCH(const QString, source);
    QFETCH(const QString, volume);
    QFETCH(const QString, message);
    useTool(QString());
    enter(source, volume, {});
    AlertRecorder alerts;
    alerts.expect(message, {});
    click("generateButton");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(!QFile::exists(path("arguments")) && !Session::isWorking());
}

void ImagePageTest::argumentsAreExact_data()
{
    QTest::addColumn<bool>("isDMG");
    QTest::addColumn<QByteArray>("arguments");

    QTest::newRow("DMG") << true
                         << QByteArray("makehybrid\n-hfs\n-o\n/out put.dmg\n-default-volume-name\n"
                                       "My \"$HOME\" Volume\n-ov\n-quiet\n/no such;folder\n");
    QTest::newRow("ISO") << false
                         << QByteArray("makehybrid\n-o\n/out put.dmg\n-default-volume-name\n"
                                       "My \"$HOME\" Volume\n-ov\n-quiet\n/no such;folder\n");
}

void ImagePageTest::argumentsAreExact()
{
    QFETCH(const bool, isDMG);
    useTool(QString());
    if (!isDMG)
        show(ISOViewController::getViewController());
    enter(QStringLiteral("/no such;folder"), QStringLiteral("My \"$HOME\" Volume"),
          QStringLiteral("/out put.dmg"));
    AlertRecorder alerts;
    alerts.expect(success, {});
    click("generateButton");
    QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), patience);
    QTEST(content("arguments"), "arguments");
}

void ImagePageTest::everyFailureIsOneMessage_data()
{
    QTest::addColumn<QString>("commands");

    QTest::newRow("refused") << "exit 1";
    QTest::newRow("another status") << "exit 77";
    QTest::newRow("killed") << "kill -9 $$";
    QTest::newRow("missing tool") << "";
}

void ImagePageTest::everyFailureIsOneMessage()
{
    QFETCH(const QString, commands);
    if (commands.isEmpty())
        DiskImageTool::setProgramPath(path("none"));
    else
        useTool(commands);
    enter(QStringLiteral("/a"), QStringLiteral("b"), QStringLiteral("/c"));
    AlertRecorder alerts;
    alerts.expect(failure, {});
    click("generateButton");
    QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), patience);
    QVERIFY(control<QWidget>("generateButton")->isEnabled());
    QVERIFY(!Session::isWorking() && RunningJobs::instance().isEmpty());
}

void ImagePageTest::controlsWhileGenerating()
{
    useTool(QStringLiteral("while [ ! -e '%1' ]; do sleep 0.02; done").arg(path("go")));
    enter(QStringLiteral("/a"), QStringLiteral("b"), QStringLiteral("/c"));
    click("generateButton");
    const auto areFree = [this](bool free) {
        for (const char *name :
             {"srcSelectButton", "outputSelectButton", "clearButton", "generateButton"})
            QCOMPARE(control<QWidget>(name)->isEnabled(), free);
        QCOMPARE(control<QLineEdit>("volumnNameField")->isReadOnly(), !free);
        QCOMPARE(control<QProgressBar>("progressIndicator")->isHidden(), free);
        QCOMPARE(Session::isWorking(), !free);
        QCOMPARE(m_page->hasRunningJob(), !free);
    };
    areFree(false);
    AlertRecorder alerts;
    alerts.expect(success, {});
    QFile go(path("go"));
    QVERIFY(go.open(QIODevice::WriteOnly));
    QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), patience);
    areFree(true);
}

void ImagePageTest::abortEndsTheTool()
{
    useTool(QStringLiteral("trap 'echo ended > \"%1\"; exit 1' TERM\n"
                           "echo begun > '%2'\nwhile :; do sleep 0.02; done")
                .arg(path("ended"), path("begun")));
    enter(QStringLiteral("/a"), QStringLiteral("b"), QStringLiteral("/c"));
    click("generateButton");
    QTRY_VERIFY_WITH_TIMEOUT(!content("begun").isEmpty(), patience);
    const AlertRecorder noAlert; // it would keep the program open behind its closed window
    RunningJobs::instance().abortAll();
    QTRY_VERIFY_WITH_TIMEOUT(control<QPushButton>("generateButton")->isEnabled(), patience);
    QCOMPARE(content("ended"), QByteArray("ended\n"));
}

void ImagePageTest::choosingAFolderNamesTheVolume()
{
    const QString folder = path("My Pictures");
    QVERIFY(QDir().mkpath(folder));
    control<QLineEdit>("volumnNameField")->setText(QStringLiteral("typed"));
    click("srcSelectButton");
    auto *chooser = m_page->findChild<QFileDialog *>();
    chooser->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(folder);
    chooser->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->click();
    QTRY_COMPARE(control<QLineEdit>("srcFolderField")->text(), folder);
    QCOMPARE(control<QLineEdit>("volumnNameField")->text(), QStringLiteral("My Pictures"));
    QTRY_VERIFY(!m_page->findChild<QFileDialog *>());

    click("outputSelectButton");
    chooser = m_page->findChild<QFileDialog *>();
    chooser->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path("image 2.5"));
    chooser->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
    QTRY_COMPARE(control<QLineEdit>("outputField")->text(), path("image 2.5.dmg"));
}

void ImagePageTest::clearAsksNothing()
{
    enter(QStringLiteral("/a"), QStringLiteral("b"), QStringLiteral("/c"));
    const AlertRecorder alerts;
    click("clearButton");
    for (const char *name : {"srcFolderField", "volumnNameField", "outputField"})
        QCOMPARE(control<QLineEdit>(name)->text(), QString());
}

MAPLORN_WINDOW_TEST_MAIN(ImagePageTest)
#include "ImagePageTest.moc"
