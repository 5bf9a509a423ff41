// SPDX-License-Identifier: Apache-2.0
#include "app/daemon.h"
#include "fpga/queue/fpga_task.h"
#include "logging/message_handler.h"
#include "panel/leds.h"
#include "panel/registers/register_device.h"
#include "panel/tft/image.h"
#include "panel/tft/text.h"
#include "panel/tft/tft.h"
#include "protocol/encoders.h"
#include "protocol/framing.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QTcpSocket>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <future>
#include <memory>
#include <unistd.h>

namespace buttondriver {
namespace {

/// Takes every transfer at once.
class WillingDevice : public panel::RegisterDevice {
public:
  int open(const char *) override { return 0; }
  int transfer(int, unsigned long, panel::TransferRecord &, std::uint16_t *) override { return 0; }
};

Daemon *running_daemon = nullptr;

/// An uncompressed 24-bit BMP file that fills a screen.
QByteArray screen_picture() {
  QByteArray bmp = QByteArray::fromHex("424d 36c00000 00000000 36000000 28000000 80000000 80000000 0100 1800"
                                       "00000000 00c00000 00000000 00000000 00000000 00000000");
  bmp.append(QByteArray(128 * 128 * 3, '\x5A'));
  return bmp;
}

/// Tells when the worker comes by.
class MilestoneTask : public FPGATask {
public:
  explicit MilestoneTask(std::promise<void> reached) : _reached(std::move(reached)) {}
  void execute() override { _reached.set_value(); }

private:
  std::promise<void> _reached;
};

/// Waits until the worker has nothing left to do: the panel layer is entered by one thread at a time.
void wait_for_worker() {
  std::promise<void> reached;
  std::future<void> done = reached.get_future();
  running_daemon->fpga().queue(std::make_unique<MilestoneTask>(std::move(reached)));
  done.wait();
}

void dispatch(benchmark::State &state, const QByteArray &message) {
  const std::vector<QByteArray> messages(64, message);
  QBuffer reply;
  reply.open(QIODevice::WriteOnly);
  for (auto _ : state) {
    running_daemon->dispatcher().process_messages(messages, &reply, 1000);
    reply.seek(0);
  }
  wait_for_worker();
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(messages.size()));
}

void ping(benchmark::State &state) {
  QTcpSocket client;
  client.connectToHost(QHostAddress(QHostAddress::LocalHost), running_daemon->server().port());
  while (client.state() != QAbstractSocket::ConnectedState)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  const QByteArray frame = QByteArray::fromHex("00000004 0000000c");
  for (auto _ : state) {
    client.write(frame);
    while (client.bytesAvailable() < 8)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    client.readAll();
  }
  state.SetItemsProcessed(state.iterations());
}

template <class Work> void worker(benchmark::State &state, Work work) {
  for (auto _ : state)
    work();
  state.SetItemsProcessed(state.iterations());
}

void register_benchmarks() {
  const auto dispatching = [](const char *name, const QByteArray &message) {
    benchmark::RegisterBenchmark(name, [message](benchmark::State &state) { dispatch(state, message); });
  };
  dispatching("dispatch/status", hton_BMS_SetLEDStatusIndicator(3, 1));
  dispatching("dispatch/ping", hton_BMS_Ping());
  dispatching("dispatch/text_line", hton_BMS_TFTTextLine(0, 0, QStringLiteral("0123456789abcdef"), 1));

  const auto working = [](const char *name, auto work) {
    benchmark::RegisterBenchmark(name, [work](benchmark::State &state) { worker(state, work); });
  };
  working("worker/status", [] { panel::led_set_status_indicator(3, 1); });
  working("worker/text_line_16_characters", [] { panel::tft_text_line(0, 0, "0123456789abcdef", 0xFFFFFF, 0); });
  working("worker/sub_text_4_characters", [] { panel::tft_sub_text_line(0, 0, 3, "abcd", 4, 0xFF0000, 0xFF00); });
  working("worker/blackout", [] { panel::tft_blackout(-1); });
  const QByteArray picture = screen_picture();
  working("worker/picture_128x128", [picture] {
    panel::tft_draw_image(0, 0, 0, ByteView(picture.constData(), static_cast<std::size_t>(picture.size())));
  });
  benchmark::RegisterBenchmark("round_trip/ping", ping)->UseRealTime();
}

/// The log costs what writing it costs, but does not drown the table.
void send_log_to_nowhere() {
  const int nowhere = ::open("/dev/null", O_WRONLY);
  ::dup2(nowhere, STDERR_FILENO);
  ::close(nowhere);
}

} // namespace
} // namespace buttondriver

int main(int argc, char **argv) {
  using namespace buttondriver;
  benchmark::Initialize(&argc, argv);
  install_message_handler();
  send_log_to_nowhere();
  QCoreApplication application(argc, argv);
  WillingDevice device;
  panel::use_register_device(&device);
  const std::string root = QCoreApplication::applicationDirPath().toStdString() + "/../share/buttondriver/panel-root";
  Daemon daemon(SystemPaths::under(root));
  if (!daemon.start({QStringLiteral("bench"), QStringLiteral("map"), QString(), QStringLiteral("0")}))
    return 1;
  running_daemon = &daemon;
  register_benchmarks();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
