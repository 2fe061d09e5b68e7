#include "tst_lxconfigfiles.h"

#include <QTest>

QTEST_GUILESS_MAIN(TestLxconfigFiles)
