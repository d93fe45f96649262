// What the client of the file store sends, byte for byte, and what it leaves on the disk whatever
// comes back.
#include "FileStore.h"
#include "FileTools.h"
#include "RecordingServer.h"
#include "ServiceAddress.h"
#include "TestMain.h"

#include <QDir>
#include <QScopeGuard>
#include <QTcpSocket>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>

namespace {

using Call = std::function<void()>;

// Group, company, module, record and file; null for a missing one.
struct Keys
{
    QString group, company, module, record, file;
};

constexpr int largeSize = 8 << 20;

}

class FileStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { ServiceCall::limits() = {}; }

    void addresses_data();
    void addresses();
    void requests_data();
    void requests();
    void uploadSendsTheFile();
    void uploadUnderOddKeys();
    void uploadOfNoFile_data();
    void uploadOfNoFile();
    void fileThatVanishesIsSent();
    void fileThatShrinksIsNot();
    void listReplies_data();
    void listReplies();
    void sizeReplies_data();
    void sizeReplies();
    void deleteIsSentOnce();
    void halfDownloads_data();
    void halfDownloads();
    void wholeDownloads_data();
    void wholeDownloads();
    void silentDownloadEnds();
    void slowTransferGoesOn();
    void fullDisk();
    void namesThatLeaveTheFolder_data();
    void namesThatLeaveTheFolder();
    void picturesThatAreNone();

private:
    // Makes a file of the test's folder.
    QString write(const QString &name, const QByteArray &content);
    [[nodiscard]] QByteArray content(const QString &name) const;
    [[nodiscard]] QStringList entries() const;
    [[nodiscard]] bool download(const QString &name) const
    {
        return MiscTool::downloadFile({}, QStringLiteral("5"), {}, {}, name, m_folder->path());
    }

    std::unique_ptr<RecordingServer> m_server;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void FileStoreTest::init()
{
    m_server = std::make_unique<RecordingServer>();
    m_folder = std::make_unique<QTemporaryDir>();
}

QString FileStoreTest::write(const QString &name, const QByteArray &content)
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(name));
    return file.fileName();
}

QByteArray FileStoreTest::content(const QString &name) const
{
    QFile file(m_folder->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList FileStoreTest::entries() const
{
    return QDir(m_folder->path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void FileStoreTest::addresses_data()
{
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("resource");

    const auto row = [](const char *name, const Keys &keys, const char *file, const char *folder,
                        const char *resource) {
        QTest::newRow(name) << keys << QString::fromLatin1(file) << QString::fromLatin1(folder)
                            << QString::fromLatin1(resource);
    };
    const auto file = [](const QString &name) { return Keys{{}, {}, {}, {}, name}; };
    row("all", {"1", "2", "m", "4", "f.png"},
        "groupID=1&companyID=2&module=m&moduleID=4&file=f.png",
        "groupID=1&companyID=2&module=m&moduleID=4", "/1/2/m/4/f.png");
    row("company and file", {{}, "5", {}, {}, "f"}, "companyID=5&file=f", "companyID=5&", "/5/f");
    row("none", {}, "", "", "");
    row("no file", {"1", "2", "m", "4", {}}, "groupID=1&companyID=2&module=m&moduleID=4&",
        "groupID=1&companyID=2&module=m&moduleID=4", "/1/2/m/4");
    row("no record", {"1", {}, "m", {}, "f"}, "groupID=1&module=m&file=f", "groupID=1&module=m&",
        "/1/m/f");
    row("record alone", {{}, {}, {}, "4", "f"}, "moduleID=4&file=f", "moduleID=4", "/4/f");
    row("empty is not missing", {"", {}, {}, {}, "f"}, "groupID=&file=f", "groupID=&", "//f");
    row("blank", file(" a b"), "file=%20a%20b", "", "/%20a%20b");
    row("Chinese", file(QStringLiteral("中文💿")), "file=%E4%B8%AD%E6%96%87%F0%9F%92%BF", "",
        "/%E4%B8%AD%E6%96%87%F0%9F%92%BF");
    row("separators", file("a&b=c"), "file=a%26b%3Dc", "", "/a%26b%3Dc");
    row("plus", file("a+b"), "file=a%2Bb", "", "/a%2Bb");
    row("percent", file("100%41%"), "file=100%2541%25", "", "/100%2541%25");
    row("fragment and query", file("a#b?c"), "file=a%23b%3Fc", "", "/a%23b%3Fc");
    row("slashes", file("a/b\\c"), "file=a%2Fb%5Cc", "", "/a%2Fb%5Cc");
    row("brackets and quotes", file("[a]{b}'\"|^`"), "file=%5Ba%5D%7Bb%7D%27%22%7C%5E%60", "",
        "/%5Ba%5D%7Bb%7D%27%22%7C%5E%60");
    row("key", {{}, "a/b &", {}, {}, "f"}, "companyID=a%2Fb%20%26&file=f", "companyID=a%2Fb%20%26&",
        "/a%2Fb%20%26/f");
}

void FileStoreTest::addresses()
{
    QFETCH(const Keys, keys);
    QFETCH(const QString, file);
    QFETCH(const QString, folder);
    QFETCH(const QString, resource);
    const auto &[g, c, m, r, f] = keys;
    const auto address = [](const char *service, const QString &rest) -> QByteArray {
        return MiscTool::serverURL().toLatin1() + '/' + service + "?servicePassword=secret&"
               + rest.toLatin1();
    };
    QCOMPARE(MiscTool::getUploadServiceURL(g, c, m, r, f).toEncoded(),
             address("UploadService", file));
    QCOMPARE(MiscTool::getFileSizeServiceURL(g, c, m, r, f).toEncoded(),
             address("GetFileSizeService", file));
    QCOMPARE(MiscTool::deleteFileServiceURL(g, c, m, r, f).toEncoded(),
             address("DeleteFileService", file));
    QCOMPARE(MiscTool::getFilesServiceURL(g, c, m, r).toEncoded(),
             address("GetFilesService", folder));
    const QString text = MiscTool::getResourceURL(g, c, m, r, f);
    QCOMPARE(text, MiscTool::serverURL() + QStringLiteral("/Resource") + resource);
    QCOMPARE(QUrl(text).toEncoded(), text.toLatin1());
}

void FileStoreTest::requests_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QByteArray>("line");

    const QString c = QStringLiteral("5");
    const QString f = QStringLiteral("a+b 中.png");
    const QByteArray encoded = "a%2Bb%20%E4%B8%AD.png";
    const QByteArray last = "?servicePassword=secret&companyID=5&";
    QTest::newRow("list") << Call([=] { (void)MiscTool::getFiles({}, c, {}, {}); })
                          << QByteArray("GET /app/GetFilesService" + last);
    QTest::newRow("size") << Call([=] { (void)MiscTool::getFileSize({}, c, {}, {}, f); })
                          << QByteArray("GET /app/GetFileSizeService" + last + "file=" + encoded);
    QTest::newRow("delete") << Call([=] { MiscTool::deleteFile({}, c, {}, {}, f); })
                            << QByteArray("GET /app/DeleteFileService" + last + "file=" + encoded);
    QTest::newRow("download") << Call([=, this] { (void)download(f); })
                              << QByteArray("GET /app/Resource/5/" + encoded);
}

void FileStoreTest::requests()
{
    QFETCH(const Call, call);
    QFETCH(const QByteArray, line);
    call();
    QCOMPARE(m_server->requests().size(), 1);
    const QByteArray request = m_server->requests().first();
    QVERIFY2(request.startsWith(QByteArray(line + " HTTP/1.1\r\n")), request.constData());
    QVERIFY2(request.endsWith("\r\n\r\n"), "no body");
    QVERIFY2(!request.contains("Content-Type"), request.constData());
}

void FileStoreTest::uploadSendsTheFile()
{
    const ServiceRequest request = MiscTool::getUploadRequest(QUrl(QStringLiteral("x:y")), "abc");
    QCOMPARE(request.body, "abc");
    QCOMPARE(request.request.rawHeader("Content-Type"), "application/octet-stream");

    const QByteArray bytes = QByteArray(largeSize, 'x') + "end";
    QVERIFY(MiscTool::uploadFile({}, QStringLiteral("5"), {}, {}, write("a b", bytes)));
    QCOMPARE(m_server->requests().size(), 1);
    const QByteArray sent = m_server->requests().first();
    const QByteArray head = sent.first(sent.indexOf("\r\n\r\n") + 2);
    QVERIFY2(head.startsWith("POST /app/UploadService?servicePassword=secret&companyID=5&"
                             "file=a%20b HTTP/1.1\r\n"),
             head.constData());
    QCOMPARE(head.count("Content-Type: application/octet-stream\r\n"), 1);
    QCOMPARE(head.count(QByteArray("Content-Length: " + QByteArray::number(bytes.size()) + "\r\n")),
             1);
    QVERIFY(sent.sliced(head.size() + 2) == bytes);
}

void FileStoreTest::uploadOfNoFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << QStringLiteral("/none/there");
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("endless device") << QStringLiteral("/dev/zero");
    QTest::newRow("no path") << QString();
}

// What is stored must be found again, under the same address.
void FileStoreTest::uploadUnderOddKeys()
{
    const QString path = write("a", "x");
    for (const auto &[key, isTaken] :
         {std::pair(".a", false), std::pair(".ab", true), std::pair("a.", true)}) {
        const QString module = QLatin1StringView(key);
        QCOMPARE(MiscTool::uploadFile({}, {}, module, {}, path), isTaken);
        if (!isTaken)
            continue;
        QVERIFY(MiscTool::downloadFile({}, {}, module, {}, QStringLiteral("a"), m_folder->path()));
        const QByteArray request = m_server->requests().last();
        QCOMPARE(request.split(' ').at(1), QByteArray("/app/Resource/") + key + "/a");
    }
}

void FileStoreTest::uploadOfNoFile()
{
    QFETCH(const QString, path);
    QVERIFY(!MiscTool::uploadFile({}, QStringLiteral("5"), {}, {}, path));
    QVERIFY(m_server->requests().isEmpty());
}

void FileStoreTest::fileThatVanishesIsSent()
{
    const QString path = write("a", QByteArray(largeSize, 'x'));
    connect(m_server.get(), &QTcpServer::newConnection, this, [&] { QFile::remove(path); });
    QVERIFY(MiscTool::uploadFile({}, {}, {}, {}, path));
    QVERIFY(m_server->requests().first().size() > largeSize);
}

void FileStoreTest::fileThatShrinksIsNot()
{
    ServiceCall::limits().silentTime = 3'600'000; // there is no waiting for the rest
    const QString path = write("a", QByteArray(largeSize, 'x'));
    connect(m_server.get(), &QTcpServer::newConnection, this, [&] { QFile::resize(path, 10); });
    QVERIFY(!MiscTool::uploadFile({}, {}, {}, {}, path));
    QVERIFY(m_server->requests().isEmpty());
}

void FileStoreTest::listReplies_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("names");
    QTest::addColumn<QString>("images");

    const auto row = [](const char *name, const QByteArray &reply, const QString &names,
                        const QString &images) { QTest::newRow(name) << reply << names << images; };
    const QString null = QStringLiteral("null");
    row("names", R"({"Result":["a.txt","b.JPG","\u4e2d.png","png"]})",
        QStringLiteral("a.txt|b.JPG|中.png|png"), QStringLiteral("b.JPG|中.png"));
    row("no pictures", R"({"Result":["a"]})", QStringLiteral("a"), {});
    row("false", "false", null, null);
    row("nothing", "", null, null);
    row("empty", R"({"Result":[]})", null, null);
    row("no list", R"({"Result":"a"})", null, null);
    row("no texts", R"({"Result":["a",{"b":1}]})", null, null);
    row("no Result", R"(["a"])", null, null);
    row("cut", R"({"Result":["a")", null, null);
    row("deep", "{\"Result\":" + QByteArray(1'000'000, '['), null, null);
    row("not ASCII", QByteArray("{\"Result\":[\"\xe4\xb8\xad\"]}"), null, null);
    row("endless commas", "{\"Result\":[1" + QByteArray(5'000'000, ','), null, null);
}

void FileStoreTest::listReplies()
{
    QFETCH(const QByteArray, reply);
    m_server->setReply(reply);
    const auto text = [](const std::optional<QStringList> &names) {
        return names ? names->join(u'|') : QStringLiteral("null");
    };
    QTEST(text(MiscTool::getFiles({}, {}, {}, {})), "names");
    QTEST(text(MiscTool::getImageFiles({}, {}, {}, {})), "images");
    QVERIFY(MiscTool::getImage({}, {}, {}, {}, 7, true).isNull());
    QVERIFY(MiscTool::getImage({}, {}, {}, {}, -1, true).isNull());
}

void FileStoreTest::sizeReplies_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<qint64>("size");
    QTest::newRow("beyond 32 bits") << QByteArray("5368709120") << qint64(5368709120);
    QTest::newRow("digits before anything") << QByteArray("12 bytes") << qint64(12);
    QTest::newRow("false") << QByteArray("false") << qint64(0);
    QTest::newRow("nothing") << QByteArray() << qint64(0);
    QTest::newRow("minus") << QByteArray("-3") << qint64(0);
}

void FileStoreTest::sizeReplies()
{
    QFETCH(const QByteArray, reply);
    m_server->setReply(reply);
    QTEST(MiscTool::getFileSize({}, {}, {}, {}, QStringLiteral("a")), "size");
}

// The second time the file would be gone, and the answer wrong.
void FileStoreTest::deleteIsSentOnce()
{
    m_server->setRawReply({});
    m_server->setDying();
    QVERIFY(!MiscTool::deleteFile({}, {}, {}, {}, QStringLiteral("a")));
    QTest::qWait(50);
    QCOMPARE(m_server->requests().size(), 1);
}

void FileStoreTest::halfDownloads_data()
{
    QTest::addColumn<QByteArray>("reply");
    const QByteArray half = QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 9000000\r\n\r\n");
    const QByteArray chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    QTest::newRow("no answer") << QByteArray();
    QTest::newRow("half a head") << QByteArray("HTTP/1.1 200 OK\r\nContent-");
    QTest::newRow("head alone") << half;
    QTest::newRow("half a body") << half + QByteArray(3'000'000, 'x');
    QTest::newRow("one byte less") << half + QByteArray(8'999'999, 'x');
    QTest::newRow("half a chunk") << chunked + "4000\r\n" + QByteArray(0x1000, 'x');
    QTest::newRow("no last chunk") << chunked + "4\r\nabcd\r\n";
    QTest::newRow("chunks, which may be cut unseen") << chunked + "4\r\nabcd\r\n0\r\n\r\n";
    QTest::newRow("no length") << QByteArray("HTTP/1.1 200 OK\r\n\r\nabc");
    QTest::newRow("nothing came") << QByteArray("HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n");
}

void FileStoreTest::halfDownloads()
{
    QFETCH(const QByteArray, reply);
    m_server->setRawReply(reply);
    m_server->setDying();
    QVERIFY(!download(QStringLiteral("new")));
    QCOMPARE(entries(), QStringList());
    write("old", "content");
    QVERIFY(!download(QStringLiteral("old")));
    QCOMPARE(entries(), QStringList{"old"});
    QCOMPARE(content("old"), "content");
}

void FileStoreTest::wholeDownloads_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("with a length")
        << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nabcd");
    QTest::newRow("with any status")
        << QByteArray("HTTP/1.1 500 Oops\r\nContent-Length: 4\r\n\r\nabcd");
}

void FileStoreTest::wholeDownloads()
{
    QFETCH(const QByteArray, reply);
    m_server->setRawReply(reply);
    const QString name(255, u'n');
    write(name, "older and longer");
    QVERIFY(download(name));
    QCOMPARE(entries(), QStringList{name});
    QCOMPARE(content(name), "abcd");
}

void FileStoreTest::silentDownloadEnds()
{
    ServiceCall::limits().silentTime = 200;
    m_server->setRawReply("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc");
    QVERIFY(!download(QStringLiteral("a")));
    QCOMPARE(entries(), QStringList());
}

// A transfer may take longer than a call, as long as bytes come.
void FileStoreTest::slowTransferGoesOn()
{
    ServiceCall::limits().wholeTime = 100;
    ServiceCall::limits().silentTime = 2000;
    m_server->setRawReply("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n");
    QTimer drip;
    connect(&drip, &QTimer::timeout, this, [this] {
        for (QTcpSocket *socket : m_server->findChildren<QTcpSocket *>())
            socket->write("x");
    });
    drip.start(50);
    QVERIFY(download(QStringLiteral("a")));
    QCOMPARE(content("a").size(), 10);
}

// A limit on the size of files stands for a disk that fills while the file comes.
void FileStoreTest::fullDisk()
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto restore = qScopeGuard([&] { ::setrlimit(RLIMIT_FSIZE, &before); });
    const rlimit full{.rlim_cur = 1 << 20, .rlim_max = before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &full), 0);
    write("old", "content");
    m_server->setReply(QByteArray(largeSize, 'x'));
    QVERIFY(!download(QStringLiteral("old")));
    QCOMPARE(entries(), QStringList{"old"});
    QCOMPARE(content("old"), "content");
    QVERIFY(!MiscTool::downloadFile({}, {}, {}, {}, QStringLiteral("a"),
                                    m_folder->filePath(QStringLiteral("no folder"))));
}

void FileStoreTest::namesThatLeaveTheFolder_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"", ".", "..", "../a.png", "/etc/a.png", "a/b.png", "a/"})
        QTest::newRow(name) << QString::fromLatin1(name);
    QTest::newRow("missing") << QString();
    QTest::newRow("NUL") << QStringLiteral("a.png") + QChar::Null;
}

// Names come from the service, and keys become folders of the cache.
void FileStoreTest::namesThatLeaveTheFolder()
{
    QFETCH(const QString, name);
    QVERIFY(!download(name));
    QVERIFY(MiscTool::getImage({}, {}, {}, {}, name, false).isNull());
    if (!name.isNull()) {
        QVERIFY(!MiscTool::downloadFile({}, {}, name, {}, QStringLiteral("a"), m_folder->path()));
        QVERIFY(MiscTool::getImage({}, name, {}, {}, QStringLiteral("a.png"), true).isNull());
    }
    QVERIFY(m_server->requests().isEmpty());
    QCOMPARE(entries(), QStringList());
}

void FileStoreTest::picturesThatAreNone()
{
    m_server->setReply("false");
    const QString company = QStringLiteral("5");
    QVERIFY(MiscTool::getImage({}, company, {}, {}, QStringLiteral("a.png"), false).isNull());
    QCOMPARE(m_server->requests().size(), 1);
    QVERIFY(QDir(MiscTool::getCachedPath() + QStringLiteral("/5")).isEmpty());
}

MAPLORN_TEST_MAIN(FileStoreTest)
#include "FileStoreTest.moc"
