// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "records.h"

#include <cstdint>

/// Host order to network order and back.
///
/// `destination` and `source` each hold a whole message: the head and, for a type that counts something, as many bytes
/// after it as the count in `source` says. They are the same place, or do not overlap. The head is always written, the
/// variable part only when the places differ (image ids are numbers: they are swapped in either case). Neither has to
/// be aligned. Nothing is shared: any thread may convert.
/// For bytes that came from outside, and may be shorter than they claim, use decode.h.
namespace buttondriver {

/// The count in `source` is in host order.
void host_to_network(const MessageType &type, void *destination, const void *source);
/// The count in `source` is in network order.
void network_to_host(const MessageType &type, void *destination, const void *source);

/// Converts the head alone, in either direction: swaps its integers and copies its bytes. Both places hold a head.
void swap_head(const MessageType &type, void *destination, const void *source);

/// The same for the message that `Record` is the head of.
template <class Record> void host_to_network(void *destination, const void *source) {
  host_to_network(type_of<Record>, destination, source);
}
/// The same for the message that `Record` is the head of.
template <class Record> void network_to_host(void *destination, const void *source) {
  network_to_host(type_of<Record>, destination, source);
}

// clang-format off
/// The published names of host_to_network(). A message added to them needs none: the templates above convert its record.
/// @{
inline void hton_BMS_PingReply(void *destination, const void *source) { host_to_network<BMS_PingReply>(destination, source); }
inline void hton_BMS_SetButtonColour(void *destination, const void *source) { host_to_network<BMS_SetButtonColour>(destination, source); }
inline void hton_BMS_SetButtonText(void *destination, const void *source) { host_to_network<BMS_SetButtonText>(destination, source); }
inline void hton_BMS_UploadImage(void *destination, const void *source) { host_to_network<BMS_UploadImage>(destination, source); }
inline void hton_BMS_SetButtonImage(void *destination, const void *source) { host_to_network<BMS_SetButtonImage>(destination, source); }
inline void hton_BMS_SetParameter(void *destination, const void *source) { host_to_network<BMS_SetParameter>(destination, source); }
inline void hton_BMS_Reconfig(void *destination, const void *source) { host_to_network<BMS_Reconfig>(destination, source); }
inline void hton_BMS_SetButtonColourPair(void *destination, const void *source) { host_to_network<BMS_SetButtonColourPair>(destination, source); }
inline void hton_BMS_Ping(void *destination, const void *source) { host_to_network<BMS_Ping>(destination, source); }
inline void hton_BMS_SetButtonImageList(void *destination, const void *source) { host_to_network<BMS_SetButtonImageList>(destination, source); }
inline void hton_BMS_SetValue(void *destination, const void *source) { host_to_network<BMS_SetValue>(destination, source); }
inline void hton_BMS_TFTTextLine(void *destination, const void *source) { host_to_network<BMS_TFTTextLine>(destination, source); }
inline void hton_BMS_BlackoutScreen(void *destination, const void *source) { host_to_network<BMS_BlackoutScreen>(destination, source); }
inline void hton_BMS_SetLEDState(void *destination, const void *source) { host_to_network<BMS_SetLEDState>(destination, source); }
inline void hton_BMS_TFTSubTextLine(void *destination, const void *source) { host_to_network<BMS_TFTSubTextLine>(destination, source); }
inline void hton_BMS_DrawTFTImage(void *destination, const void *source) { host_to_network<BMS_DrawTFTImage>(destination, source); }
inline void hton_BMS_SetLEDStatusIndicator(void *destination, const void *source) { host_to_network<BMS_SetLEDStatusIndicator>(destination, source); }
inline void hton_BMS_SetLEDToggleIndicator(void *destination, const void *source) { host_to_network<BMS_SetLEDToggleIndicator>(destination, source); }
/// @}

/// The published names of network_to_host().
/// @{
inline void ntoh_BMS_PingReply(void *destination, const void *source) { network_to_host<BMS_PingReply>(destination, source); }
inline void ntoh_BMS_SetButtonColour(void *destination, const void *source) { network_to_host<BMS_SetButtonColour>(destination, source); }
inline void ntoh_BMS_SetButtonText(void *destination, const void *source) { network_to_host<BMS_SetButtonText>(destination, source); }
inline void ntoh_BMS_UploadImage(void *destination, const void *source) { network_to_host<BMS_UploadImage>(destination, source); }
inline void ntoh_BMS_SetButtonImage(void *destination, const void *source) { network_to_host<BMS_SetButtonImage>(destination, source); }
inline void ntoh_BMS_SetParameter(void *destination, const void *source) { network_to_host<BMS_SetParameter>(destination, source); }
inline void ntoh_BMS_Reconfig(void *destination, const void *source) { network_to_host<BMS_Reconfig>(destination, source); }
inline void ntoh_BMS_SetButtonColourPair(void *destination, const void *source) { network_to_host<BMS_SetButtonColourPair>(destination, source); }
inline void ntoh_BMS_Ping(void *destination, const void *source) { network_to_host<BMS_Ping>(destination, source); }
inline void ntoh_BMS_SetButtonImageList(void *destination, const void *source) { network_to_host<BMS_SetButtonImageList>(destination, source); }
inline void ntoh_BMS_SetValue(void *destination, const void *source) { network_to_host<BMS_SetValue>(destination, source); }
inline void ntoh_BMS_TFTTextLine(void *destination, const void *source) { network_to_host<BMS_TFTTextLine>(destination, source); }
inline void ntoh_BMS_BlackoutScreen(void *destination, const void *source) { network_to_host<BMS_BlackoutScreen>(destination, source); }
inline void ntoh_BMS_SetLEDState(void *destination, const void *source) { network_to_host<BMS_SetLEDState>(destination, source); }
inline void ntoh_BMS_TFTSubTextLine(void *destination, const void *source) { network_to_host<BMS_TFTSubTextLine>(destination, source); }
inline void ntoh_BMS_DrawTFTImage(void *destination, const void *source) { network_to_host<BMS_DrawTFTImage>(destination, source); }
inline void ntoh_BMS_SetLEDStatusIndicator(void *destination, const void *source) { network_to_host<BMS_SetLEDStatusIndicator>(destination, source); }
inline void ntoh_BMS_SetLEDToggleIndicator(void *destination, const void *source) { network_to_host<BMS_SetLEDToggleIndicator>(destination, source); }
/// @}
// clang-format on

/// As the functions of the same names, for whole records: `not_transmitted`, which lies after the message's 24 bytes,
/// is swapped with the rest. A place that holds the 24 bytes alone is passed to those above, by a pointer to anything
/// else.
/// @{
void hton_BMS_SetButtonColourPair(BMS_SetButtonColourPair *destination, const BMS_SetButtonColourPair *source);
void ntoh_BMS_SetButtonColourPair(BMS_SetButtonColourPair *destination, const BMS_SetButtonColourPair *source);
/// @}

/// Bytes of a whole message: a constant for the fixed types, head and `n` counted things for the others.
template <class Record> constexpr std::uint64_t message_size(std::uint32_t n = 0) { return type_of<Record>.size(n); }

} // namespace buttondriver
