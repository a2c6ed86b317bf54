#ifndef TAVREL_TESTS_SUPPORT_TEST_HEADERS_H_
#define TAVREL_TESTS_SUPPORT_TEST_HEADERS_H_

// What most tests of the logic include; compiled once where that pays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "app/program_logic.h"

#endif  // TAVREL_TESTS_SUPPORT_TEST_HEADERS_H_
