// SPDX-License-Identifier: Apache-2.0
#include "buttons/button_setter_impl.h"

#include "dimensions/panel_dimensions.h"
#include "fpga/fpga.h"
#include "logging/log_line.h"
#include "logging/standard_output.h"
#include "logging/visible_text.h"
#include "protocol/decode.h"
#include "protocol/framing.h"

#include <QIODevice>

#include <algorithm>
#include <cstdio>
#include <string>

namespace buttondriver {

namespace {

/// A text that no screen can show goes out in pieces: millions of characters at once take several times their memory.
void print_sub_text_line(const BMS_TFTSubTextLine &line, std::string_view text) {
  constexpr std::size_t piece = 16 * 1024;
  char words[200];
  std::snprintf(words, sizeof words,
                "buttondriver: _screen_id = %d, _line_id = %d,  _offset =%d, _num_chars = %d, _text = '",
                line._screen_id, line._line_id, line._offset, line._num_chars);
  std::string line_so_far = words;
  for (; text.size() > piece; text.remove_prefix(piece)) {
    line_so_far += visible_text(text.substr(0, piece));
    print_text(line_so_far);
    line_so_far.clear();
  }
  line_so_far += visible_text(text);
  std::snprintf(words, sizeof words, "', _text_colour = 0x%x, _back_colour = 0x%x.\n", line._text_colour,
                line._back_colour);
  print_text(line_so_far + words);
}

} // namespace

ButtonSetterImpl::ButtonSetterImpl(const SystemPaths &paths) : _paths(paths) {
  reconfig();
  _update_timer.setTimerType(Qt::PreciseTimer);
  _update_timer.setInterval(blink_tick_ms);
  connect(&_update_timer, SIGNAL(timeout()), this, SLOT(update_timer()));
}

void ButtonSetterImpl::setButtons(const ButtonMap &buttons) { _buttons = buttons; }

void ButtonSetterImpl::setFPGA(FPGA *fpga) { _fpga = fpga; }

void ButtonSetterImpl::forgetImages(qint32 image_id_offset) { _images.forget(image_id_offset); }

void ButtonSetterImpl::process_messages(const std::vector<QByteArray> &messages, QIODevice *reply,
                                        qint32 image_id_offset) {
  for (const QByteArray &message : messages)
    processMessage(message, reply, image_id_offset);
}

void ButtonSetterImpl::processMessage(const QByteArray &message, QIODevice *reply, qint32 image_id_offset) {
  const ByteView view(message.constData(), static_cast<std::size_t>(message.size()));
  const std::uint32_t opcode = view.big_endian_32(0);
  debug_line() << "buttondriver: opcode = " << opcode << ", size = " << qint64{message.size()};
  switch (opcode) {
  case TYPE_NULL_MESSAGE::code:
    return logNullMessage(message, image_id_offset);
  case BMS_UploadImage::code:
    return uploadImage(view, image_id_offset);
  case BMS_Reconfig::code:
    return reconfig();
  case BMS_Ping::code:
    return answerPing(reply);
  case BMS_TFTTextLine::code:
    return writeTextLine(view);
  case BMS_BlackoutScreen::code:
    return blackoutScreen(view);
  case BMS_SetLEDState::code:
    return setLEDState(view);
  case BMS_TFTSubTextLine::code:
    return writeSubTextLine(view);
  case BMS_DrawTFTImage::code:
    return drawImage(message);
  case BMS_SetLEDStatusIndicator::code:
    return setStatusIndicator(view);
  case BMS_SetLEDToggleIndicator::code:
    return setToggleIndicator(view);
  default:
    critical_line() << "ButtonSetterImpl::process_messages, unhandled switch case" << opcode;
  }
}

void ButtonSetterImpl::logNullMessage(const QByteArray &message, qint32 image_id_offset) {
  critical_line() << "ButtonSetterImpl::process_messages , TYPE_NULL_MESSAGE";
  critical_line() << "size  = " << qint64{message.size()};
  _null_message_log.write(message, image_id_offset);
}

void ButtonSetterImpl::uploadImage(ByteView message, qint32 image_id_offset) {
  const auto upload = decode<BMS_UploadImage>(message);
  if (upload.size != dimensions::button_image_bytes) {
    print("invalid image data, size = %d\n", upload.size);
    print("buttondriver:failed to upload image %d\n", upload.image_id);
    return;
  }
  qint32 id = upload.image_id;
  if (id >= dimensions::built_in_image_count)
    id = static_cast<qint32>(static_cast<quint32>(id) + static_cast<quint32>(image_id_offset)); // wraps
  ButtonImage image;
  std::copy(std::begin(upload.image), std::end(upload.image), image.bytes.begin());
  _images.store(id, image, image_id_offset);
  print("buttondriver:image uploaded %d\n", id);
}

void ButtonSetterImpl::answerPing(QIODevice *reply) {
  BMS_PingReply answer{BMS_PingReply::code};
  hton_BMS_PingReply(&answer, &answer);
  const auto prefix = frame_prefix(sizeof answer);
  QByteArray frame(reinterpret_cast<const char *>(prefix.data()), static_cast<int>(prefix.size()));
  frame.append(reinterpret_cast<const char *>(&answer), static_cast<int>(sizeof answer));
  reply->write(frame);
}

void ButtonSetterImpl::writeTextLine(ByteView message) {
  debug_line() << "buttondriver: Got a TFT text line message";
  const auto line = decode<BMS_TFTTextLine>(message);
  const std::string_view text = message.text(type_of<BMS_TFTTextLine>.head_size, line.n);
  _fpga->textLine(line.screen_id, line.line_id, std::string(text), line.flag != 0);
}

void ButtonSetterImpl::blackoutScreen(ByteView message) {
  _fpga->blackoutScreen(decode<BMS_BlackoutScreen>(message).screen_id);
}

void ButtonSetterImpl::setLEDState(ByteView message) {
  const auto led = decode<BMS_SetLEDState>(message);
  setLEDState(led.button_id, led.state, led.time);
  debug_line() << "Button " << led.button_id << " set to state " << led.state;
}

void ButtonSetterImpl::writeSubTextLine(ByteView message) {
  debug_line() << "buttondriver: Got a TFT sub-text line message";
  const auto line = decode<BMS_TFTSubTextLine>(message);
  const std::string_view text = message.text(type_of<BMS_TFTSubTextLine>.head_size, line.n);
  print_sub_text_line(line, text);
  _fpga->subTextLine(line._screen_id, line._line_id, line._offset, line._num_chars, std::string(text),
                     line._text_colour, line._back_colour);
}

void ButtonSetterImpl::drawImage(const QByteArray &message) {
  const auto image = decode<BMS_DrawTFTImage>(ByteView(message.constData(), static_cast<std::size_t>(message.size())));
  print("buttondriver(DRAW_TFT_IMAGE): _screen_id = %d, _xoffset =%d, _yoffset = %d, _size = %d.\n", image._screen_id,
        image._xoffset, image._yoffset, static_cast<int>(image._size));
  // The picture is all that follows the head; its own header says how much of that it needs.
  _fpga->drawTFTImage(image._screen_id, image._xoffset, image._yoffset,
                      SharedBytes(message, type_of<BMS_DrawTFTImage>.head_size));
}

void ButtonSetterImpl::setStatusIndicator(ByteView message) {
  const auto led = decode<BMS_SetLEDStatusIndicator>(message);
  _fpga->setLEDStatusIndicator(led.button_id, led.state);
}

void ButtonSetterImpl::setToggleIndicator(ByteView message) {
  const auto indicator = decode<BMS_SetLEDToggleIndicator>(message);
  _fpga->setLEDToggleIndicator(static_cast<unsigned>(indicator.button_id), static_cast<unsigned>(indicator.state));
}

void ButtonSetterImpl::setLEDState(qint32 button_id, qint32 state, qint32 time) {
  if (button_id == dimensions::all_buttons) {
    for (const auto &[id, button] : _buttons)
      setLEDState(button->id(), state, time);
    return;
  }
  const auto place = _buttons.find(button_id);
  if (place == _buttons.end()) {
    print("buttondriver:invalid button id %d, setLEDState()\n", button_id);
    return;
  }
  IButton *button = place->second;
  if (state != -1) {
    button->setState(state);
    _blinking.erase(button);
    return;
  }
  if (time == 0) {
    print("buttondriver: button id %d must have a non-zero time to use blinking.", button_id);
    return;
  }
  const auto [place_of_blinking, is_new] = _blinking.try_emplace(button, Blinking{BlinkState(time)});
  if (!is_new)
    place_of_blinking->second.state = BlinkState(time);
  if (_update_timer.isActive())
    return;
  _update_timer.start();
  debug_line() << "ButtonSetterImpl, update timer started";
}

std::map<qint32, qint32> ButtonSetterImpl::blinkTimes() const {
  std::map<qint32, qint32> times;
  for (const auto &[button, blink] : _blinking)
    times[button->id()] = blink.state.time();
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
  for (auto &[button, blink] : _blinking) {
    // On a device that cannot follow, a phase lasts longer.
    if (!_fpga->isDone(blink.newest_task))
      continue;
    const std::optional<std::uint8_t> value = blink.state.tick();
    if (!value)
      continue;
    button->setState(*value);
    blink.newest_task = _fpga->newestTask();
  }
  if (!_blinking.empty())
    return;
  _update_timer.stop();
  debug_line() << "update timer stoped";
}

} // namespace buttondriver
