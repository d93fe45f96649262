#include "OddTrees.h"

#include "TreeTools.h"

#include <array>

using namespace TreeTools;

namespace {

constexpr std::array<OddTree, 22> trees = {{
    {"an empty folder", [](const QByteArray &) {}},
    {"folders in it empty", [](const QByteArray &folder) { makeFolder(folder + "/one/two"); }},
    {"empty files",
     [](const QByteArray &folder) {
         makeFile(folder + "/a", {});
         makeFile(folder + "/b", "not this one");
         makeFile(folder + "/c", {});
     }},
    {"hidden files",
     [](const QByteArray &folder) {
         makeFile(folder + "/.hidden", "1");
         makeFile(folder + "/.folder/..file", "2");
     }},
    {"a name of 200 bytes",
     [](const QByteArray &folder) { makeFile(folder + "/" + QByteArray(200, 'n'), "1"); }},
    {"names of 255 bytes, alike but for the last one",
     [](const QByteArray &folder) {
         for (const char *end : {"1", "2", "3"})
             makeFile(folder + "/" + QByteArray(254, 'n') + end, end);
     }},
    {"names of 84 Chinese characters",
     [](const QByteArray &folder) {
         makeFile(folder + "/" + QByteArray("\xe4\xb8\xad").repeated(84) + "/"
                      + QByteArray("\xe5\x9b\xbd").repeated(84),
                  "1");
     }},
    {"accents, composed and not",
     [](const QByteArray &folder) {
         makeFile(folder + "/caf\xc3\xa9", "composed");
         makeFile(folder + "/cafe\xcc\x81", "not");
     }},
    {"characters beyond the first plane",
     [](const QByteArray &folder) {
         makeFile(folder + "/\xf0\x9f\x98\x80", "1");
         makeFile(folder + "/a" + QByteArray("\xf0\x9f\x98\x80").repeated(60), "2");
     }},
    {"not UTF-8",
     [](const QByteArray &folder) {
         makeFile(folder + "/\xe9t\xe9", "1");
         makeFile(folder + "/\xff\xfe/\xff", "2");
     }},
    {"a dash in front",
     [](const QByteArray &folder) {
         makeFile(folder + "/-rf", "1");
         makeFile(folder + "/--", "2");
     }},
    {"characters that other systems forbid",
     [](const QByteArray &folder) {
         makeFile(folder + "/a:b*c?;1", "1");
         makeFile(folder + "/a_b_c__1", "2");
         makeFile(folder + "/back\\slash\nand line", "3");
         makeFile(folder + "/ blank ", "4");
         makeFile(folder + "/dot.", "5");
         makeFile(folder + "/\x01", "6");
     }},
    {"names that differ in case",
     [](const QByteArray &folder) {
         makeFile(folder + "/FOO", "1");
         makeFile(folder + "/foo", "2");
         makeFile(folder + "/Bar/x", "3");
         makeFile(folder + "/bar/x", "4");
     }},
    {"names too long for telling them apart",
     [](const QByteArray &folder) {
         for (const char letter : {'N', 'n'}) {
             makeFile(folder + "/" + QByteArray(255, letter), QByteArray(1, letter));
             makeFile(folder + "/sub/" + QByteArray(255, letter) + "/file", QByteArray(2, letter));
         }
         makeHardLink(folder + "/" + QByteArray(255, 'n'), folder + "/another name");
     }},
    {"names that are alike for 31 characters",
     [](const QByteArray &folder) {
         for (int i = 0; i < 1500; ++i) {
             const QByteArray number = QByteArray::number(i);
             makeFile(folder + "/A picture with a rather long name, number " + number, number);
         }
     }},
    {"15 folders deep, with long names",
     [](const QByteArray &folder) {
         QByteArray path = folder;
         for (int i = 0; i < 15; ++i)
             path += "/" + QByteArray::number(i) + QByteArray(60, 'd');
         makeFile(path + "/file", noise(5000));
     }},
    {"links",
     [](const QByteArray &folder) {
         makeFile(folder + "/folder/file", "1");
         makeLink("folder/file", folder + "/to file");
         makeLink("folder", folder + "/to folder");
         makeLink("../nowhere", folder + "/folder/dangling");
         makeLink("/etc/passwd", folder + "/absolute");
         makeLink("..", folder + "/folder/up");
         makeLink(QByteArray("../folder/").repeated(60) + "file", folder + "/folder/long target");
         makeLink(QByteArray(250, 't') + "/" + QByteArray(250, 't'), folder + "/long parts");
     }},
    {"names of the same file",
     [](const QByteArray &folder) {
         makeFile(folder + "/one/file", noise(100'000));
         makeFile(folder + "/two/other", "other");
         makeHardLink(folder + "/one/file", folder + "/two/name");
     }},
    {"pipes",
     [](const QByteArray &folder) {
         makePipe(folder + "/pipe");
         makeFile(folder + "/file", "1");
     }},
    {"files of all sizes around a block and a chunk",
     [](const QByteArray &folder) {
         for (const int size :
              {1, 2047, 2048, 2049, 4096, 65'535, 65'536, 65'537, 262'144, 700'001})
             makeFile(folder + "/" + QByteArray::number(size), noise(size));
     }},
    {"several blocks of records, some with continuations",
     [](const QByteArray &folder) {
         for (int i = 0; i < 60; ++i) {
             const QByteArray name = QByteArray::number(i) + QByteArray(qsizetype(i) * 4, 'n');
             makeFile(folder + "/" + name + "/" + name, name);
         }
     }},
    {"modes that others cannot read",
     [](const QByteArray &folder) {
         makeFile(folder + "/secret/file", "1");
         setMode(folder + "/secret/file", 0400);
         setMode(folder + "/secret", 0700);
     }},
}};

}

std::span<const OddTree> oddTrees()
{
    return trees;
}
