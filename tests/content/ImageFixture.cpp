#include "ImageFixture.h"

#include "OddTrees.h"
#include "TreeTools.h"

#include <QFile>
#include <QTest>

#include <filesystem>

QByteArray ImageFixture::path(const char *name) const
{
    return QFile::encodeName(m_folder->filePath(QString::fromLatin1(name)));
}

void ImageFixture::addOddTrees()
{
    QTest::addColumn<MakeTree>("make");
    for (const OddTree &tree : oddTrees())
        QTest::newRow(tree.name) << tree.make;
}

void ImageFixture::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    TreeTools::makeFolder(source());
}

// QTemporaryDir does not find the names that are no text.
void ImageFixture::cleanup()
{
    std::filesystem::remove_all(m_folder->path().toStdString());
}
