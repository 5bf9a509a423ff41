#pragma once

#include "simulator/panel_state.h"
#include "simulator/simulation.h"
#include "simulator/text_memory.h"

#include <QJsonArray>
#include <QJsonObject>

namespace buttondriver::simulator {

/// The form of state.json; grows when a field changes its meaning or goes, not when one is added.
inline constexpr int state_version = 1;

/// {"button_leds", "status_leds", "toggles": arrays of booleans, "intensity"}
QJsonObject to_json(const PanelLamps &lamps);
/// An array of lines for each screen.
QJsonArray to_json(const std::array<TextMemory::Lines, screen_count> &screens);
QJsonObject to_json(const SimulationCounters &counters);

} // namespace buttondriver::simulator
