// SPDX-License-Identifier: Apache-2.0
// The first example among the scenarios, with the virtual panel. Its screens are cut out of the snapshots that it takes
// on a signal; what it says about its state is written by hand.

#include "buttonctl/support/panel_double.h"
#include "buttonctl/support/pictures.h"
#include "buttonctl/support/tool_run.h"
#include "simulator/picture/panel_layout.h"
#include "support/program.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace buttondriver::test {
namespace {

namespace layout = simulator::layout;

/// A screen as it is in the panel's picture, where its pixels are squares.
QImage cut_out(const QImage &panel, std::size_t screen) {
  QImage image(128, 128, QImage::Format_RGB32);
  for (std::size_t y = 0; y < 128; ++y)
    for (std::size_t x = 0; x < 128; ++x)
      image.setPixel(static_cast<int>(x), static_cast<int>(y),
                     panel.pixel(layout::screen_pixel(screen, x, y).topLeft()));
  return image;
}

QByteArray state_after_the_scenario() {
  PanelStateText state;
  state.lit_button = 5;
  state.lit_status = 3;
  state.lit_toggle = 1;
  state.blinking = R"([{"button":4,"time":500}])";
  state.screens =
      R"([{"text":["Ready","Start"],"drawn":["Ready","Start"]},{"text":["Ready"],"drawn":["Ready"]},)"
      R"({"text":["Ready","","","","","","","0123456789ABCDEF"],"drawn":["Ready","","","","","","","0123456789ABCDEF"]}])";
  return state.json();
}

TEST(FirstScenarioTest, shows_the_pictures_beside_it) {
  const QTemporaryDir folder;
  const QString snapshot = folder.filePath(QStringLiteral("panel.png"));
  Program simulator(QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
                    {"--http", "off", "--snapshot", snapshot, "map", QString(), "0"});
  ASSERT_TRUE(simulator.waitForOutput("buttondriver-sim: listening on port "));
  PanelDouble panel;
  panel.answer("/state.json", state_after_the_scenario());
  int snapshots = 0;
  for (std::size_t screen = 0; screen < 3; ++screen)
    panel.answer("/screen/" + QByteArray::number(static_cast<int>(screen)) + ".png", [&, screen] {
      simulator.sendSignal(SIGUSR1);
      EXPECT_TRUE(simulator.waitForOutput("buttondriver-sim: wrote ", ++snapshots));
      return encoded(cut_out(QImage(snapshot), screen), "PNG");
    });
  const ToolResult result =
      run_tool({"-p", QString::number(simulator.listeningPort()), "run", QStringLiteral(SCENARIOS "/01-first.scenario"),
                "--panel", panel.url(), "--timeout", "30000"});
  EXPECT_EQ(result.exit_status, 0) << result.errors;
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(snapshots, 3);
}

} // namespace
} // namespace buttondriver::test
