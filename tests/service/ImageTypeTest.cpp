#include "ImageType.h"
#include "TestMain.h"

class ImageTypeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void type_data();
    void type();
};

void ImageTypeTest::type_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("type");

    QTest::newRow("jpg") << "photo.jpg" << 3;
    QTest::newRow("capital letters") << "/home/me/PHOTO.JPG" << 3;
    QTest::newRow("jpeg") << "photo.jpeg" << 3;
    QTest::newRow("png") << "photo.png" << 4;
    QTest::newRow("bmp") << "photo.bmp" << 1;
    QTest::newRow("tiff") << "photo.tiff" << 0;
    QTest::newRow("only the last dot counts") << "photo.jpg.png" << 4;
    QTest::newRow("a folder's extension does not count") << "photos.png/photo" << 0;
    QTest::newRow("dots of the folder only") << "../photo" << 0;
    QTest::newRow("unknown") << "photo.webp" << 0;
    QTest::newRow("empty") << "" << 0;
}

void ImageTypeTest::type()
{
    QFETCH(const QString, path);
    QTEST(MiscTool::getImageType(path), "type");
}

MAPLORN_TEST_MAIN(ImageTypeTest)
#include "ImageTypeTest.moc"
