// SPDX-License-Identifier: Apache-2.0
// A program that has to be linked with the library of the frames.
#include <buttondriver/protocol/frames.h>

int main() { return buttondriver::framed(QByteArray("four")).size() == 8 ? 0 : 1; }
