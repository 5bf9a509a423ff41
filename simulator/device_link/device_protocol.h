// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/transfer_record.h"

#include <cstdint>

/// How a program without a device drives a virtual panel in another program, over a stream socket of the Unix domain.
/// The library that stands in for the device speaks it on one side, `buttondriver-sim --device` on the other. Nothing
/// here needs a run time: the library is loaded into programs of any kind, also into 32-bit ones.
///
///     driver                                      panel
///     Hello                                  ->
///                                            <-   Welcome; with an error the panel then closes
///     Request, then the words of a write     ->
///                                            <-   Answer, then the words of a read
///
/// One request at a time. Numbers and words are little-endian and without gaps, as the device has them. Addresses stay
/// in the driver's process; words travel behind the record. Whoever gets something else than this closes.
namespace buttondriver::simulator::device_protocol {

/// The variable of the environment that names the socket to the library.
inline constexpr const char *socket_variable = "BUTTONDRIVER_DEVICE";

inline constexpr std::uint32_t magic = 0x31524442; ///< "BDR1" as it lies on the socket
inline constexpr std::uint32_t version = 1;        ///< grows with every change of what follows

/// No transfer of more words is carried out: it fails with EINVAL, and its words are not sent.
inline constexpr std::uint32_t most_words = 65535;

struct Hello {
  std::uint32_t magic;
  std::uint32_t version;
};

/// `error` is 0, or the errno of an open that fails: EBUSY while another driver is there, EPROTO for another version.
struct Welcome {
  std::uint32_t magic;
  std::uint32_t version;
  std::uint32_t error;
};

/// `record` is what the device would get, but for its value: with a count of 1 that is the word, with more it is 1, or
/// 0 where the caller gave no words, and with none it is 0.
struct Request {
  std::uint32_t code;  ///< the request of ioctl
  std::uint32_t words; ///< how many words follow, see words_behind()
  panel::TransferRecord record;
};

struct Answer {
  std::int32_t result; ///< of ioctl
  std::uint32_t error; ///< errno where the result is negative, otherwise 0
  std::uint32_t value; ///< with a count of 1, the word
  std::uint32_t words; ///< how many words follow: those of a read of more than one that was carried out, otherwise 0
};

static_assert(sizeof(Hello) == 8 && sizeof(Welcome) == 12 && sizeof(Request) == 24 && sizeof(Answer) == 16);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "structures are sent as they lie in memory");

/// Whether `record` asks for a read, in the form that belongs to `code`.
constexpr bool is_read(std::uint32_t code, const panel::TransferRecord &record) {
  if (code == panel::long_form_request)
    return (std::uint32_t{record.address_high} << 16 & panel::long_form::read) != 0;
  return (record.address_low & panel::short_form::read) != 0;
}

/// Whether several words belong to `record`, and not too many.
constexpr bool has_words(std::uint32_t code, const panel::TransferRecord &record) {
  return (code == panel::short_form_request || code == panel::long_form_request) && record.count > 1 &&
         record.count <= most_words && record.value != 0;
}

/// How many words follow the request with this record.
constexpr std::uint32_t words_behind(std::uint32_t code, const panel::TransferRecord &record) {
  return has_words(code, record) && !is_read(code, record) ? record.count : 0;
}

} // namespace buttondriver::simulator::device_protocol
