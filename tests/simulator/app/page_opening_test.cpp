// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/page_opening.h"

#include "simulator/simulation/simulation.h"
#include "support/captured_log.h"

#include <QTcpServer>

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

class PageOpeningTest : public testing::Test {
protected:
  void SetUp() override {
    if (!WebPage::isAvailable())
      GTEST_SKIP() << "this build has no page";
  }

  test::CapturedOutput output;
  Simulation simulation{SimulationSettings()};
  WebPage page{simulation};
};

TEST_F(PageOpeningTest, a_port_that_is_taken_is_one_line_and_matters_only_when_it_was_asked_for) {
  QTcpServer taken;
  ASSERT_TRUE(taken.listen(QHostAddress(QHostAddress::LocalHost)));
  for (const bool is_asked_for : {false, true}) {
    Options options;
    options.http = HttpEndpoint{QHostAddress(QHostAddress::LocalHost), taken.serverPort()};
    options.http_is_asked_for = is_asked_for;
    testing::internal::CaptureStderr();
    EXPECT_EQ(open_page(page, options), !is_asked_for);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "buttondriver-sim: no web page on http://127.0.0.1:" + std::to_string(taken.serverPort()) +
                  "/: The bound address is already in use\n");
  }
}

TEST_F(PageOpeningTest, says_where_the_page_is) {
  Options options;
  options.http = HttpEndpoint{QHostAddress(QHostAddress::LocalHost), 0};
  EXPECT_TRUE(open_page(page, options));
  EXPECT_EQ(output.take(), "buttondriver-sim: page on " + page.address().toStdString() + "\n");
}

TEST_F(PageOpeningTest, no_page_is_opened_where_none_is_wanted) {
  EXPECT_TRUE(open_page(page, Options()));
  EXPECT_EQ(output.take(), "");
}

} // namespace
} // namespace buttondriver::simulator
