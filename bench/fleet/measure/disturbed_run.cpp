// SPDX-License-Identifier: Apache-2.0
#include "fleet/measure/disturbed_run.h"

#include "fleet/measure/steady_load.h"
#include "fleet/running/bridge_process.h"
#include "fleet/running/broker_process.h"
#include "fleet/running/topic_watch.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

namespace buttondriver::fleet {

namespace {

/// The bridge's pauses between attempts go up to half a minute.
constexpr std::chrono::seconds limit{120};

class Run {
public:
  explicit Run(const Setting &setting)
      : _setting(setting), _fleet(setting.panels), _bridge(setting.bridge, _broker.port(), _fleet),
        _wanted(setting.panels) {
    _bridge.start();
  }

  std::vector<Disturbance> all() {
    const auto load = [this](auto disturb) { return [this, disturb] { loadMeanwhile(disturb); }; };
    const bool is_right =
        add("panels", "30 % of the panels go and come back, again and again, under load",
            load([this] { switchSome(); })) &&
        add("broker", "the same, and the broker is ended and started again in the middle", load([this] {
              _broker.restart();
              switchSome();
            })) &&
        add("crash", "the broker is killed and has lost everything, and 30 % of the panels were off meanwhile",
            [this] {
              const auto off = switchSomeOff();
              _broker.crash();
              switchOn(off);
              // What a bridge has not brought back to the broker before it ends is lost, and nobody can know it.
              const auto missing = TopicWatch(_broker.port(), _wanted.topics()).missingAfter(limit);
              if (!missing.empty())
                throw std::runtime_error(
                    "the bridge does not publish again what the broker has lost: " + std::to_string(missing.size()) +
                    " of " + std::to_string(_wanted.topics().size()) + " topics, such as " + missing.begin()->first);
            }) &&
        add("bridge", "the bridge is ended, all panels are switched off and on, and it is started again", [this] {
          _bridge.stop();
          for (std::size_t i = 0; i < _fleet.size(); ++i) {
            _fleet.switchOff(i);
            _fleet.switchOn(i);
          }
          _bridge.start();
        });
    static_cast<void>(is_right);
    return _all;
  }

private:
  /// False when a panel does not show what it should in the end.
  template <class Act> bool add(const char *name, const char *what, Act act) {
    _published = 0;
    act();
    const auto start = std::chrono::steady_clock::now();
    if (!_publisher.waitUntilConfirmed(limit))
      throw std::runtime_error("the broker does not confirm what was published");
    const bool is_right = _fleet.waitUntil([this] { return _fleet.differFrom(_wanted.states()) == 0; }, limit);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    _all.push_back({name, what, _published, seconds.count(), _fleet.differFrom(_wanted.states())});
    return is_right;
  }

  /// Publishes on another thread, and disturbs on this one, until all is published.
  template <class Disturb> void loadMeanwhile(Disturb disturb) {
    std::atomic<bool> is_done = false;
    std::thread load([&] {
      publish_evenly(_publisher, _wanted, _setting.commands_per_second, _setting.commands());
      is_done = true;
    });
    disturb();
    while (!is_done)
      switchSome();
    load.join();
    _published = _setting.commands();
    publishAgain();
  }

  /// Around a reconnection libmosquitto may send an older message after a newer one. What counts is what the broker has
  /// got last, and that should be what was published last.
  void publishAgain() {
    if (!_publisher.waitUntilConfirmed(limit))
      throw std::runtime_error("the broker does not confirm what was published");
    const auto others = TopicWatch(_broker.port(), _wanted.topics()).missingAfter(std::chrono::seconds(10));
    if (!others.empty())
      std::fprintf(stderr, "%zu topics had another payload at the broker, and are published again\n", others.size());
    for (const auto &[topic, payload] : others)
      _publisher.publish(topic, payload);
  }

  std::vector<std::size_t> switchSomeOff() {
    std::vector<std::size_t> panels(_fleet.size());
    std::iota(panels.begin(), panels.end(), std::size_t{0});
    std::shuffle(panels.begin(), panels.end(), _numbers);
    panels.resize(std::max<std::size_t>(1, panels.size() * 3 / 10));
    for (const std::size_t panel : panels)
      _fleet.switchOff(panel);
    return panels;
  }

  void switchOn(const std::vector<std::size_t> &panels) {
    for (const std::size_t panel : panels)
      _fleet.switchOn(panel);
  }

  void switchSome() {
    const auto panels = switchSomeOff();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    switchOn(panels);
    std::this_thread::sleep_for(std::chrono::milliseconds(800));
  }

  const Setting _setting;
  BrokerProcess _broker;
  PanelFleet _fleet;
  BridgeProcess _bridge;
  Publisher _publisher{_broker.port()};
  WantedPanels _wanted;
  std::mt19937 _numbers{2};
  std::size_t _published = 0;
  std::vector<Disturbance> _all;
};

} // namespace

std::vector<Disturbance> run_disturbed(const Setting &setting) { return Run(setting).all(); }

} // namespace buttondriver::fleet
