#include "VirtualBurnFaults.h"

#include "BurnRun.h"
#include "MediaTypes.h"

#include <QDir>
#include <QTest>

#include <sys/mount.h>

using namespace Qt::StringLiterals;

namespace {

const QStringList nothing{u"medium.plist"_s};

}

void VirtualBurnFaults::verifyUntouched() const
{
    QVERIFY(device().mediaIsBlank());
    QCOMPARE(m_drive->mediumFiles(), nothing);
}

void VirtualBurnFaults::verifyUnusable() const
{
    QVERIFY(device().mediaIsPresent());
    QVERIFY(!device().mediaIsBlank());
    QVERIFY(!device().mediaIsAppendable());
    QCOMPARE(m_drive->mediumFiles(), nothing);
}

void VirtualBurnFaults::verifyRefused(const BurnRequest &request, const QString &reason) const
{
    BurnRun run;
    const Result<> burned = run.burn(recorder(), request);
    QVERIFY(!burned);
    QVERIFY(!burned.error().isEmpty());
    QVERIFY2(burned.error().contains(reason), qPrintable(burned.error()));
    QCOMPARE(run.states(), QStringList());
    verifyUntouched();
}

void VirtualBurnFaults::changeByte(const QString &name, qint64 position) const
{
    QFile medium(m_drive->mediumFile(name));
    char byte = 0;
    QVERIFY(medium.open(QIODevice::ReadWrite) && medium.seek(position) && medium.getChar(&byte)
            && medium.seek(position) && medium.putChar(static_cast<char>(byte ^ 1)));
}

void VirtualBurnFaults::burnOnFullDisk(const char *size, const QString &filledAt,
                                       const BurnRequest &request) const
{
    const QByteArray folder = QFile::encodeName(recorder().mediumFolder());
    const VirtualMedium medium = *recorder().medium();
    if (::mount("none", folder.constData(), "tmpfs", 0, size) != 0)
        QSKIP("needs the right to mount a file system");
    const auto unmount = qScopeGuard([&folder] { ::umount2(folder.constData(), MNT_DETACH); });
    QVERIFY(medium.store(recorder().mediumFolder()));
    QVERIFY(device().mediaIsBlank());

    QFile rest(m_drive->mediumFile(u"rest"_s));
    BurnRun run;
    run.at(filledAt, [&rest] {
        QVERIFY(rest.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (rest.write(QByteArray(1024, 'x')) > 0) {
        }
    });
    const Result<> burned = run.burn(recorder(), request);
    QVERIFY(!burned);
    QVERIFY2(burned.error().contains(u"No space left"_s), qPrintable(burned.error()));
    QCOMPARE(rest.remove(), !filledAt.isEmpty());
    filledAt == DRStatusStateSessionOpen ? verifyUntouched() : verifyUnusable();
}

void VirtualBurnFaults::cancelledBeforeWriting()
{
    BurnRun run;
    run.stop();
    QCOMPARE(run.burn(recorder(), request()).error(), u"The job was cancelled."_s);
    verifyUntouched();
}

void VirtualBurnFaults::cancelled_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("verify");
    for (const QString &state : BurnRun::wholeBurn(true))
        QTest::newRow(qPrintable(state)) << state << true;
    QTest::newRow("while the data are brought to the disk, nothing to verify")
        << QString(DRStatusStateTrackClose) << false;
}

void VirtualBurnFaults::cancelled()
{
    QFETCH(const QString, state);
    QFETCH(const bool, verify);
    BurnRequest request = this->request();
    request.verify = verify;
    BurnRun run;
    run.at(state, [&run] { run.stop(); });
    QCOMPARE(run.burn(recorder(), request).error(), u"The job was cancelled."_s);
    QVERIFY(run.states().last() == state
            || !run.states().contains(QString(DRStatusStateFinishing)));
    verifyUnusable();
    QVERIFY(!device().status().value(DRDeviceIsBusyKey).toBool());
    QVERIFY(recorder().eject());
}

void VirtualBurnFaults::mediumPulledOut_data()
{
    QTest::addColumn<QString>("state");
    for (const QLatin1StringView state :
         {DRStatusStateTrackWrite, DRStatusStateVerifying, DRStatusStateFinishing})
        QTest::newRow(state.data()) << QString(state);
}

void VirtualBurnFaults::mediumPulledOut()
{
    QFETCH(const QString, state);
    const QString aside = recorder().folder() + u"/aside"_s;
    BurnRun run;
    run.at(state, [&] { QVERIFY(QDir().rename(recorder().mediumFolder(), aside)); });
    QCOMPARE(run.burn(recorder(), request()).error(),
             u"The medium was taken out of the recorder."_s);
    QVERIFY(!device().mediaIsPresent());

    QVERIFY(QDir().rename(aside, recorder().mediumFolder())); // put in again
    QVERIFY(device().mediaIsPresent());
    QVERIFY(!device().mediaIsBlank());
    for (const QString &file : contentFiles())
        QVERIFY2(!m_drive->mediumFiles().contains(file), qPrintable(file));
    if (!recorder().medium()->isErasable())
        return;
    QVERIFY(BurnRun().erase(recorder(), EraseType::Complete));
    verifyUntouched();
}

void VirtualBurnFaults::exchangedMediumIsNotTouched()
{
    QFETCH(const QString, state);
    VirtualMedium other = VirtualMedium::blank(*MediaTypes::find(DRDeviceMediaTypeCDR));
    other.state = VirtualMedium::State::Complete;
    BurnRun run;
    run.at(state, [&] {
        QVERIFY(QDir().rename(recorder().mediumFolder(), recorder().folder() + u"/x"_s));
        QVERIFY(QDir().mkpath(recorder().mediumFolder()));
        QVERIFY(other.store(recorder().mediumFolder()));
        for (const QString &file : contentFiles())
            QVERIFY(QFile::copy(m_drive->makeSource(u"other"_s, 10), m_drive->mediumFile(file)));
    });
    QVERIFY(!run.burn(recorder(), request()));
    QCOMPARE(recorder().medium()->identifier, other.identifier);
    QCOMPARE(recorder().medium()->state, VirtualMedium::State::Complete);
    QCOMPARE(m_drive->mediumFiles(), contentFiles() + nothing);
    for (const QString &file : contentFiles())
        QCOMPARE(fileContent(m_drive->mediumFile(file)).size(), 10);
}
