// SPDX-License-Identifier: Apache-2.0
#include "process/process.h"

#include <QtGlobal>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>

namespace buttondriver {
namespace {

class ProcessTest : public testing::Test {
protected:
  ~ProcessTest() override {
    qInstallMessageHandler(nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
  }
};

TEST_F(ProcessTest, forgets_the_variables_of_qt_and_no_other) {
  for (const char *name : {"QT_LOGGING_RULES", "QT_", "QTX_RULES", "MY_QT_RULES"})
    ::setenv(name, "*=false", 1);
  prepare_process();
  EXPECT_EQ(std::getenv("QT_LOGGING_RULES"), nullptr);
  EXPECT_EQ(std::getenv("QT_"), nullptr);
  EXPECT_STREQ(std::getenv("QTX_RULES"), "*=false");
  EXPECT_STREQ(std::getenv("MY_QT_RULES"), "*=false");
}

TEST_F(ProcessTest, needs_no_environment) {
  char **const usual = environ;
  environ = nullptr; // as clearenv() leaves it
  prepare_process();
  environ = usual;
  EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_IGN);
}

TEST_F(ProcessTest, may_open_as_many_descriptors_as_the_system_lets_it) {
  rlimit usual{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
  const rlimit few{64, usual.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  prepare_process();
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_EQ(limit.rlim_cur, usual.rlim_max);
  EXPECT_EQ(limit.rlim_max, usual.rlim_max);
  ::setrlimit(RLIMIT_NOFILE, &usual);
}

TEST_F(ProcessTest, ignores_the_signals_of_a_log_that_cannot_be_written) {
  prepare_process();
  EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_IGN);
  EXPECT_EQ(std::signal(SIGXFSZ, SIG_DFL), SIG_IGN);
}

} // namespace
} // namespace buttondriver
