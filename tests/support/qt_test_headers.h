#ifndef TAVREL_TESTS_SUPPORT_QT_TEST_HEADERS_H_
#define TAVREL_TESTS_SUPPORT_QT_TEST_HEADERS_H_

// What most tests of the forms include; compiled once where that pays.
#include <QApplication>
#include <QTest>
#include <QWidget>

#include "tests/support/test_headers.h"

#endif  // TAVREL_TESTS_SUPPORT_QT_TEST_HEADERS_H_
