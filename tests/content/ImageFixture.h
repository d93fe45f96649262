// What the tests of images share: a folder to fill, the image made of it, and a folder to extract
// that into. Main thread.
#pragma once

#include <QObject>
#include <QTemporaryDir>

class ImageFixture : public QObject
{
    Q_OBJECT

protected:
    [[nodiscard]] QByteArray path(const char *name) const;
    [[nodiscard]] QByteArray source() const { return path("source"); }
    [[nodiscard]] QByteArray image() const { return path("image.iso"); }
    [[nodiscard]] QByteArray extracted() const { return path("extracted"); }

    // A row for each odd tree, with the function that makes it.
    static void addOddTrees();

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init();
    void cleanup();
};
