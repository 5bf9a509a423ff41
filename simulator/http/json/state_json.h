// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_state.h"
#include "simulator/reading/text_reader.h"
#include "simulator/simulation/simulation_counters.h"
#include "simulator/traffic/text_memory.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <array>
#include <map>
#include <optional>

namespace buttondriver::simulator {

/// The form of state.json; grows when a field changes its meaning or goes, not when one is added.
inline constexpr int state_version = 1;

/// {"button_leds", "status_leds", "toggles": arrays of booleans, "intensity"}
QJsonObject to_json(const PanelLamps &lamps);
/// The lines that clients have sent, by screen.
using SentTexts = std::array<TextMemory::Lines, dimensions::screen_count>;
/// [{"text": array of lines}] for each screen.
QJsonArray to_json(const SentTexts &sent);
/// [{"text": array of lines as they were sent, "drawn": array of lines as they stand there}] for each screen. One that
/// is not known is null; when neither is, so is the whole.
QJsonValue to_json(const std::optional<SentTexts> &sent, const std::optional<DrawnTexts> &drawn);
/// {"width", "height", "fault"}: the size of the character cells, or why texts cannot be read.
QJsonObject to_json(const ScreenFont &font);
/// What is not known is null.
QJsonObject to_json(const SimulationCounters &counters);
/// [{"button", "time"}]: the buttons that blink, with the time of their phases in milliseconds.
QJsonArray blinking_to_json(const std::map<qint32, qint32> &times);

} // namespace buttondriver::simulator
