#include "TestMain.h"
#include "CDTextPacks.h"
class CDTextTest : public QObject { Q_OBJECT };
MAPLORN_TEST_MAIN(CDTextTest)
#include "CDTextTest.moc"
