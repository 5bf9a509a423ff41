// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// Which of `words` somebody may have meant who typed `typed`: the one with the fewest slips, a character too many, too
/// few, wrong, or exchanged with its neighbour. Empty when more than two slips are in it, or more than a third of it.
QString closest_word(const QString &typed, const QStringList &words);

} // namespace buttondriver::buttonctl
