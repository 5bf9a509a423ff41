// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/link_fixture.h"

namespace buttondriver::bridge::test {

class PanelLinkEndTest : public LinkFixture {};

TEST_F(PanelLinkEndTest, may_come_after_any_event) {
  for (int events = 0; events < 40; ++events) {
    start();
    link->release();
    wanted = {{"a", lamp("A")}, {"p", picture(QByteArray(300000, 'p'))}};
    panel.reads = events % 2 == 0;
    for (int i = 0; i < events; ++i) {
      QCoreApplication::processEvents(QEventLoop::AllEvents);
      if (events % 5 == 4)
        link->send("do/p", picture(QByteArray(300000, 'p')), false);
      if (i == 30)
        panel.hangUp();
    }
    link.reset();
    process_ready_events();
  }
}

enum class Moment { up, down, restored, lost, broke_off };

class PanelLinkEndInSlotTest : public LinkFixture, public testing::WithParamInterface<Moment> {
protected:
  QObject receiver;
};

TEST_P(PanelLinkEndInSlotTest, is_no_harm) {
  startReleased();
  const auto end = [this] { link.reset(); };
  switch (GetParam()) {
  case Moment::up:
  case Moment::down:
    QObject::connect(link.get(), &PanelLink::availabilityChanged, &receiver, [this, end](bool is_up) {
      if (is_up == (GetParam() == Moment::up))
        end();
    });
    break;
  case Moment::restored:
    QObject::connect(link.get(), &PanelLink::restored, &receiver, end);
    break;
  case Moment::lost:
    QObject::connect(link.get(), &PanelLink::lost, &receiver, end);
    break;
  case Moment::broke_off:
    QObject::connect(link.get(), &PanelLink::brokeOff, &receiver, end);
    break;
  }
  jam(QByteArray(30000, 'p'));
  link->send("do/a", lamp("a"), false);
  link->send("do/b", lamp("b"), false);
  panel.hangUp();
  panel.reads = true;
  ASSERT_TRUE(process_events_until([this] { return link == nullptr; }));
  process_ready_events();
}

INSTANTIATE_TEST_SUITE_P(Moments, PanelLinkEndInSlotTest,
                         testing::Values(Moment::up, Moment::down, Moment::restored, Moment::lost, Moment::broke_off));

} // namespace buttondriver::bridge::test
