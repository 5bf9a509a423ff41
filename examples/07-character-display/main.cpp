// SPDX-License-Identifier: Apache-2.0
// Shows two lines on a character display. A block of memory stands for the registers here; a program on the panel maps
// the real ones, and leaves out the function that watches what is stored.
#include <buttondriver/character_display/character_display_register.h>
#include <buttondriver/character_display/vacuum.h>

#include <QCoreApplication>
#include <QSemaphore>

#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  constexpr std::size_t register_place = buttondriver::character_display::data_register_offset / sizeof(std::uint32_t);
  std::vector<std::uint32_t> block(register_place + 1);

  // On the thread of the display: what it is told. Four stores make a character.
  constexpr std::size_t characters_of_a_text = 1 + 2 * 20;
  std::size_t stores = 0;
  std::string characters;
  QSemaphore written;
  const auto watch = [&](volatile std::uint32_t *address, std::uint32_t word) {
    buttondriver::store_in_memory(address, word);
    if (++stores % 4 == 0)
      characters += static_cast<char>(word & 0xFF);
    if (stores == 4 * characters_of_a_text)
      written.release();
  };

  {
    buttondriver::Vacuum display(nullptr, block.data(), watch);
    display.setText(0, QStringLiteral("Channel 7\nReady"));
    // Its end would drop what is not written yet.
    written.acquire();
  }

  // The first character is the home character, two lines of 20 follow.
  std::printf("|%s|\n|%s|\n", characters.substr(1, 20).c_str(), characters.substr(21, 20).c_str());
  std::printf("%zu stores, the last word is 0x%08x\n", stores, block[register_place]);
  return 0;
}
