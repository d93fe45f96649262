// The file store of the real service, used by the real client, by sockets that mean it no good, and
// by people who put links into its folder.
#include "FileStore.h"
#include "FileTools.h"
#include "ServiceAddress.h"
#include "ServiceFixture.h"
#include "TestMain.h"

#include <QDir>
#include <QDirIterator>
#include <QTcpSocket>

#include <sys/stat.h>
#include <thread>

namespace {

const QString company = QStringLiteral("5");

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator all(folder, QDir::Files | QDir::System | QDir::Hidden,
                     QDirIterator::Subdirectories);
    while (all.hasNext())
        files.append(QDir(folder).relativeFilePath(all.next()));
    files.sort();
    return files;
}

QStringList names(const QString &group = {}, const QString &ofCompany = company)
{
    return MiscTool::getFiles(group, ofCompany, {}, {}).value_or(QStringList());
}

}

class FileServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void roundTrips_data();
    void roundTrips();
    void keysAreKeptApart();
    void listIsInOrder();
    void hostileKeys_data();
    void hostileKeys();
    void links();
    void refusedHeads_data();
    void refusedHeads();
    void headsOfDownloads_data();
    void headsOfDownloads();
    void emptyFileIsNoDownload();
    void abortedUploadLeavesNothing();
    void killedUploadLeavesNothing();
    void uploadsAtWorkSurviveAnotherStart();
    void everybodyAtOnce();
    void pictures();

private:
    bool upload(const QString &name, const QByteArray &bytes, const QString &group = {},
                const QString &ofCompany = company);
    // The answer to raw bytes, until the service closes or has sent what it announced.
    [[nodiscard]] QByteArray ask(const QByteArray &request) const;
    // An upload of so many bytes that stops after a few.
    [[nodiscard]] std::unique_ptr<QTcpSocket> halfUpload(const QByteArray &file, int size) const;
    [[nodiscard]] QString files() const { return m_service->folder() + QStringLiteral("/files"); }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void FileServiceTest::init()
{
    m_service = std::make_unique<ServiceFixture>(
        QStringList{QStringLiteral("--max-file-size"), QStringLiteral("6")});
    m_folder = std::make_unique<QTemporaryDir>();
}

bool FileServiceTest::upload(const QString &name, const QByteArray &bytes, const QString &group,
                             const QString &ofCompany)
{
    const QString path = m_folder->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return false;
    file.close();
    return MiscTool::uploadFile(group, ofCompany, {}, {}, path) && QFile::remove(path);
}

QByteArray FileServiceTest::ask(const QByteArray &request) const
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_service->port());
    if (!socket.waitForConnected())
        return {};
    socket.write(request);
    QByteArray answer;
    constexpr int patience = 60'000; // ms: an upload waits for the disk
    while (!answer.contains("\r\n\r\n") && socket.waitForReadyRead(patience))
        answer += socket.readAll();
    const qsizetype field = answer.indexOf("Content-Length: ") + 16;
    const qsizetype size = answer.indexOf("\r\n\r\n") + 4
                           + answer.mid(field, answer.indexOf('\r', field) - field).toLongLong();
    while (answer.size() < size && socket.waitForReadyRead(patience))
        answer += socket.readAll();
    return answer;
}

std::unique_ptr<QTcpSocket> FileServiceTest::halfUpload(const QByteArray &file, int size) const
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress::LocalHost, m_service->port());
    if (!socket->waitForConnected())
        qFatal("no connection");
    socket->write("POST /UploadService?servicePassword=secret&companyID=5&file=" + file
                  + " HTTP/1.1\r\nHost: x\r\nContent-Length: " + QByteArray::number(size)
                  + "\r\n\r\nabc");
    socket->flush();
    return socket;
}

void FileServiceTest::roundTrips_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QByteArray everyByte;
    for (int i = 0; i < 0x10000; ++i)
        everyByte += static_cast<char>(i * 7 >> (i & 8));
    const auto row = [](const char *tag, const QString &name, const QByteArray &bytes) {
        QTest::newRow(tag) << name << bytes;
    };
    row("5 MiB", "large", QByteArray(5 << 20, 'x'));
    row("the largest", "largest", QByteArray(6 << 20, 'x'));
    row("one byte", "small", "x");
    row("every byte value", "bytes", everyByte);
    row("the text of a refusal", "text", "false");
    row("Chinese", QStringLiteral("中文 💿.png"), "x");
    row("255 bytes", QString(85, QChar(0x4e2d)), "x");
    row("what addresses are made of", "a+b %41&c=d#e?f;g\"'<>[]{}|^`~.-_", "x");
    row("control characters", "a\tb\nc\x7f", "x");
    row("dots", "..a..", "x");
    row("hidden", ".hidden", "x");
}

void FileServiceTest::roundTrips()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, bytes);
    const auto trip = [&](const QString &key) {
        QVERIFY(upload(name, "older", key, key));
        QVERIFY(upload(name, bytes, key, key));
        QCOMPARE(names(key, key), QStringList{name});
        QCOMPARE(MiscTool::getFileSize(key, key, {}, {}, name), bytes.size());
        QVERIFY(MiscTool::downloadFile(key, key, {}, {}, name, m_folder->path()));
        QVERIFY(content(m_folder->filePath(name)) == bytes);
        QVERIFY(MiscTool::deleteFile(key, key, {}, {}, name));
        QVERIFY2(!MiscTool::deleteFile(key, key, {}, {}, name), "it is gone");
        QCOMPARE(MiscTool::getFileSize(key, key, {}, {}, name), 0);
        QCOMPARE(names(key, key), QStringList());
        QVERIFY(QFile::remove(m_folder->filePath(name)));
        QVERIFY(!MiscTool::downloadFile(key, key, {}, {}, name, m_folder->path()));
    };
    trip({});
    trip(QStringLiteral("key"));
    if (name.toUtf8().size() <= 253)
        trip(name);
    QCOMPARE(filesBelow(files()), QStringList());
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void FileServiceTest::keysAreKeptApart()
{
    QVERIFY(upload("a", "of the company"));
    QVERIFY(upload("b", "of the group", company, {}));
    QCOMPARE(names(), QStringList{"a"});
    QCOMPARE(names(company, {}), QStringList{"b"});
    QCOMPARE(MiscTool::getFileSize(company, {}, {}, {}, QStringLiteral("a")), 0);
    QVERIFY(!MiscTool::deleteFile({}, company, {}, {}, QStringLiteral("b")));
    // An address means one file.
    QVERIFY(!upload("b", "of the company"));
    QVERIFY(!upload("a", "of the group", company, {}));
    for (const auto &[name, bytes] :
         {std::pair("a", "of the company"), std::pair("b", "of the group")}) {
        const QString file = QString::fromLatin1(name);
        QVERIFY(MiscTool::downloadFile(company, {}, {}, {}, file, m_folder->path()));
        QCOMPARE(content(m_folder->filePath(file)), QByteArray(bytes));
    }
    // A folder and a file may have the same name.
    QVERIFY(upload("6", "of the company"));
    QVERIFY(upload("a", "of both", company, QStringLiteral("6")));
    QCOMPARE(names(), (QStringList{"6", "a"}));
}

void FileServiceTest::listIsInOrder()
{
    for (const char *name : {"b", "a10", "B", "a9", "ä", "中", ".c"})
        QVERIFY(upload(QString::fromUtf8(name), "x"));
    const std::unique_ptr<QTcpSocket> half = halfUpload("half", 100);
    QTRY_COMPARE(QDir(files() + QStringLiteral("/incoming")).count(), 3U);
    QDir(files()).mkpath(QStringLiteral("stored/c-5/files/folder"));
    QCOMPARE(names().join(u' '), QStringLiteral(".c B a10 a9 b ä 中"));
    QCOMPARE(names({}, QStringLiteral("6")), QStringList());
}

void FileServiceTest::hostileKeys_data()
{
    QTest::addColumn<QByteArray>("key");
    for (const char *key :
         {"", ".", "..", "%2e%2e", "/", "a/b", "a%2Fb", "a%5Cb", "%2Fetc%2Fpasswd",
          "..%2F..%2Fmaplorn-disc.sqlite", "%00", "a%00b", "%ff%fe", "..%5C.."})
        QTest::newRow(key) << QByteArray(key);
    QTest::newRow("256 bytes") << QByteArray(256, 'x');
    QTest::newRow("4000 bytes") << QByteArray(4000, 'x');
}

void FileServiceTest::hostileKeys()
{
    QFETCH(const QByteArray, key);
    QVERIFY(upload("a", "x"));
    const QByteArray tail = " HTTP/1.1\r\nHost: x\r\n";
    for (const char *name : {"groupID", "companyID", "module", "moduleID", "file"}) {
        QByteArray arguments = "?servicePassword=secret&" + QByteArray(name) + '=' + key;
        if (name != QByteArrayView("file"))
            arguments += "&file=a";
        const QByteArray answers[] = {
            ask("POST /UploadService" + arguments + tail + "Content-Length: 1\r\n\r\nx"),
            ask("GET /GetFileSizeService" + arguments + tail + "\r\n"),
            ask("GET /DeleteFileService" + arguments + tail + "\r\n"),
            name == QByteArrayView("file")
                ? QByteArray("HTTP/1.1 400\r\n\r\nfalse")
                : ask("GET /GetFilesService" + arguments + tail + "\r\n")};
        for (const QByteArray &answer : answers) {
            QVERIFY2(answer.startsWith("HTTP/1.1 400"), answer.constData());
            QVERIFY2(answer.endsWith("\r\n\r\nfalse"), answer.constData());
        }
    }
    for (const QByteArray &path : {key, QByteArray("5/" + key), QByteArray(key + "/a"),
                                   QByteArray("5/" + key + "/a"), QByteArray(key + "/5/a")}) {
        const QByteArray answer = ask("GET /Resource/" + path + tail + "\r\n");
        QVERIFY2(answer.startsWith("HTTP/1.1 404"), answer.constData());
        QVERIFY2(answer.endsWith("\r\n\r\n"), "clients would take a body for the file");
    }
    QCOMPARE(filesBelow(files()), QStringList{"stored/c-5/files/a"});
}

// Whoever can write into the folder must not make the service show or change what he cannot.
void FileServiceTest::links()
{
    const QString outside = m_folder->filePath("outside");
    QVERIFY(QDir().mkpath(outside + QStringLiteral("/files")));
    QFile secret(outside + QStringLiteral("/files/secret"));
    QVERIFY(secret.open(QIODevice::WriteOnly) && secret.write("secret") == 6);
    secret.close();
    QVERIFY(upload("a", "x"));
    const QString stored = files() + QStringLiteral("/stored/");
    QVERIFY(QFile::link(secret.fileName(), stored + QStringLiteral("c-5/files/link")));
    QVERIFY(QFile::link(outside, stored + QStringLiteral("c-6")));
    QCOMPARE(
        ::mkfifo(QFile::encodeName(stored + QStringLiteral("c-5/files/pipe")).constData(), 0600),
        0);

    QCOMPARE(names(), QStringList{"a"});
    QCOMPARE(names({}, QStringLiteral("6")), QStringList());
    for (const auto &[key, name] : {std::pair("5", "link"), std::pair("5", "pipe"),
                                    std::pair("6", "secret"), std::pair("6", "new")}) {
        const QString id = QString::fromLatin1(key);
        const QString file = QString::fromLatin1(name);
        QCOMPARE(MiscTool::getFileSize({}, id, {}, {}, file), 0);
        QVERIFY(!MiscTool::downloadFile({}, id, {}, {}, file, m_folder->path()));
        QVERIFY(!MiscTool::deleteFile({}, id, {}, {}, file));
        QVERIFY(!upload(file, "overwritten", {}, id));
    }
    QCOMPARE(filesBelow(outside), QStringList{"files/secret"});
    QCOMPARE(content(secret.fileName()), "secret");
}

void FileServiceTest::refusedHeads_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("status");
    const QByteArray rest = " HTTP/1.1\r\nHost: x\r\n";
    const QByteArray upload = "POST /UploadService?companyID=5&file=a&servicePassword=";
    const auto row = [](const char *name, const QByteArray &request, const char *status) {
        QTest::newRow(name) << request << QByteArray(status);
    };
    row("wrong password", upload + "secrex" + rest + "Content-Length: 1000000\r\n\r\n", "403");
    row("too large", upload + "secret" + rest + "Content-Length: 6291457\r\n\r\n", "413");
    row("a number that overflows",
        upload + "secret" + rest + "Content-Length: 9223372036854775807\r\n\r\n", "413");
    row("no length", upload + "secret" + rest + "Transfer-Encoding: chunked\r\n\r\n", "411");
    row("no file",
        "POST /UploadService?companyID=5&servicePassword=secret" + rest
            + "Content-Length: 1\r\n\r\nx",
        "400");
    row("GET of an upload", "GET" + upload.sliced(4) + "secret" + rest + "\r\n", "405");
    for (const char *service : {"GetFilesService", "GetFileSizeService", "DeleteFileService"}) {
        const QByteArray target = " /" + QByteArray(service) + "?companyID=5&file=b";
        row(service, "GET" + target + rest + "\r\n", "403");
        row(service, "HEAD" + target + "&servicePassword=secret" + rest + "\r\n", "405");
    }
}

void FileServiceTest::refusedHeads()
{
    QFETCH(const QByteArray, request);
    QFETCH(const QByteArray, status);
    QVERIFY(upload("b", "x"));
    const QByteArray answer = ask(request);
    QVERIFY2(answer.startsWith(QByteArray("HTTP/1.1 " + status)), answer.constData());
    if (!request.startsWith("HEAD"))
        QVERIFY2(answer.endsWith("\r\n\r\nfalse"), answer.constData());
    QVERIFY2(!upload("large", QByteArray((6 << 20) + 1, 'x')), "the client is refused too");
    QCOMPARE(filesBelow(files()), QStringList{"stored/c-5/files/b"});
}

void FileServiceTest::headsOfDownloads_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isAttachment");
    for (const char *name : {"a.html", "a.svg", "a.png.js", "png", "a"})
        QTest::newRow(name) << name << QByteArray("application/octet-stream") << true;
    QTest::newRow("PNG") << "a.PNG" << QByteArray("image/png") << false;
    QTest::newRow("JPEG") << "a.jpeg" << QByteArray("image/jpeg") << false;
}

void FileServiceTest::headsOfDownloads()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, type);
    QFETCH(const bool, isAttachment);
    QVERIFY(upload(name, "<html>"));
    const QByteArray answer =
        ask("GET /Resource/5/" + name.toUtf8() + " HTTP/1.1\r\nHost: x\r\n\r\n");
    QVERIFY2(answer.contains(QByteArray("Content-Type: " + type + "\r\n")), answer.constData());
    QVERIFY(answer.contains("X-Content-Type-Options: nosniff\r\n"));
    QCOMPARE(answer.contains("Content-Disposition: attachment\r\n"), isAttachment);
    QVERIFY(answer.endsWith("\r\n\r\n<html>"));
}

// To the client it looks as if nothing came back.
void FileServiceTest::emptyFileIsNoDownload()
{
    QVERIFY(upload("empty", ""));
    QCOMPARE(names(), QStringList{"empty"});
    QCOMPARE(MiscTool::getFileSize({}, company, {}, {}, QStringLiteral("empty")), 0);
    const QByteArray answer = ask("GET /Resource/5/empty HTTP/1.1\r\nHost: x\r\n\r\n");
    QVERIFY2(answer.startsWith("HTTP/1.1 200"), answer.constData());
    QVERIFY(
        !MiscTool::downloadFile({}, company, {}, {}, QStringLiteral("empty"), m_folder->path()));
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void FileServiceTest::abortedUploadLeavesNothing()
{
    QVERIFY(upload("old", "content"));
    std::unique_ptr<QTcpSocket> half = halfUpload("old", 100);
    QTRY_COMPARE(filesBelow(files()).size(), 2);
    half.reset();
    QTRY_COMPARE(filesBelow(files()), QStringList{"stored/c-5/files/old"});
    QCOMPARE(content(files() + QStringLiteral("/stored/c-5/files/old")), "content");
}

void FileServiceTest::killedUploadLeavesNothing()
{
    QVERIFY(upload("old", "content"));
    const std::unique_ptr<QTcpSocket> half = halfUpload("old", 100);
    QTRY_COMPARE(filesBelow(files()).size(), 2);
    m_service->kill();
    m_service->start();
    QCOMPARE(filesBelow(files()), QStringList{"stored/c-5/files/old"});
    QVERIFY(MiscTool::downloadFile({}, company, {}, {}, QStringLiteral("old"), m_folder->path()));
    QCOMPARE(content(m_folder->filePath("old")), "content");
}

// Two applications may run a service each, in the same folder.
void FileServiceTest::uploadsAtWorkSurviveAnotherStart()
{
    const std::unique_ptr<QTcpSocket> half = halfUpload("new", 6);
    QTRY_COMPARE(filesBelow(files()).size(), 1);
    QProcess other;
    other.start(QCoreApplication::applicationDirPath() + QStringLiteral("/maplorn-service"),
                {"--child", "--port", "0", "--data", m_service->folder()});
    other.write("secret\n");
    QVERIFY(other.waitForReadyRead());
    half->write("def");
    QVERIFY(half->waitForReadyRead());
    QVERIFY(half->readAll().endsWith("true"));
    QCOMPARE(content(files() + QStringLiteral("/stored/c-5/files/new")), "abcdef");
    other.closeWriteChannel();
    other.waitForFinished();
}

// Uploads, downloads and deletions of one file, each of which is whole or not at all.
void FileServiceTest::everybodyAtOnce()
{
    const QByteArray tail = " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n";
    std::atomic_int torn = 0;
    std::atomic_int whole = 0;
    std::vector<std::jthread> threads;
    for (char letter = 'a'; letter < 'e'; ++letter)
        threads.emplace_back([&, letter] {
            for (int i = 0; i < 40; ++i) {
                (void)ask("POST /UploadService?servicePassword=secret&companyID=5&file=x" + tail
                          + "Content-Length: 100000\r\n\r\n" + QByteArray(100'000, letter));
                const QByteArray got = ask("GET /Resource/5/x" + tail + "\r\n");
                const qsizetype head = got.indexOf("\r\n\r\n") + 4;
                const QByteArray body = got.mid(head);
                const bool isWhole =
                    (head > 4 && body.isEmpty())
                    || (body.size() == 100'000 && body.count(body.front()) == 100'000);
                ++(isWhole ? whole : torn);
                if (i % 3 == 0)
                    (void)ask("GET /DeleteFileService?servicePassword=secret&companyID=5&file=x"
                              + tail + "\r\n");
            }
        });
    threads.clear();
    QCOMPARE(torn, 0);
    QCOMPARE(whole, 160);
    QVERIFY(QDir(files() + QStringLiteral("/incoming")).isEmpty());
}

void FileServiceTest::pictures()
{
    const auto store = [&](const char *name, int width) {
        QImage image(width, 10, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QString path = m_folder->filePath(QLatin1StringView(name));
        return image.save(path) && MiscTool::uploadFile({}, company, {}, {}, path);
    };
    const auto width = [](int index, bool realCheck) {
        return MiscTool::getImage({}, company, {}, {}, index, realCheck).width();
    };
    QVERIFY(store("b.png", 20) && store("c.JPG", 30) && upload("a.txt", "x"));
    QCOMPARE(width(0, false), 20);
    QCOMPARE(width(1, true), 30);
    QCOMPARE(width(2, false), 0);
    const QString cached = MiscTool::getCachedPath() + QStringLiteral("/5/b.png");
    QCOMPARE(QImage(cached).width(), 20);

    // A name as long as a file system takes is cached like any other.
    const QByteArray longest = QByteArray(251, 'd') + ".png";
    QVERIFY(store(longest.constData(), 60));
    QCOMPARE(width(2, false), 60);
    QVERIFY(QFile::exists(MiscTool::getCachedPath() + QStringLiteral("/5/")
                          + QString::fromLatin1(longest)));

    QVERIFY(store("b.png", 40));
    QCOMPARE(width(0, false), 20);
    QCOMPARE(width(0, true), 40);
    QCOMPARE(width(0, false), 40);
    // Of the service's size, it counts as the same.
    const QString stored = files() + QStringLiteral("/stored/c-5/files/b.png");
    QVERIFY(store("b.png", 50));
    QVERIFY(QFile::resize(cached, QFileInfo(stored).size()));
    QVERIFY(MiscTool::getImage({}, company, {}, {}, QStringLiteral("b.png"), true).width() != 50);
    // What cannot be fetched changes nothing.
    QVERIFY(QFile::remove(stored));
    QVERIFY(MiscTool::getImage({}, company, {}, {}, QStringLiteral("b.png"), true).isNull());
    QCOMPARE(QFileInfo::exists(cached), true);
}

MAPLORN_TEST_MAIN(FileServiceTest)
#include "FileServiceTest.moc"
