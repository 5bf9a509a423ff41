// SPDX-License-Identifier: Apache-2.0
#include "buttons/button_setter_impl.h"

#include "bytes/view_of.h"
#include "dimensions/panel_dimensions.h"
#include "fpga/fpga.h"
#include "logging/log_line.h"
#include "logging/standard_output.h"
#include "protocol/decode.h"
#include "protocol/encode.h"
#include "protocol/frames.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <iterator>

namespace buttondriver {

namespace {

/// Whether these are the messages that the daemon handles, in the order of their rows.
template <class Handler, std::size_t Count>
constexpr bool are_what_the_catalogue_says(const Handler (&handlers)[Count]) {
  std::size_t next = 0;
  for (const MessageType &type : catalogue) {
    if (type.handling != Handling::server_handles)
      continue;
    if (next == Count || handlers[next].opcode != type.opcode)
      return false;
    ++next;
  }
  return next == Count;
}

/// The handlers by their opcodes, null where there is none: messages come often, and most are not the first of the
/// table.
template <class Handler, std::size_t Count> constexpr auto by_opcode(const Handler (&handlers)[Count]) {
  std::array<decltype(Handler::handle), catalogue[std::size(catalogue) - 1].opcode + 1> table{};
  for (const Handler &handler : handlers)
    table[handler.opcode] = handler.handle;
  return table;
}

/// The same message, for another thread.
QByteArray for_another_thread(const QByteArray &message) {
  const bool may_be_shared = message.size() > static_cast<qint64>(ButtonSetter::most_reused);
  return may_be_shared ? message : QByteArray(message.constData(), message.size());
}

} // namespace

ButtonSetterImpl::ButtonSetterImpl(const SystemPaths &paths) : _paths(paths) {
  reconfig();
  _update_timer.setTimerType(Qt::PreciseTimer);
  _update_timer.setInterval(blink_tick_ms);
  connect(&_update_timer, &QTimer::timeout, this, &ButtonSetterImpl::update_timer);
}

void ButtonSetterImpl::setButtons(const ButtonMap &buttons) { _buttons = buttons; }

void ButtonSetterImpl::setFPGA(FPGA *fpga) { _fpga = fpga; }

void ButtonSetterImpl::forgetImages(qint32 client_id) { _images.forget(client_id); }

/// One message and where it came from.
struct ButtonSetterImpl::Message {
  const QByteArray &bytes;
  ByteView view; // the same bytes
  QIODevice *reply;
  qint32 client_id;
};

/// What each message does.
struct ButtonSetterImpl::Handlers {
  static void logNullMessage(ButtonSetterImpl &setter, const Message &message) {
    critical_line() << "ButtonSetterImpl::process_messages , TYPE_NULL_MESSAGE";
    critical_line() << "size  = " << qint64{message.bytes.size()};
    setter._null_message_log.write(message.bytes, message.client_id);
  }

  static void uploadImage(ButtonSetterImpl &setter, const Message &message) {
    const auto upload = decode<BMS_UploadImage>(message.view);
    if (upload.size != dimensions::button_image_bytes) {
      print("invalid image data, size = %d\n", upload.size);
      print("buttondriver:failed to upload image %d\n", upload.image_id);
      return;
    }
    qint32 id = upload.image_id;
    if (id >= dimensions::built_in_image_count)
      id = static_cast<qint32>(static_cast<quint32>(id) + static_cast<quint32>(message.client_id)); // wraps
    ButtonImage image;
    std::copy(std::begin(upload.image), std::end(upload.image), image.bytes.begin());
    setter._images.store(id, image, message.client_id);
    print("buttondriver:image uploaded %d\n", id);
  }

  static void readLevelsAgain(ButtonSetterImpl &setter, const Message &) { setter.reconfig(); }

  static void answerPing(ButtonSetterImpl &, const Message &message) {
    static const QByteArray answer = framed(encoded(BMS_PingReply{BMS_PingReply::code}));
    message.reply->write(answer);
  }

  static void writeTextLine(ButtonSetterImpl &setter, const Message &message) {
    debug_line() << "buttondriver: Got a TFT text line message";
    const auto line = decode<BMS_TFTTextLine>(message.view);
    const std::string_view text = message.view.text(type_of<BMS_TFTTextLine>.head_size, line.n);
    setter._fpga->textLine(line.screen_id, line.line_id, text, line.flag != 0);
  }

  static void blackoutScreen(ButtonSetterImpl &setter, const Message &message) {
    setter._fpga->blackoutScreen(decode<BMS_BlackoutScreen>(message.view).screen_id);
  }

  static void setLEDState(ButtonSetterImpl &setter, const Message &message) {
    const auto led = decode<BMS_SetLEDState>(message.view);
    setter.setLEDState(led.button_id, led.state, led.time);
    debug_line() << "Button " << led.button_id << " set to state " << led.state;
  }

  static void writeSubTextLine(ButtonSetterImpl &setter, const Message &message) {
    debug_line() << "buttondriver: Got a TFT sub-text line message";
    const auto line = decode<BMS_TFTSubTextLine>(message.view);
    const std::string_view text = message.view.text(type_of<BMS_TFTSubTextLine>.head_size, line.n);
    setter._sub_text_line_log.print(line, text);
    setter._fpga->subTextLine(line._screen_id, line._line_id, line._offset, line._num_chars, text, line._text_colour,
                              line._back_colour);
  }

  static void drawImage(ButtonSetterImpl &setter, const Message &message) {
    const auto image = decode<BMS_DrawTFTImage>(message.view);
    print("buttondriver(DRAW_TFT_IMAGE): _screen_id = %d, _xoffset =%d, _yoffset = %d, _size = %d.\n", image._screen_id,
          image._xoffset, image._yoffset, static_cast<int>(image._size));
    // The picture is all that follows the head; its own header says how much of that it needs.
    setter._fpga->drawTFTImage(image._screen_id, image._xoffset, image._yoffset,
                               SharedBytes(for_another_thread(message.bytes), type_of<BMS_DrawTFTImage>.head_size));
  }

  static void setStatusIndicator(ButtonSetterImpl &setter, const Message &message) {
    const auto led = decode<BMS_SetLEDStatusIndicator>(message.view);
    setter._fpga->setLEDStatusIndicator(led.button_id, led.state);
  }

  static void setToggleIndicator(ButtonSetterImpl &setter, const Message &message) {
    const auto indicator = decode<BMS_SetLEDToggleIndicator>(message.view);
    setter._fpga->setLEDToggleIndicator(static_cast<unsigned>(indicator.button_id),
                                        static_cast<unsigned>(indicator.state));
  }
};

void ButtonSetterImpl::process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 client_id) {
  for (const QByteArray &message : messages) {
    _null_message_log.finish(client_id);
    processMessage({message, view_of(message), reply, client_id});
  }
}

std::chrono::nanoseconds ButtonSetterImpl::deviceTime(const QByteArray &message) const {
  if (!_fpga)
    return {};
  const ByteView view = view_of(message);
  const auto text_bytes = [view](std::size_t head_size, std::uint32_t count) {
    return view.text(head_size, count).size();
  };
  switch (view.bigEndian32(0)) {
  case BMS_Reconfig::code:
    return _fpga->timeOf(TaskKind::intensity);
  case BMS_TFTTextLine::code:
    return _fpga->timeOf(TaskKind::text_line,
                         text_bytes(type_of<BMS_TFTTextLine>.head_size, decode<BMS_TFTTextLine>(view).n));
  case BMS_TFTSubTextLine::code:
    return _fpga->timeOf(TaskKind::sub_text_line,
                         text_bytes(type_of<BMS_TFTSubTextLine>.head_size, decode<BMS_TFTSubTextLine>(view).n));
  case BMS_BlackoutScreen::code:
    return _fpga->timeOf(TaskKind::blackout);
  case BMS_SetLEDState::code: {
    const bool is_for_all = decode<BMS_SetLEDState>(view).button_id == dimensions::all_buttons;
    return _fpga->timeOf(TaskKind::button_led) * static_cast<int>(is_for_all ? _buttons.size() : 1);
  }
  case BMS_DrawTFTImage::code:
    return _fpga->timeOf(TaskKind::image, static_cast<std::size_t>(message.size()));
  case BMS_SetLEDStatusIndicator::code:
    return _fpga->timeOf(TaskKind::status_indicator);
  case BMS_SetLEDToggleIndicator::code:
    return _fpga->timeOf(TaskKind::toggle_indicator);
  default:
    return {};
  }
}

void ButtonSetterImpl::processMessage(const Message &message) {
  struct Handler {
    std::uint32_t opcode;
    void (*handle)(ButtonSetterImpl &setter, const Message &message);
  };
  static constexpr Handler handlers[] = {
      {TYPE_NULL_MESSAGE::code, Handlers::logNullMessage},
      {BMS_UploadImage::code, Handlers::uploadImage},
      {BMS_Reconfig::code, Handlers::readLevelsAgain},
      {BMS_Ping::code, Handlers::answerPing},
      {BMS_TFTTextLine::code, Handlers::writeTextLine},
      {BMS_BlackoutScreen::code, Handlers::blackoutScreen},
      {BMS_SetLEDState::code, Handlers::setLEDState},
      {BMS_TFTSubTextLine::code, Handlers::writeSubTextLine},
      {BMS_DrawTFTImage::code, Handlers::drawImage},
      {BMS_SetLEDStatusIndicator::code, Handlers::setStatusIndicator},
      {BMS_SetLEDToggleIndicator::code, Handlers::setToggleIndicator},
  };
  static_assert(are_what_the_catalogue_says(handlers), "a handler for each message that the server handles, in order");

  static constexpr auto table = by_opcode(handlers);

  const std::uint32_t opcode = message.view.bigEndian32(0);
  debug_line() << "buttondriver: opcode = " << opcode << ", size = " << qint64{message.bytes.size()};
  if (const auto handle = opcode < table.size() ? table[opcode] : nullptr)
    return handle(*this, message);
  critical_line() << "ButtonSetterImpl::process_messages, unhandled switch case" << opcode;
}

void ButtonSetterImpl::setLEDState(qint32 button_id, qint32 state, qint32 time) {
  if (button_id == dimensions::all_buttons) {
    for (const auto &[id, button] : _buttons)
      setLEDState(*button, state, time);
    return;
  }
  const auto place = _buttons.find(button_id);
  if (place == _buttons.end())
    print("buttondriver:invalid button id %d, setLEDState()\n", button_id);
  else
    setLEDState(*place->second, state, time);
}

void ButtonSetterImpl::setLEDState(IButton &button, qint32 state, qint32 time) {
  if (state != -1) {
    button.setState(state);
    _blinking.erase(&button);
    return;
  }
  if (time == 0) {
    print("buttondriver: button id %d must have a non-zero time to use blinking.", button.id());
    return;
  }
  _blinking.insert_or_assign(&button, BlinkState(time));
  if (_update_timer.isActive())
    return;
  _update_timer.start();
  debug_line() << "ButtonSetterImpl, update timer started";
}

std::map<qint32, qint32> ButtonSetterImpl::blinkTimes() const {
  std::map<qint32, qint32> times;
  for (const auto &[button, blink] : _blinking)
    times[button->id()] = blink.time();
  return times;
}

void ButtonSetterImpl::setButtonImage(qint32 button_id, const ButtonImage &image) {
  const auto place = _buttons.find(button_id);
  if (place == _buttons.end())
    print("buttondriver:invalid button id %d, setButtonImage\n", button_id);
  else
    place->second->setImage(image.bytes.data());
}

void ButtonSetterImpl::reconfig() {
  print_line("buttondriver:reconfig ");
  _levels.read(_paths.button_level_file, [this](qint32 screen_level) {
    if (_fpga)
      _fpga->setTFTIntensity(screen_level);
  });
}

void ButtonSetterImpl::update_timer() {
  if (_blinking.empty()) {
    _update_timer.stop();
    debug_line() << "update timer stoped";
  } else if (!_fpga) {
    blink();
  } else if (!_fpga->isFull()) {
    // Otherwise clients would be kept out for as long as the device cannot follow.
    _fpga->queueForTimer([this] { blink(); });
  }
}

/// All buttons take the step together, so that they stay in step.
void ButtonSetterImpl::blink() {
  for (auto &[button, state] : _blinking)
    if (const std::optional<std::uint8_t> value = state.tick())
      button->setState(*value);
}

} // namespace buttondriver
