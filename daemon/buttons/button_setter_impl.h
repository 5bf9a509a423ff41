// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/blink_state.h"
#include "buttons/button.h"
#include "buttons/button_levels.h"
#include "buttons/button_setter.h"
#include "buttons/images/button_image.h"
#include "buttons/images/image_store.h"
#include "buttons/logs/null_message_log.h"
#include "buttons/logs/sub_text_line_log.h"
#include "files/system_paths.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <map>

namespace buttondriver {

class FPGA;

/// Turns messages into work for the panel: keeps the button images, the levels, and which buttons blink.
/// Everything happens on the thread that made it, which runs an event loop.
class ButtonSetterImpl : public QObject, public ButtonSetter {
  Q_OBJECT

public:
  /// Reads the level file; nothing is sent yet, because there is no facade yet.
  explicit ButtonSetterImpl(const SystemPaths &paths = {});

  /// The buttons that messages can name; they stay the caller's and outlive this object's use of them.
  void setButtons(const ButtonMap &buttons);
  /// `fpga` outlives this object's use of it.
  void setFPGA(FPGA *fpga);

  /// A message is carried out when the lines of all null messages that came before it with the same `client_id` are
  /// written.
  void process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 client_id) override;
  std::chrono::nanoseconds deviceTime(const QByteArray &message) const override;
  /// Gives up the private images of a connection. `client_id` is what its messages came with.
  void forgetImages(qint32 client_id);

  /// `state` -1: blink with phases of `time` milliseconds, which must not be 0; all else is a steady LED value.
  /// `button_id` -1: every button.
  void setLEDState(qint32 button_id, qint32 state, qint32 time);
  /// Hands `image` to a button. No message leads here.
  void setButtonImage(qint32 button_id, const ButtonImage &image);
  /// Reads the level file again and sends the screen level to the panel.
  void reconfig();

  /// Its signals tell which clients should wait until their null messages are written.
  const NullMessageLog &nullMessageLog() const { return _null_message_log; }
  const ButtonLevels &levels() const { return _levels; }
  /// The image kept under `id`, null when there is none.
  const ButtonImage *image(qint32 id) const { return _images.find(id); }
  bool isBlinking() const { return _update_timer.isActive(); }
  /// The buttons that blink, with the time of their phases in milliseconds.
  std::map<qint32, qint32> blinkTimes() const;

public slots:
  /// One blink tick. It is left out for all buttons alike while the facade's queue is full: then all phases last a tick
  /// longer. Works without a facade too.
  void update_timer();

private:
  struct Message;
  struct Handlers;

  void processMessage(const Message &message);
  void setLEDState(IButton &button, qint32 state, qint32 time);
  void blink();

  SystemPaths _paths;
  ImageStore _images;
  ButtonMap _buttons;
  std::map<IButton *, BlinkState> _blinking;
  ButtonLevels _levels;
  NullMessageLog _null_message_log;
  SubTextLineLog _sub_text_line_log;
  QTimer _update_timer;
  FPGA *_fpga = nullptr;
};

} // namespace buttondriver
