// SPDX-License-Identifier: Apache-2.0
#include "fleet/measure/steady_run.h"

#include "fleet/measure/steady_load.h"
#include "fleet/running/bare_subscriber_process.h"
#include "fleet/running/bridge_process.h"
#include "fleet/running/broker_process.h"
#include "fleet/running/process_figures.h"

#include <stdexcept>

namespace buttondriver::fleet {

namespace {

constexpr std::chrono::seconds limit{60};

/// Publishes a line for each panel, as many as have been there before the load.
void greet(Publisher &publisher, WantedPanels &wanted) {
  for (std::size_t panel = 0; panel < wanted.states().size(); ++panel) {
    const Wish wish = wanted.line(panel, 0, 0, "ready");
    publisher.publish(wish.topic, wish.payload);
  }
}

/// Processor time of two programs meanwhile.
class ProcessorTimes {
public:
  ProcessorTimes(pid_t receiver, pid_t broker)
      : _receiver(receiver), _broker(broker), _receiver_before(figures_of(receiver).processor_seconds),
        _broker_before(figures_of(broker).processor_seconds) {}

  void tell(SteadyRun &run, std::size_t commands) const {
    const auto each = [&](pid_t pid, double before) {
      return (figures_of(pid).processor_seconds - before) / static_cast<double>(commands);
    };
    run.receiver_seconds = each(_receiver, _receiver_before);
    run.broker_seconds = each(_broker, _broker_before);
  }

private:
  pid_t _receiver;
  pid_t _broker;
  double _receiver_before;
  double _broker_before;
};

/// Memory of a bridge that has one panel.
double bytes_with_one_panel(const Setting &setting) {
  const BrokerProcess broker;
  PanelFleet fleet(1);
  BridgeProcess bridge(setting.bridge, broker.port(), fleet);
  bridge.start();
  Publisher publisher(broker.port());
  WantedPanels wanted(1);
  greet(publisher, wanted);
  if (!fleet.waitUntil([&] { return fleet.differFrom(wanted.states()) == 0; }, limit))
    throw std::runtime_error("nothing comes to the panel");
  return figures_of(bridge.pid()).proportional_bytes;
}

} // namespace

SteadyRun run_with_bridge(const Setting &setting) {
  const double bytes_before = bytes_with_one_panel(setting);
  const BrokerProcess broker;
  const double broker_bytes_before = figures_of(broker.pid()).proportional_bytes;
  PanelFleet fleet(setting.panels);
  BridgeProcess bridge(setting.bridge, broker.port(), fleet);
  bridge.start();
  Publisher publisher(broker.port());
  WantedPanels wanted(setting.panels);
  const auto wait_for_all = [&] {
    const auto is_right = [&] { return fleet.differFrom(wanted.states()) == 0; };
    if (!publisher.waitUntilConfirmed(limit) || !fleet.waitUntil(is_right, limit))
      throw std::runtime_error(std::to_string(fleet.differFrom(wanted.states())) +
                               " panels do not show what they should");
  };
  greet(publisher, wanted);
  wait_for_all();
  fleet.takeAges();

  SteadyRun run;
  const ProcessorTimes times(bridge.pid(), broker.pid());
  run.rate = publish_evenly(publisher, wanted, setting.commands_per_second, setting.commands());
  wait_for_all();
  times.tell(run, setting.commands());
  run.delays = delays_of(fleet.takeAges());
  const ProcessFigures figures = figures_of(bridge.pid());
  run.threads = figures.threads;
  const auto panels = static_cast<double>(setting.panels);
  run.bytes_per_panel = (figures.proportional_bytes - bytes_before) / (panels - 1);
  run.broker_bytes_per_panel = (figures_of(broker.pid()).proportional_bytes - broker_bytes_before) / panels;
  return run;
}

SteadyRun run_with_bare_subscriber(const Setting &setting) {
  const BrokerProcess broker;
  BareSubscriberProcess subscriber(broker.port());
  Publisher publisher(broker.port());
  WantedPanels wanted(setting.panels);
  SteadyRun run;
  const ProcessorTimes times(subscriber.pid(), broker.pid());
  run.rate = publish_evenly(publisher, wanted, setting.commands_per_second, setting.commands());
  if (!publisher.waitUntilConfirmed(limit))
    throw std::runtime_error("the broker does not confirm what was published");
  times.tell(run, setting.commands());
  const auto seen = subscriber.end();
  // What the broker has confirmed may still be on its way to the subscriber when that is ended.
  run.delays = seen.delays;
  run.delays.count = seen.messages;
  return run;
}

} // namespace buttondriver::fleet
